#include "platform/queues.h"

namespace tarnby {

void PlainMainQueue::async(Work work) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back(std::move(work));
  arrived_.notify_one();
}

bool PlainMainQueue::take(Work& work, bool wait) {
  std::unique_lock lock(mutex_);
  if (wait) arrived_.wait(lock, [&] { return !waiting_.empty() || quitting_; });
  if (waiting_.empty()) return false;
  work = std::move(waiting_.front());
  waiting_.pop_front();
  return true;
}

void PlainMainQueue::run() {
  Work work;
  while (take(work, true)) work();
  const std::lock_guard lock(mutex_);
  quitting_ = false;
}

void PlainMainQueue::run_pending() {
  Work work;
  while (take(work, false)) work();
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
