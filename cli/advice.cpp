#include "cli/advice.h"

#include <algorithm>

#include "cli/command_table.h"
#include "platform/bookmarks.h"

namespace tarnby::cli {

namespace {

constexpr const char* usual_applications = "/Applications";

bool needs_no_quotes(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("-_./=,:+@%").find(c) != std::string_view::npos;
}

std::string shell_word(const std::string& word) {
  if (!word.empty() && std::ranges::all_of(word, needs_no_quotes)) return word;
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

/// The options that were given for this run, as they are typed.
std::string options_again(const Invocation& asked) {
  std::string typed;
  const auto add = [&](std::string_view option, const std::string& value) {
    typed += " " + std::string(option) + " " + shell_word(value);
  };
  for (const OptionRow& row : option_rows()) {
    if (const auto* many = std::get_if<std::vector<std::string> Invocation::*>(&row.place)) {
      for (const std::string& value : asked.**many) add(row.name, value);
    }
    const auto* one = std::get_if<std::optional<std::string> Invocation::*>(&row.place);
    if (one && asked.**one && row.only_with.empty()) add(row.name, *(asked.**one));
  }
  return typed;
}

/// True when nothing of it would have to be escaped on the screen, where it could not be copied from.
bool can_be_shown(const std::string& typed) {
  return one_line(typed).size() == typed.size() + static_cast<std::size_t>(std::ranges::count(typed, '\\'));
}

}  // namespace

void print_next_steps(Context& context, std::span<const NextStep> steps) {
  constexpr std::size_t words_begin = 31;
  const std::string program = shell_word(context.asked.called_as) + " ";
  const std::string options = options_again(context.asked);
  if (!context.out_is_terminal || !can_be_shown(program + options)) return;
  context.out << '\n';
  for (const NextStep& step : steps) {
    const std::string purpose = std::string(step.purpose) + ":";
    context.out << purpose << std::string(words_begin - purpose.size(), ' ') << program << step.words << options
                << '\n';
  }
}

std::string first_steps(const std::string& program) {
  const std::string begin = "  " + shell_word(program) + " ";
  const bool are_there = !real_folder(Url::file(usual_applications)).empty();
  const std::string applications = are_there ? usual_applications : "DIR     DIR is the folder that holds them";
  return begin + "grant home ~\n" + begin + "grant Applications " + applications + "\n" + begin + "scan\n";
}

}  // namespace tarnby::cli
