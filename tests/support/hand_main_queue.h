#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>

#include "platform/queues.h"

namespace tarnby::test {

/// A main queue that is moved by hand: nothing runs and no time passes but by its test's calls, all made on the test's
/// own thread.
class HandMainQueue final : public MainQueue {
 public:
  void async(Work work) override {
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(std::move(work));
    }
    arrived_.notify_one();
    if (when_handed_over) when_handed_over();
  }
  void after(std::chrono::milliseconds delay, Work work) override { later_.emplace(now_ + delay, std::move(work)); }

  /// Runs the next of what has been handed over; false when there is none.
  bool run_next() {
    std::unique_lock lock(mutex_);
    if (waiting_.empty()) return false;
    const Work work = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    work();
    return true;
  }
  /// Runs what has been handed over, and what that hands over in turn.
  void run_pending() {
    while (run_next()) continue;
  }
  /// Runs what is handed over, waiting for more, until `done` says so.
  void run_until(const std::function<bool()>& done) {
    while (!done()) {
      std::unique_lock lock(mutex_);
      arrived_.wait(lock, [this] { return !waiting_.empty(); });
      lock.unlock();
      run_next();
    }
  }

  /// Lets that much time pass; what falls due runs in order, each at its own moment.
  void pass(std::chrono::milliseconds time) {
    const auto end = now_ + time;
    run_pending();
    while (!later_.empty() && later_.begin()->first <= end) {
      now_ = later_.begin()->first;
      const auto due = later_.extract(later_.begin());
      due.mapped()();
      run_pending();
    }
    now_ = end;
  }

  /// Called by `async` on the thread that hands over; a test can hold a worker there. To be set while no worker works.
  std::function<void()> when_handed_over;

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<Work> waiting_;
  std::chrono::milliseconds now_{0};
  std::multimap<std::chrono::milliseconds, Work> later_;
};

}  // namespace tarnby::test
