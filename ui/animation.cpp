#include "ui/animation.h"

#include <utility>

#include "ui/motion.h"

namespace tarnby {
Animation::Animation(AnimationClock& clock, double value, Step step)
    : clock_(clock), step_(std::move(step)), from_(value), to_(value), value_(value) {}

Animation::~Animation() {
  clock_.remove(this);
}

void Animation::move_to(double target, int milliseconds, QEasingCurve::Type easing, Done done) {
  repeats_ = false;
  from_ = value_;
  to_ = target;
  done_ = std::move(done);
  if (motion::reduced() || milliseconds <= 0) return arrive();
  easing_.setType(easing);
  duration_ = milliseconds;
  started_ = clock_.now();
  set_moving(true);
}

void Animation::jump_to(double target) {
  move_to(target, 0, QEasingCurve::Linear);
}

void Animation::repeat(int milliseconds) {
  stop();
  if (motion::reduced()) return;
  repeats_ = true;
  duration_ = milliseconds;
  started_ = clock_.now();
  set_moving(true);
}

void Animation::stop() {
  repeats_ = false;
  done_ = nullptr;
  to_ = value_;
  set_moving(false);
}

void Animation::advance() {
  const qint64 passed = clock_.now() - started_;
  if (repeats_) return advance_round(passed);
  if (motion::reduced() || passed >= duration_) return arrive();
  const double part = easing_.valueForProgress(static_cast<double>(passed) / duration_);
  value_ = from_ + (to_ - from_) * part;
  step_();
}

void Animation::advance_round(qint64 passed) {
  if (motion::reduced()) return stop();
  value_ = static_cast<double>(passed % duration_) / duration_;
  step_();
}

void Animation::arrive() {
  set_moving(false);
  value_ = to_;
  // What is called last may destroy this animation or send it on, so nothing of it is touched afterwards.
  const Done done = std::exchange(done_, nullptr);
  step_();
  if (done) done();
}

void Animation::set_moving(bool moving) {
  moving_ = moving;
  if (moving) {
    clock_.add(this);
  } else {
    clock_.remove(this);
  }
}

}  // namespace tarnby
