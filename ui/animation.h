#pragma once

#include <QEasingCurve>
#include <functional>

#include "ui/animation_clock.h"

namespace tarnby {

/// A number that moves to where it is sent. Whoever draws it owns it.
///
/// With reduced motion it is there at once. `step` is called after every change, `done` (once) when the target of the
/// move it was given with is reached, within the call itself when nothing has to move; a move that another one replaces
/// never reports.
class Animation {
 public:
  using Step = std::function<void()>;
  using Done = std::function<void()>;

  Animation(AnimationClock& clock, double value, Step step);
  Animation(const Animation&) = delete;
  Animation& operator=(const Animation&) = delete;
  ~Animation();

  double value() const { return value_; }
  double target() const { return to_; }
  bool moving() const { return moving_; }

  void move_to(double target, int milliseconds, QEasingCurve::Type easing, Done done = nullptr);
  /// Is there at once, without moving.
  void jump_to(double target);
  /// Runs from 0 to 1 again and again until it is sent elsewhere; with reduced motion stays where it is.
  void repeat(int milliseconds);
  /// Stays where it is now.
  void stop();

 private:
  friend class AnimationClock;
  void advance();
  void advance_round(qint64 passed);
  void arrive();
  void set_moving(bool moving);

  AnimationClock& clock_;
  Step step_;
  Done done_;
  QEasingCurve easing_;
  qint64 started_ = 0;
  int duration_ = 0;
  double from_ = 0;
  double to_ = 0;
  double value_ = 0;
  bool moving_ = false;
  bool repeats_ = false;
};

}  // namespace tarnby
