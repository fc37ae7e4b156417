#include "files/confined_threads.h"

#include <exception>
#include <utility>

namespace tarnby {

ConfinedThreads::~ConfinedThreads() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    asked_.notify_one();
  }
  starter_.join();
}

bool ConfinedThreads::run(MayChange but, const std::function<void()>& work) {
  bool confined = false;
  std::exception_ptr failure;
  const auto give_up_and_work = [&] {
    confined = give_up_changing(std::exchange(but, {}));  // parts of a deep tree wait for each other without handles
    if (!confined) return;
    try {
      work();
    } catch (...) {
      failure = std::current_exception();
    }
  };
  std::thread thread = start(std::cref(give_up_and_work));
  if (thread.joinable()) thread.join();
  if (failure) std::rethrow_exception(failure);
  return confined;
}

/// None when the system gives no thread or no memory.
std::thread ConfinedThreads::start(const std::function<void()>& work) try {
  Start asked([&work] { return std::thread(work); });
  std::future<std::thread> started = asked.get_future();
  {
    const std::lock_guard lock(mutex_);
    starts_.push_back(std::move(asked));
    asked_.notify_one();
  }
  return started.get();
} catch (const std::exception&) {
  return {};
}

void ConfinedThreads::start_what_is_asked() {
  std::unique_lock lock(mutex_);
  for (;;) {
    asked_.wait(lock, [&] { return ending_ || !starts_.empty(); });
    if (starts_.empty()) return;
    Start next = std::move(starts_.front());
    starts_.pop_front();
    lock.unlock();
    next();
    lock.lock();
  }
}

}  // namespace tarnby
