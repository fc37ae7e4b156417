#include "cli/help.h"

#include <utility>

#include "cli/advice.h"

namespace tarnby::cli {

namespace {

constexpr std::string_view program = "tarnby-cleaner-cli";

constexpr std::string_view introduction =
    R"(Finds what can be removed from a home folder without harm, shows it, and removes
what you choose.

Usage: tarnby-cleaner-cli [OPTIONS] COMMAND [ARGUMENTS]
)";

constexpr std::string_view ending = R"(
"tarnby-cleaner-cli COMMAND --help" tells more about one command.

First steps:
)";

constexpr std::string_view status_text = R"(
Exit status: 0 done; 1 something could not be removed or written; 2 the command
line is wrong; 3 a folder is missing or not given access to; 4 what is listed is
true, but not all could be looked at, since the disk or the system failed;
130 interrupted.
)";

std::string with_words(std::string_view name, std::string_view words) {
  return words.empty() ? std::string(name) : std::string(name) + " " + std::string(words);
}

void add_line(std::string& text, const std::string& left, std::string_view right) {
  constexpr std::size_t right_begins = 26;
  text += "  " + left + std::string(left.size() + 4 > right_begins ? 2 : right_begins - 2 - left.size(), ' ');
  text += right;
  text += '\n';
}

void add_option(std::string& text, const OptionRow& row) {
  add_line(text, with_words(row.name, row.value), row.help);
}

void add_options(std::string& text, bool only_when_removing) {
  for (const OptionRow& row : option_rows()) {
    if (row.only_when_removing == only_when_removing && row.only_with.empty()) add_option(text, row);
  }
}

/// The options of one command alone, below a title of their own.
void add_own_options(std::string& text, const CommandRow& command) {
  bool is_first = true;
  for (const OptionRow& row : option_rows()) {
    if (row.only_with != command.name) continue;
    if (std::exchange(is_first, false)) text += "\nOptions of " + std::string(command.name) + ":\n";
    add_option(text, row);
  }
}

}  // namespace

std::string program_help(const std::string& called_as) {
  std::string text(introduction);
  text += "\nCommands:\n";
  for (const CommandRow& row : command_rows()) add_line(text, with_words(row.name, row.arguments), row.summary);
  text += "\nOptions, before or after the command; of one given twice the last one counts:\n";
  add_options(text, false);
  text += "\nOptions of commands that remove:\n";
  add_options(text, true);
  for (const CommandRow& row : command_rows()) add_own_options(text, row);
  text += ending;
  text += first_steps(called_as);
  text += status_text;
  return text;
}

std::string command_help(const CommandRow& row) {
  std::string text = "Usage: " + std::string(program) + " " + with_words(row.name, row.arguments) + " [OPTIONS]\n\n";
  text += row.summary;
  text += ".\n";
  text += row.details;
  if (row.list != nullptr) text += row.list();
  text += row.after_list;
  add_own_options(text, row);
  if (row.effect == Effect::removes) {
    text += "\nOptions of commands that remove:\n";
    add_options(text, true);
  }
  text += "\nOptions of every command are listed by \"" + std::string(program) + " --help\".\n";
  return text;
}

}  // namespace tarnby::cli
