#include "app/shell/command_line.h"

#include <algorithm>
#include <iterator>

namespace tarnby {

namespace {

using Asks = CommandLine::Asks;

struct AskRow {
  std::string_view word;
  Asks asks;
};

constexpr AskRow ask_rows[] = {
    {"--help", Asks::help}, {"-h", Asks::help}, {"--version", Asks::version}, {"-v", Asks::version}};

/// What the toolkit and the desktop's session manager add, with one "-" or two.
struct ToolkitRow {
  std::string_view name;
  bool takes_value;
};

constexpr ToolkitRow toolkit_rows[] = {{"platform", true},
                                       {"platformpluginpath", true},
                                       {"platformtheme", true},
                                       {"plugin", true},
                                       {"qwindowgeometry", true},
                                       {"qwindowicon", true},
                                       {"qwindowtitle", true},
                                       {"geometry", true},
                                       {"icon", true},
                                       {"title", true},
                                       {"session", true},
                                       {"display", true},
                                       {"name", true},
                                       {"style", true},
                                       {"stylesheet", true},
                                       {"fontengine", true},
                                       {"reverse", false},
                                       {"widgetcount", false},
                                       {"nograb", false},
                                       {"dograb", false},
                                       {"sync", false}};

const ToolkitRow* toolkit_row(std::string_view word) {
  if (!word.starts_with('-')) return nullptr;
  word.remove_prefix(word.starts_with("--") ? 2 : 1);
  const auto* row = std::ranges::find(toolkit_rows, word.substr(0, word.find('=')), &ToolkitRow::name);
  return row == std::end(toolkit_rows) ? nullptr : row;
}

/// The value behind an option: in the same word after "=", or the next word, which is passed over then.
std::optional<std::string> value_of(std::span<const char* const> words, std::size_t& at) {
  const std::string_view word = words[at];
  if (const auto equals = word.find('='); equals != std::string_view::npos) return std::string(word.substr(equals + 1));
  return ++at < words.size() ? std::optional<std::string>(words[at]) : std::nullopt;
}

CommandLine wrong(std::string fault) {
  return {Asks::wrong, {}, std::move(fault)};
}

}  // namespace

const char* const window_help =
    R"(Usage: tarnby-cleaner [--languages LIST]
Opens the window that finds what can be removed from a home folder, and removes what you choose.

  --languages LIST  speak the first of these languages that there is, instead of the
                    desktop's; separated by commas: --languages fr,de
  -h, --help        show this help
  -v, --version     show the program's version

In a terminal, or without a display: tarnby-cleaner-cli --help
)";

CommandLine read_command_line(std::span<const char* const> words) {
  CommandLine line;
  for (std::size_t at = 0; at < words.size(); ++at) {
    const std::string_view word = words[at];
    const auto* ask = std::ranges::find(ask_rows, word, &AskRow::word);
    if (ask != std::end(ask_rows)) {
      return {ask->asks, {}, {}};
    }
    if (word.substr(0, word.find('=')) == "--languages") {
      line.languages = value_of(words, at);
      if (!line.languages) return wrong("--languages takes a LIST");
    } else if (const ToolkitRow* row = toolkit_row(word)) {
      if (row->takes_value) (void)value_of(words, at);
    } else {
      return wrong("there is no option \"" + std::string(word) + "\"");
    }
  }
  return line;
}

}  // namespace tarnby
