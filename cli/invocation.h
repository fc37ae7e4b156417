#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace tarnby::cli {

/// How the program ends.
enum ExitStatus {
  done = 0,
  left_something = 1,
  wrong_usage = 2,
  no_access = 3,
  interrupted = 130,
};

/// A command that cannot go on: one line for standard error that says what to do, and how the program ends.
class CommandError : public std::runtime_error {
 public:
  CommandError(ExitStatus status, const std::string& line) : std::runtime_error(line), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

/// What the command line asks for.
struct Invocation {
  std::string command;
  std::vector<std::string> arguments;
  /// Folders for this run. Given but empty is not the same as not given: it must not fall back to what is stored.
  std::optional<std::string> home;
  std::optional<std::string> applications;
  std::optional<std::string> disk;
  std::optional<std::string> languages;
  /// KEY=VALUE, as typed.
  std::vector<std::string> settings;
  bool json = false;
  bool dry_run = false;
  bool yes = false;
  bool quiet = false;
};

/// A text to print instead of running anything: help, the version.
struct Information {
  std::string text;
};

/// Reads the command line; throws CommandError with `wrong_usage`.
std::variant<Invocation, Information> parse_command_line(int argc, const char* const* argv);

}  // namespace tarnby::cli
