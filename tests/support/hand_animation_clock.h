#pragma once

#include "ui/animation_clock.h"

namespace tarnby::test {

/// A clock that stands still until it is moved.
class HandAnimationClock : public AnimationClock {
 public:
  qint64 now() const override { return now_; }

  /// Lets the time pass in one step.
  void pass(qint64 milliseconds) {
    now_ += milliseconds;
    beat();
  }

  bool beating() const { return beating_; }

 protected:
  void start_beating() override { beating_ = true; }
  void stop_beating() override { beating_ = false; }

 private:
  qint64 now_ = 1000;
  bool beating_ = false;
};

}  // namespace tarnby::test
