#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace tarnby {

/// The queue of the main thread: work runs there, in the order in which it was handed over.
class MainQueue {
 public:
  using Work = std::function<void()>;

  virtual ~MainQueue() = default;

  /// Hands work over and returns at once. Any thread may call.
  virtual void async(Work work) = 0;

  /// Hands work over that runs once this much time has passed; work that is due at the same moment runs in the order in
  /// which it was handed over. Main thread only.
  virtual void after(std::chrono::milliseconds delay, Work work) = 0;
};

/// A main queue for programs without an event loop: the thread that calls `run` is the main thread.
class PlainMainQueue final : public MainQueue {
 public:
  void async(Work work) override;
  void after(std::chrono::milliseconds delay, Work work) override;

  /// Runs what is handed over, waiting for more, until `quit`.
  void run();
  /// Runs what has been handed over so far; never waits.
  void run_pending();
  /// Makes `run` return once everything handed over before has run. Any thread may call.
  void quit();

 private:
  using Clock = std::chrono::steady_clock;

  std::optional<Work> take(bool wait);
  void queue_due();

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<Work> waiting_;
  std::multimap<Clock::time_point, Work> later_;
  bool quitting_ = false;
};

/// Runs work on a thread of its own, one piece after the other. The destructor waits as `finish` does.
class BackgroundQueue {
 public:
  using Work = std::function<void()>;

  BackgroundQueue();
  ~BackgroundQueue();
  BackgroundQueue(const BackgroundQueue&) = delete;
  BackgroundQueue& operator=(const BackgroundQueue&) = delete;

  /// Hands work over and returns at once. Any thread may call.
  void async(Work work) { queue_.async(std::move(work)); }

  /// Waits until the work handed over before has run; the queue accepts no more afterwards.
  void finish();

 private:
  PlainMainQueue queue_;
  std::thread thread_;
};

}  // namespace tarnby
