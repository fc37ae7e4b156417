#include "cli/invocation.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <string_view>

namespace tarnby::cli {

namespace {

struct ArgumentRow {
  std::string_view name;
  std::string_view help;
  int least;
  int most;  // -1: any number
};

struct CommandRow {
  std::string_view name;
  std::string_view help;
  std::vector<ArgumentRow> arguments;
  bool removes;
};

const std::vector<CommandRow>& command_rows() {
  static const std::vector<CommandRow> rows = {
      {"scan", "Look for what can be removed and show it by group, with sizes", {}, false},
      {"clean",
       "Scan, then remove the named groups for good (none named: all of them)",
       {{"GROUP", "caches, logs, remainders, browsers, mails, installs, trash", 0, -1}},
       true},
      {"apps", "List the installed applications", {}, false},
      {"app", "Describe one application and its size", {{"PATH", "An application bundle", 1, 1}}, false},
      {"grant",
       "Give access to a folder, for this and later runs",
       {{"NAME", "home, Applications or macOS (the whole disk)", 1, 1}, {"DIR", "The folder", 1, 1}},
       false},
      {"settings",
       "Show all settings, show one, or write one",
       {{"KEY", "The setting's name", 0, 1}, {"VALUE", "true, false or a whole number", 0, 1}},
       false},
  };
  return rows;
}

const CommandRow& row_of(std::string_view name) {
  const auto& rows = command_rows();
  return *std::find_if(rows.begin(), rows.end(), [&](const CommandRow& row) { return row.name == name; });
}

void add_options(CLI::App& app, Invocation& asked) {
  app.add_option("--home", asked.home, "Use this home folder for this run")->type_name("DIR");
  app.add_option("--applications", asked.applications, "Use this Applications folder for this run")->type_name("DIR");
  app.add_option("--disk", asked.disk, "Use this startup disk for this run, and search all of it")->type_name("DIR");
  app.add_option("--set", asked.settings, "A setting for this run only; may be repeated")
      ->type_name("KEY=VALUE")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--languages", asked.languages, "Preferred languages for this run, comma-separated")
      ->type_name("LIST");
  app.add_flag("--json", asked.json, "One JSON object on standard output");
  app.add_flag("--dry-run", asked.dry_run, "Show what would be removed; remove nothing, write nothing");
  app.add_flag("--yes", asked.yes, "Do not ask before removing");
  app.add_flag("--quiet", asked.quiet, "No progress");
}

/// One line, whatever the parser's text looks like.
std::string in_one_line(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

void check(const Invocation& asked) {
  if (asked.command.empty()) throw CommandError(wrong_usage, "no command was given; see --help for the list");
  const CommandRow& row = row_of(asked.command);
  if (!row.removes && (asked.dry_run || asked.yes)) {
    throw CommandError(wrong_usage, asked.command + " removes nothing; leave --dry-run and --yes out");
  }
}

}  // namespace

std::variant<Invocation, Information> parse_command_line(int argc, const char* const* argv) {
  Invocation asked;
  CLI::App app("Finds what can be removed from a home folder without harm, shows it, and removes what you choose.",
               "tarnby-cleaner-cli");
  app.fallthrough();
  app.set_version_flag("--version", "tarnby-cleaner-cli " TARNBY_VERSION);
  app.footer("Begin with:  tarnby-cleaner-cli grant home ~   and   tarnby-cleaner-cli grant Applications DIR");
  add_options(app, asked);
  for (const CommandRow& row : command_rows()) {
    CLI::App* command = app.add_subcommand(std::string(row.name), std::string(row.help));
    for (const ArgumentRow& argument : row.arguments) {
      command->add_option(std::string(argument.name), CLI::callback_t(), std::string(argument.help))
          ->expected(argument.least, argument.most < 0 ? CLI::detail::expected_max_vector_size : argument.most)
          ->required(argument.least > 0)
          ->type_name("");
    }
    command->callback([&asked, &row, command] {
      asked.command = row.name;
      for (const ArgumentRow& argument : row.arguments) {
        const auto& given = command->get_option(std::string(argument.name))->results();
        asked.arguments.insert(asked.arguments.end(), given.begin(), given.end());
      }
    });
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    const auto chosen = app.get_subcommands();
    return Information{chosen.empty() ? app.help() : chosen.front()->help()};
  } catch (const CLI::CallForVersion& version) {
    return Information{std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    throw CommandError(wrong_usage, in_one_line(error.what()) + "; see --help");
  }
  check(asked);
  return asked;
}

}  // namespace tarnby::cli
