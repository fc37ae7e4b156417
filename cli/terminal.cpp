#include "cli/terminal.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace tarnby::cli {

namespace {

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody changes the environment
  return value == nullptr ? std::string_view() : value;
}

bool is_able_terminal(int handle) {
  return isatty(handle) != 0 && variable("TERM") != "dumb";
}

}  // namespace

bool shows_bold() {
  return is_able_terminal(STDOUT_FILENO) && variable("NO_COLOR").empty();
}

bool rewrites_lines() {
  return is_able_terminal(STDERR_FILENO);
}

}  // namespace tarnby::cli
