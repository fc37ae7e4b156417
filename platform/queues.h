#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace tarnby {

/// The queue of the main thread. What is handed to it runs there, in order, after what was handed over before.
class MainQueue {
 public:
  using Work = std::function<void()>;

  virtual ~MainQueue() = default;

  /// Hands work over and returns at once. Any thread may call.
  virtual void async(Work work) = 0;
};

/// A main queue of our own, for programs without an event loop: the thread that calls `run` is the main thread.
class PlainMainQueue final : public MainQueue {
 public:
  void async(Work work) override;

  /// Runs what is handed over, waiting for more, until `quit`.
  void run();
  /// Runs what has been handed over so far; never waits.
  void run_pending();
  /// Makes `run` return once everything handed over before has run. Any thread may call.
  void quit();

 private:
  std::optional<Work> take(bool wait);

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<Work> waiting_;
  bool quitting_ = false;
};

/// Runs work on a thread of its own, one after the other. Its end waits for what was handed over.
class BackgroundQueue {
 public:
  using Work = std::function<void()>;

  BackgroundQueue();
  ~BackgroundQueue();
  BackgroundQueue(const BackgroundQueue&) = delete;
  BackgroundQueue& operator=(const BackgroundQueue&) = delete;

  /// Hands work over and returns at once. Any thread may call.
  void async(Work work) { queue_.async(std::move(work)); }

 private:
  PlainMainQueue queue_;
  std::thread thread_;
};

}  // namespace tarnby
