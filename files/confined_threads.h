#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>

#include "files/confinement.h"

namespace tarnby {

/// Threads that can change nothing but what each of them is for. What a thread gave up does not come back to it, nor to
/// what it starts; these are started by one that was made before and keeps its rights, and does nothing else.
class ConfinedThreads {
 public:
  /// Throws std::system_error when the system gives no thread.
  ConfinedThreads() : starter_([this] { start_what_is_asked(); }) {}
  ~ConfinedThreads();
  ConfinedThreads(const ConfinedThreads&) = delete;
  ConfinedThreads& operator=(const ConfinedThreads&) = delete;

  /// Does the work on a fresh thread that has given up changing anything else, and returns when it is over; passes on
  /// what it throws. False, and nothing done, when the kernel takes no rights away or the system gives no thread,
  /// handle or memory. Any thread may call, such a fresh one, too.
  bool run(MayChange but, const std::function<void()>& work);

 private:
  using Start = std::packaged_task<std::thread()>;

  std::thread start(const std::function<void()>& work);
  void start_what_is_asked();

  std::mutex mutex_;
  std::condition_variable asked_;
  std::deque<Start> starts_;
  bool ending_ = false;
  std::thread starter_;  // last: it uses the others
};

}  // namespace tarnby
