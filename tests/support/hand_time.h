#pragma once

#include <algorithm>

#include "tests/support/hand_animation_clock.h"
#include "tests/support/hand_main_queue.h"

namespace tarnby::test {

/// The time of a window: that of its main queue and that of its animations, moved together in steps as small as frames.
struct HandTime {
  HandMainQueue& queue;
  HandAnimationClock clock = {};

  void pass(int milliseconds) {
    constexpr int frame = 10;
    for (int passed = 0; passed < milliseconds; passed += frame) {
      const int step = std::min(frame, milliseconds - passed);
      clock.pass(step);
      queue.pass(std::chrono::milliseconds(step));
    }
  }
};

}  // namespace tarnby::test
