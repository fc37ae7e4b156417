#pragma once

#include <memory>

#include "app/screen.h"
#include "engine/hand_off.h"
#include "ui/push_button.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Runs the removal of the ticked categories and shows it as a timed show. It ends when both are over; before that,
/// what was left goes to the outside helper where there is one, or is listed.
class DeleteViewController : public Screen {
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
  void cleanup() { post("cleaned_view_controller"); }

 private:
  void start_removal();
  void schedule_texts();
  void ring_is_full();
  void finish();
  void wait_for_helper();

  std::shared_ptr<CleanupReport> report_ = std::make_shared<CleanupReport>();
};

}  // namespace tarnby
