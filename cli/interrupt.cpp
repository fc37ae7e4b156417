#include "cli/interrupt.h"

#include <unistd.h>

#include <csignal>
#include <string_view>

#include "cli/invocation.h"
#include "platform/settings_store.h"

namespace tarnby::cli {

namespace {

enum class Phase { before_removal, removal, after_removal };

std::atomic<Phase> phase{Phase::before_removal};
std::atomic<bool> stop_asked{false};
std::atomic<bool> stop_now_asked{false};
std::atomic<bool> shows_terminal{false};
static_assert(std::atomic<Phase>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void say(std::string_view line) {
  // The terminal has shown "^C" in a line of its own making.
  if (shows_terminal) [[maybe_unused]]
    const auto new_line = write(STDERR_FILENO, "\n", 1);
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

void ask_to_stop() {
  hurry_settings();
  if (!stop_asked.exchange(true)) {
    if (shows_terminal) say("Stopping after the entry in hand. Once more: stopping at once.\n");
  } else if (!stop_now_asked.exchange(true) && shows_terminal) {
    say("Stopping at once.\n");
  }
}

/// Only what signal-safety(7) allows.
void handle_signal(int /*number*/) {
  switch (phase.load()) {
    case Phase::before_removal:
      say("tarnby-cleaner-cli: interrupted; nothing was removed\n");
      _exit(interrupted);
    case Phase::removal:
      ask_to_stop();
      return;
    case Phase::after_removal:
      say("tarnby-cleaner-cli: interrupted after the removal; what is shown of it may be cut off\n");
      _exit(interrupted);
  }
}

}  // namespace

void watch_for_interrupts() {
  shows_terminal = isatty(STDERR_FILENO) != 0;
  struct sigaction action = {};
  action.sa_handler = handle_signal;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before = {};
    if (sigaction(number, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
    sigaction(number, &action, nullptr);
  }
}

StopOnInterrupt::StopOnInterrupt() {
  phase = Phase::removal;
}
StopOnInterrupt::~StopOnInterrupt() {
  phase = Phase::after_removal;
}
const std::atomic<bool>& StopOnInterrupt::asked() const {
  return stop_asked;
}
RemovalOptions StopOnInterrupt::options() const {
  return {.stop = &stop_asked, .stop_now = &stop_now_asked};
}

}  // namespace tarnby::cli
