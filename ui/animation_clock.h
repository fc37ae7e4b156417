#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <vector>

namespace tarnby {

class Animation;

/// The time of all animations, and the beat at which they draw their next moment. It beats only while something moves.
/// A clock outlives the animations that use it. Main thread only.
class AnimationClock {
 public:
  AnimationClock() = default;
  AnimationClock(const AnimationClock&) = delete;
  AnimationClock& operator=(const AnimationClock&) = delete;
  virtual ~AnimationClock() = default;

  /// Milliseconds since some fixed moment.
  virtual qint64 now() const = 0;

  /// True when nothing moves.
  bool idle() const { return moving_.empty(); }

 protected:
  /// Brings every moving animation to the present moment.
  void beat();

  /// Called when the first animation begins to move and when the last one has come to rest.
  virtual void start_beating() = 0;
  virtual void stop_beating() = 0;

 private:
  friend class Animation;
  void add(Animation* animation);
  void remove(Animation* animation);

  std::vector<Animation*> moving_;
};

/// The clock of the running program: about sixty beats a second. Its time begins when it is started, so that what moves
/// from the beginning is seen from its beginning, however long the first picture takes.
class TimerClock : public AnimationClock {
 public:
  TimerClock();
  /// Lets time pass, from 0 on; once.
  void start() { elapsed_.start(); }
  qint64 now() const override { return elapsed_.isValid() ? elapsed_.elapsed() : 0; }

 protected:
  void start_beating() override { timer_.start(); }
  void stop_beating() override { timer_.stop(); }

 private:
  QElapsedTimer elapsed_;
  QTimer timer_;
};

}  // namespace tarnby
