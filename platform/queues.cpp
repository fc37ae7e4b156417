#include "platform/queues.h"

namespace tarnby {

void PlainMainQueue::async(Work work) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back(std::move(work));
  arrived_.notify_one();
}

void PlainMainQueue::after(std::chrono::milliseconds delay, Work work) {
  const std::lock_guard lock(mutex_);
  later_.emplace(Clock::now() + delay, std::move(work));
  arrived_.notify_one();
}

/// Puts in line what has become due. Under the mutex.
void PlainMainQueue::queue_due() {
  const auto end = later_.empty() ? later_.begin() : later_.upper_bound(Clock::now());
  for (auto due = later_.begin(); due != end; ++due) waiting_.push_back(std::move(due->second));
  later_.erase(later_.begin(), end);
}

/// The next work, or none. What it holds goes with it, outside the lock and before the next one is waited for.
std::optional<PlainMainQueue::Work> PlainMainQueue::take(bool wait) {
  std::unique_lock lock(mutex_);
  queue_due();
  while (wait && waiting_.empty() && !quitting_) {
    if (later_.empty()) {
      arrived_.wait(lock);
    } else {
      arrived_.wait_until(lock, later_.begin()->first);
    }
    queue_due();
  }
  if (waiting_.empty()) return {};
  Work work = std::move(waiting_.front());
  waiting_.pop_front();
  return work;
}

void PlainMainQueue::run() {
  while (const auto work = take(true)) (*work)();
  const std::lock_guard lock(mutex_);
  quitting_ = false;
}

void PlainMainQueue::run_pending() {
  while (const auto work = take(false)) (*work)();
}

void PlainMainQueue::quit() {
  const std::lock_guard lock(mutex_);
  quitting_ = true;
  arrived_.notify_one();
}

BackgroundQueue::BackgroundQueue() : thread_([this] { queue_.run(); }) {}

BackgroundQueue::~BackgroundQueue() {
  finish();
}

void BackgroundQueue::finish() {
  queue_.quit();
  if (thread_.joinable()) thread_.join();
}

}  // namespace tarnby
