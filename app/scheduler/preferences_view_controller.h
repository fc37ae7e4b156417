#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"
#include "ui/switch_button.h"

namespace tarnby {

/// The preferences: a switch each. What takes a program that is not installed is not among them.
class PreferencesViewController : public Screen {
  Q_OBJECT
 public:
  explicit PreferencesViewController(AppContext& context);

  AppSettings& app_settings;
  SwitchButton* ask_button;
  /// Null while the scheduler is not installed.
  SwitchButton* scheduler_button = nullptr;
  PushButton* close_button;

  void ask_before_removing();
  void enable_scheduler();

 private:
  SwitchButton* add_switch(const QString& name, const QString& told, bool on);
};

}  // namespace tarnby
