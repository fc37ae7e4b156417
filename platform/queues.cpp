#include "platform/queues.h"

namespace tarnby {

void PlainMainQueue::async(Work work) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back(std::move(work));
  arrived_.notify_one();
}

/// The next work, or none. What it holds goes with it, outside the lock and before the next one is waited for.
std::optional<PlainMainQueue::Work> PlainMainQueue::take(bool wait) {
  std::unique_lock lock(mutex_);
  if (wait) arrived_.wait(lock, [&] { return !waiting_.empty() || quitting_; });
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
  queue_.quit();
  thread_.join();
}

}  // namespace tarnby
