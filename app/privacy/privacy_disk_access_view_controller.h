#pragma once

#include <QDialog>

#include "app/parts/screen.h"
#include "app/privacy/guide_pages.h"
#include "ui/animation.h"

class QLabel;

namespace tarnby {

/// The content of the guide window: how to give full disk access, and a check whether it is there.
class PrivacyDiskAccessViewController : public Screen {
  Q_OBJECT
 public:
  explicit PrivacyDiskAccessViewController(AppContext& context);

  AppDelegate& appDelegate;
  AppSettings& app_settings;
  PushButton* confirm_button;
  PushButton* settings_button;
  PrivacyFullDiskPageController* pages;
  /// Says what the shaking says, for those who do not see it.
  QLabel* missing_label;

  /// Looks again; closes the window when access is there, shakes it when it is not.
  void confirm_disk_access();
  void open_settings();
  void shake_window();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void move_window();

  Animation shake_;  // 0 at rest, then to 1
  QPoint rest_;
};

/// The window that holds the guide. Closes when its content is done.
class GuideWindow : public QDialog {
  Q_OBJECT
 public:
  GuideWindow(AppContext& context, QWidget* parent);

  /// Shows it; the one that is open already comes to the front, whichever screen has opened it.
  static GuideWindow* present(AppContext& context, QWidget* parent);

  PrivacyDiskAccessViewController* content;
};

}  // namespace tarnby
