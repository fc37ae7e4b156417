#pragma once

#include "app/parts/screen.h"
#include "ui/cleaned_mark.h"
#include "ui/entrance.h"
#include "ui/push_button.h"

class QLabel;
class QVBoxLayout;

namespace tarnby {

/// Tells how much was cleaned, what the disk gained, and what was left and why. It is what adds a cleaning to the
/// lifetime total, once, and at some launches it asks for a rating or tells of the companion application.
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
  QLabel* left_label;
  QLabel* left_size;
  PushButton* left_button;
  /// The lifetime total.
  QLabel* cleaned_so_far;

  void done();
  void find_now();
  void show_left();

 private:
  void cleaned_open_anim();
  void add_space(QVBoxLayout* layout);
  void add_left(QVBoxLayout* layout);
  void update_left();

  const std::int64_t cleaned_;
  QWidget* left_card_ = nullptr;
  std::unique_ptr<Entrance> entrance_;
};

/// The sheet that a cleaning may bring, by what the settings count.
enum class CleanedSheet { none, promotion, rating };
CleanedSheet due_sheet(const AppSettings& settings);

}  // namespace tarnby
