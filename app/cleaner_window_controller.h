#pragma once

#include <QMainWindow>

#include "app/view_controller.h"

namespace tarnby {

/// The one window. It can be moved by its ground.
class CleanerWindowController : public QMainWindow {
  Q_OBJECT
 public:
  explicit CleanerWindowController(AppContext& context);

  ViewController& content() { return *content_; }

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  ViewController* content_;
};

}  // namespace tarnby
