#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "platform/app_settings.h"
#include "platform/application_delegate.h"

namespace tarnby {

/// The delegate of the running application: what happens at launch, and what screens leave with it for each other.
class AppDelegate final : public ApplicationDelegate {
 public:
  /// @param flush_settings brings the settings to the disk without waiting for it.
  AppDelegate(AppSettings& settings, std::function<void()> flush_settings)
      : app_settings(settings), flush_settings_(std::move(flush_settings)) {}

  AppSettings& app_settings;
  /// The popover shown last.
  QPointer<QWidget> activePopover;
  int modalRespone = 0;  // nothing uses it; it is kept, with its spelling
  /// Where the browser selection opens, on the screen.
  QPoint modalOrigin;

  /// Before the window is there: the launch is counted, the category flags are what every launch begins with, and both
  /// go to the disk.
  void applicationDidFinishLaunching() {
    app_settings.count_launch();
    flush_settings_();
  }
  /// The program is its window.
  bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
  void applicationWillTerminate() {}

 private:
  std::function<void()> flush_settings_;
};

}  // namespace tarnby
