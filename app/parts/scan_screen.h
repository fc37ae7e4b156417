#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"

class QBoxLayout;

namespace tarnby {

/// A screen that shows a scan at work and lets the person stop it, with its button or with Escape. Then the scan ends
/// with what it has, which nobody looks at, and the home screen comes back.
class ScanScreen : public Screen {
  Q_OBJECT
 public:
  PushButton* stop_button;

  void stop();
  void escaped() override { stop(); }

 protected:
  explicit ScanScreen(AppContext& context);

  /// Puts the button at the end of the screen's column.
  void add_stop_button(QBoxLayout* layout);
  void keyPressEvent(QKeyEvent* event) override;
  void will_retire() override;

  /// Whether the engine still looks for this screen.
  virtual bool scanning() const = 0;
};

}  // namespace tarnby
