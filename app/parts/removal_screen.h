#pragma once

#include <chrono>
#include <vector>

#include "app/parts/removal_run.h"
#include "app/parts/screen.h"
#include "ui/push_button.h"
#include "ui/scan_views.h"

class QLabel;
class QVBoxLayout;

namespace tarnby {

/// Shows a removal while it goes on: what is really gone, and a way to stop it. Nothing on it claims what has not
/// happened; the moments that a screen has of its own are the earliest ones.
class RemovalScreen : public Screen {
  Q_OBJECT
 public:
  PushButton* stop_button;
  /// How many files and folders are gone. What was listed is not counted: it may be listed twice, or lie inside
  /// another.
  QLabel* entries_label;

  /// Ends the removal; what went and what stayed is then told.
  void stop();

 protected:
  using Milliseconds = std::chrono::milliseconds;

  /// @param ring_time how long the ring takes at least.
  RemovalScreen(AppContext& context, Milliseconds ring_time);

  /// To be called once, when the screen is complete.
  void start(RemovalRequest request);
  /// Runs work at that moment after the start, or when the removal is over, whichever comes last.
  void when_over(Milliseconds earliest, Work work);
  /// The removal is over; called before what waits for that.
  virtual void removal_is_over() {}

  void keyPressEvent(QKeyEvent* event) override;
  void will_retire() override;

  DeleteView* ring_;
  FadingLabel* line_;
  /// For what a screen has of its own, below the lines.
  QVBoxLayout* below_;

 private:
  /// Asks whether to stop, unless the removal is over or about to end.
  bool may_close();
  void follow();
  void show_progress();
  void finish();

  const Milliseconds ring_time_;
  Milliseconds passed_{0};
  bool over_ = false;
  std::vector<Work> waiting_;
  QPointer<Screen> question_;
};

}  // namespace tarnby
