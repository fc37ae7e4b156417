#pragma once

#include "app/screen.h"
#include "ui/push_button.h"
#include "ui/switch_button.h"

namespace tarnby {

/// The preferences: one switch.
class PreferencesViewController : public Screen {
  Q_OBJECT
 public:
  explicit PreferencesViewController(AppContext& context);

  AppSettings& app_settings;
  SwitchButton* scheduler_button;
  PushButton* close_button;

  void enable_scheduler();
};

}  // namespace tarnby
