#pragma once

#include "app/screen.h"
#include "ui/cleaned_mark.h"
#include "ui/entrance.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// Tells how much was cleaned, and what was left and why. It is what adds a cleaning to the lifetime total, once each
/// time it is shown, and at some launches it asks for a rating or tells of the companion application.
class CleanedViewController : public Screen {
  Q_OBJECT
 public:
  explicit CleanedViewController(AppContext& context);

  void view_did_appear() override;

  QLabel* was_cleaned_size;
  QLabel* label;
  CleanedMark* imageview;
  PushButton* search_button;
  PushButton* done_button;
  /// What was left; hidden when nothing was.
  PushButton* left_button;

  void done();
  void find_now();
  void show_left();

 private:
  void cleaned_open_anim();
  void update_left();

  Cleaner& cleaner_;
  std::unique_ptr<Entrance> entrance_;
};

/// The sheet that a cleaning may bring, by what the settings count.
enum class CleanedSheet { none, promotion, rating };
CleanedSheet due_sheet(const AppSettings& settings);

}  // namespace tarnby
