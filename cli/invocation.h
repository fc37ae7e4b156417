#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnby::cli {

struct CommandRow;

/// How the program ends.
enum ExitStatus {
  done = 0,
  left_something = 1,
  wrong_usage = 2,
  no_access = 3,
  /// What is listed is true, but the disk or the system failed before all was seen.
  cut_short = 4,
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
  /// How the program was started: a name that the shell finds, or a path.
  std::string called_as = "tarnby-cleaner-cli";
  /// Null only when help or the version is asked for.
  const CommandRow* command = nullptr;
  std::vector<std::string> arguments;
  /// Folders for this run. Given but empty is not the same as not given: it must not fall back to what is stored.
  std::optional<std::string> home;
  std::optional<std::string> applications;
  std::optional<std::string> disk;
  std::optional<std::string> languages;
  /// KEY=VALUE, as typed.
  std::vector<std::string> settings;
  /// The kind of the home, as typed.
  std::optional<std::string> layout;
  /// A size, as typed.
  std::optional<std::string> at_least;
  bool json = false;
  /// Removes what may lose something, too.
  bool all = false;
  bool dry_run = false;
  bool yes = false;
  bool quiet = false;
  bool help = false;
  bool version = false;
};

/// Reads the words after the program's name; throws CommandError with `wrong_usage`.
///
/// Options may stand anywhere. What follows "--" is no option, and neither is a negative number. An option takes its
/// value after "=" or as the next word; an empty value is a value, and the name of an option is none: a value that was
/// forgotten must not swallow the word that says what to do. Of an option given twice the last one counts.
Invocation parse_command_line(std::span<const char* const> words);

}  // namespace tarnby::cli
