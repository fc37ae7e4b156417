#pragma once

#include <memory>

#include "app/parts/notifications.h"
#include "app/parts/removal_screen.h"
#include "engine/cleanup.h"
#include "engine/hand_off.h"

namespace tarnby {

/// Runs the removal of the ticked categories. It ends when that and its own time are over; before that, what was left
/// goes to the outside helper where there is one, or is listed.
class DeleteViewController : public RemovalScreen {
  Q_OBJECT
 public:
  explicit DeleteViewController(AppContext& context);

  bool cleanup_complete = false;
  AppDelegate& appDelegate;
  AppSettings& app_settings;
  Cleaner& sharedCleaner;
  DeleteView* deleteView;
  FadingLabel* clean_label;
  /// Ends the waiting for a helper.
  PushButton* skip_button;
  HandOff hand_off;

  /// Goes on to the cleaned screen.
  void cleanup() { post(notifications::cleaned_view_controller); }

 private:
  void removal_is_over() override;
  RemovalRequest request();
  void schedule_texts();
  void ring_is_full();
  void finish();
  void wait_for_helper();

  std::shared_ptr<CleanupReport> report_ = std::make_shared<CleanupReport>();
};

}  // namespace tarnby
