#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarnby {

/// What the words behind the program's name ask for. Read before there is a window or a display, so that help and
/// mistakes are told everywhere.
struct CommandLine {
  enum class Asks { window, help, version, wrong };

  Asks asks = Asks::window;
  /// Languages to speak instead of the desktop's, separated by commas.
  std::optional<std::string> languages;
  /// Why the words are wrong, in one line.
  std::string fault;
};

/// @param words without the program's name. Those that the toolkit takes for itself, such as "-platform", are passed
/// over. An option given twice: the last one counts.
CommandLine read_command_line(std::span<const char* const> words);

/// What --help prints.
extern const char* const window_help;

}  // namespace tarnby
