#include "cli/command_table.h"

#include <algorithm>

#include "cli/commands.h"
#include "engine/categories.h"

namespace tarnby::cli {

namespace {

constexpr std::size_t any_number = SIZE_MAX;

/// A line for each of these categories: its name and what is in it.
std::string lines_of(std::span<const Category> rows, std::string_view Category::*name) {
  constexpr std::size_t help_begins = 12;
  std::string lines;
  for (const Category& row : rows) {
    lines += "  ";
    lines += row.*name;
    lines.append(help_begins - (row.*name).size(), ' ');
    lines += row.help;
    lines += '\n';
  }
  return lines;
}

std::string groups() {
  return lines_of(smart_categories(), &Category::type);
}

std::string categories() {
  return lines_of(junk_categories(), &Category::setting);
}

constexpr CommandRow commands[] = {
    {"scan", "", 0, 0, Effect::looks, run_scan, "Look for what can be removed and show it by group",
     R"(Nothing is changed. "clean --help" tells what each group is.

Example:
  tarnby-cleaner-cli scan
  tarnby-cleaner-cli scan --json > found.json
)"},
    {"clean", "[GROUP...]", 0, any_number, Effect::removes, run_clean,
     "Scan, then remove the named groups, or all of them",
     R"(What is removed does not go to the Trash: it is gone. You are asked first.

Groups:
)",
     groups, R"(Without a group: all seven. In a Linux home, what may lose something that you made is
listed and stays, unless you say --all; so does what belongs to a program that runs.

Example:
  tarnby-cleaner-cli clean --dry-run       see what would go
  tarnby-cleaner-cli clean caches logs     remove these two groups, after asking
  tarnby-cleaner-cli clean trash --yes     empty the Trash without asking
)"},
    {"junk", "", 0, 0, Effect::looks, run_junk, "Look for junk and show it by category",
     R"(Nothing is changed. "cleanup --help" tells what each category is.

Example:
  tarnby-cleaner-cli junk
  tarnby-cleaner-cli junk --json > found.json
)"},
    {"cleanup", "[CATEGORY...]", 0, any_number, Effect::removes, run_cleanup,
     "Look for junk, then remove the named categories",
     R"(What is removed does not go to the Trash: it is gone. You are asked first.

Categories:
)",
     categories, R"(Without a category: those that the settings of these names switch on.

Example:
  tarnby-cleaner-cli cleanup --dry-run       see what would go
  tarnby-cleaner-cli cleanup Caches Logs     remove these two, after asking
  tarnby-cleaner-cli settings Browsers true  from now on with browsers
)"},
    {"large", "", 0, 0, Effect::looks, run_large, "List applications, packages and files of 10 MB and more",
     R"(Files of other categories are left out: Downloads, caches, logs, iTunes, and what
the developer tools keep. What is in an application or a package counts with it.
Only the home folder is looked at. Nothing is removed.

Example:
  tarnby-cleaner-cli large --at-least 1GB
)"},
    {"apps", "", 0, 0, Effect::looks, run_apps, "List the installed applications",
     R"(One line each: name, version and path.

Example:
  tarnby-cleaner-cli apps
)"},
    {"app", "PATH", 1, 1, Effect::looks, run_app, "Describe one application and show what belongs to it",
     R"(PATH is the application's folder, NAME.app. Nothing is changed.

Example:
  tarnby-cleaner-cli app DIR/NAME.app
)"},
    {"uninstall", "PATH", 1, 1, Effect::removes, run_uninstall, "Remove one application with all that belongs to it",
     R"(PATH is the application's folder, NAME.app. What is removed does not go to the
Trash: it is gone. You are asked first, with a list of everything that would go.
Files that applications of one maker share are shown by "app" and stay.

Example:
  tarnby-cleaner-cli uninstall DIR/NAME.app --dry-run
  tarnby-cleaner-cli uninstall DIR/NAME.app
)"},
    {"unused", "", 0, 0, Effect::looks, run_unused, "List the applications not used for thirty days",
     R"(With the day on which each was last opened, and where other copies of it are.
Nothing is changed.

Example:
  tarnby-cleaner-cli unused
)"},
    {"languages", "", 0, 0, Effect::looks, run_languages, "List application languages that you do not use",
     R"(One folder a line. Your languages are those of your session, or what --languages
names. Nothing is changed.

Example:
  tarnby-cleaner-cli languages --languages de,en
)"},
    {"grant", "NAME DIR", 2, 2, Effect::stores, run_grant, "Give access to a folder, for this and later runs",
     R"(Nothing is read or removed outside the folders you give.

Names:
  home          your home folder; it carries your user name
  Applications  the folder with the applications; it is named Applications
  macOS         the startup disk, any name

A folder of another name is stored too, but reported as not valid.

Example:
  tarnby-cleaner-cli grant home ~
  tarnby-cleaner-cli grant Applications DIR
)"},
    {"settings", "[KEY [VALUE]]", 0, 2, Effect::stores, run_settings, "Show all settings or one, or write one",
     R"(VALUE is true, false or a whole number, or the path that a setting takes whose
name ends in "_url". Folders (home, Applications, macOS) are given with "grant".

Example:
  tarnby-cleaner-cli settings
  tarnby-cleaner-cli settings Browsers true
)"},
};

constexpr OptionRow options[] = {
    {"--home", "DIR", &Invocation::home, false, "home folder for this run, not the granted one"},
    {"--applications", "DIR", &Invocation::applications, false, "Applications folder for this run, likewise"},
    {"--disk", "DIR", &Invocation::disk, false, "startup disk for this run; all of it is searched"},
    {"--layout", "KIND", &Invocation::layout, false, "take the home for one of this kind: macos or linux"},
    {"--set", "KEY=VALUE", &Invocation::settings, false, "a setting for this run; may be repeated"},
    {"--languages", "LIST", &Invocation::languages, false, "preferred languages for this run: de,en-GB"},
    {"--at-least", "SIZE", &Invocation::at_least, false, "only those of that size or more: 500MB, 1.5GB", "large"},
    {"--json", "", &Invocation::json, false, "one JSON object on standard output"},
    {"--quiet", "", &Invocation::quiet, false, "no progress on the terminal"},
    {"--dry-run", "", &Invocation::dry_run, true, "list what would go and stay; change nothing"},
    {"--yes", "", &Invocation::yes, true, "remove without asking"},
    {"--all", "", &Invocation::all, true, "also what may lose something that you made", "clean"},
    {"--help", "", &Invocation::help, false, "this text; after a command, more about that command"},
    {"--version", "", &Invocation::version, false, "the program's version"},
};

}  // namespace

std::span<const CommandRow> command_rows() {
  return commands;
}

std::span<const OptionRow> option_rows() {
  return options;
}

const CommandRow* command_row(std::string_view name) {
  const auto* row = std::ranges::find(commands, name, &CommandRow::name);
  return row == std::end(commands) ? nullptr : row;
}

std::string command_names() {
  std::string names;
  for (const CommandRow& row : commands) {
    if (!names.empty()) names += ", ";
    names += row.name;
  }
  return names;
}

}  // namespace tarnby::cli
