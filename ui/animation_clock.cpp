#include "ui/animation_clock.h"

#include <algorithm>

#include "ui/animation.h"

namespace tarnby {

void AnimationClock::beat() {
  // A step may end, begin or destroy other animations, so the list of this beat is its own and each is looked up again.
  const std::vector<Animation*> this_beat = moving_;
  for (Animation* animation : this_beat) {
    if (std::find(moving_.begin(), moving_.end(), animation) != moving_.end()) animation->advance();
  }
}

void AnimationClock::add(Animation* animation) {
  if (std::find(moving_.begin(), moving_.end(), animation) != moving_.end()) return;
  moving_.push_back(animation);
  if (moving_.size() == 1) start_beating();
}

void AnimationClock::remove(Animation* animation) {
  if (std::erase(moving_, animation) != 0 && moving_.empty()) stop_beating();
}

TimerClock::TimerClock() {
  constexpr int beat_ms = 16;
  timer_.setInterval(beat_ms);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
}

}  // namespace tarnby
