#include "cli/interrupt.h"

#include <unistd.h>

#include <csignal>
#include <string_view>

#include "cli/invocation.h"

namespace tarnby::cli {

namespace {

std::atomic<bool> removing{false};
std::atomic<bool> stop_asked{false};

/// Only what signal-safety(7) allows.
void take_signal(int /*number*/) {
  if (removing) {
    stop_asked = true;
    return;
  }
  constexpr std::string_view line = "\ntarnby-cleaner-cli: interrupted; nothing was removed\n";
  [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
  _exit(interrupted);
}

}  // namespace

void watch_for_interrupts() {
  struct sigaction action = {};
  action.sa_handler = take_signal;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaction(number, &action, nullptr);
}

StopOnInterrupt::StopOnInterrupt() {
  removing = true;
}
StopOnInterrupt::~StopOnInterrupt() {
  removing = false;
}
const std::atomic<bool>& StopOnInterrupt::asked() const {
  return stop_asked;
}

}  // namespace tarnby::cli
