#pragma once

#include <QMainWindow>

#include "app/shell/view_controller.h"

namespace tarnby {

class HomeViewController;

/// The one window, with its menus. It can be moved by its ground.
class CleanerWindowController : public QMainWindow {
  Q_OBJECT
 public:
  explicit CleanerWindowController(AppContext& context);

  /// Makes the menus and the first screen; once, and `content` is there only afterwards. A window that is shown before
  /// is seen sooner: the desktop finds its place meanwhile, and nothing is painted before the event loop runs.
  void load();

  ViewController& content() { return *content_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void make_menus();
  void show_sheet(std::unique_ptr<Screen> content);
  void showFeedbackDialog();
  void show_access();
  HomeViewController* home_screen() const;

  AppContext& context_;
  ViewController* content_ = nullptr;
};

}  // namespace tarnby
