#include "app/shell/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

namespace tarnby {

namespace {

constexpr std::array ending_signals = {SIGTERM, SIGHUP, SIGINT};

/// Where the handler writes; a pipe, since the event loop may be waited for but not called from there.
std::atomic<int> telling{-1};
static_assert(std::atomic<int>::is_always_lock_free);

/// Only what signal-safety(7) allows.
void tell(int /*number*/) {
  const int error = errno;
  [[maybe_unused]] const auto written = write(telling, "", 1);
  errno = error;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> end) {
  std::array<int, 2> ends = {-1, -1};
  if (pipe(ends.data()) != 0) return;  // they end the program at once then
  for (const int number : ends) (void)fcntl(number, F_SETFD, FD_CLOEXEC);
  heard_.reset(ends[0]);
  told_.reset(ends[1]);
  notifier_ = std::make_unique<QSocketNotifier>(heard_.get(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this, end = std::move(end)] {
    notifier_->setEnabled(false);
    end();
  });
  telling = told_.get();
  struct sigaction action = {};
  action.sa_handler = tell;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  for (const int number : ending_signals) {
    struct sigaction before = {};
    if (sigaction(number, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
    sigaction(number, &action, nullptr);
  }
}

EndSignals::~EndSignals() {
  telling = -1;
}

}  // namespace tarnby
