#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "platform/text.h"
#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, that_is_wrong_is_told_in_one_line) {
  CliHome home;
  struct Case {
    const char* why;
    Words words;
    const char* told;
  };
  const Case cases[] = {
      {"nothing at all", {}, "no command was given"},
      {"an unknown command", {"sweep"}, "\"sweep\""},
      {"an empty command", {""}, "\"\""},
      {"another case", {"Scan"}, "\"Scan\""},
      {"an unknown option", {"scan", "--force"}, "--force"},
      {"an unknown option with a value", {"scan", "--force=\n1"}, "--force"},
      {"an unknown letter", {"-y", "clean"}, "-y"},
      {"a shortened option", {"clean", "--dry"}, "--dry"},
      {"a flag with a value", {"scan", "--json=no"}, "--json takes no value"},
      {"an option without its value", {"scan", "--home"}, "--home DIR"},
      {"a forgotten value does not swallow the next option", {"--home", "--dry-run", "clean"}, "--home DIR"},
      {"one option with two values", {"scan", "--home=/a", "--home=/b"}, "--home was given twice"},
      {"a second command", {"scan", "clean"}, "\"clean\""},
      {"a missing path", {"app"}, "PATH"},
      {"a missing folder", {"grant", "home"}, "NAME DIR"},
      {"one word too many", {"grant", "home", "/", "more"}, "\"more\""},
      {"an unknown grant", {"grant", "Home", "/"}, "\"Home\""},
      {"an unknown group", {"clean", "logs", "Logs"}, "caches logs remainders browsers mails installs trash"},
      {"a group that would be an option", {"clean", "--", "--yes"}, "\"--yes\""},
      {"--yes where nothing is removed", {"scan", "--yes"}, "scan removes nothing"},
      {"--dry-run where nothing is removed", {"--dry-run", "settings", "Logs", "true"}, "settings removes nothing"},
      {"a name that breaks the line", {"two\nlines\x1b[2J"}, "two\\nlines\\x1b[2J"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const ProgramResult result = home.run_bare(c.words);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("tarnby-cleaner-cli: "));
    EXPECT_THAT(result.err, HasSubstr(c.told));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner"));
  }
}

TEST(CommandLine, takes_options_anywhere_and_values_as_they_are) {
  CliHome home;
  home.tree().file("-x/Library/Logs/a.log", 3).folder("--json").folder("scan").file("scan/.Trash/a", 4);
  struct Case {
    const char* why;
    Words words;
    int bytes;
  };
  const Case cases[] = {
      {"a value that begins with \"-\"", {"scan", "--home", "-x"}, 3},
      {"one that looks like an option, after \"=\"", {"--home=--json", "scan"}, 0},
      {"one that is the name of a command", {"--home", "scan", "scan"}, 4},
      {"after the command", {"scan", "--quiet", "--home", "scan"}, 4},
      {"languages of any form", {"--languages", "de,,x_Y", "scan", "--languages=", "--home", "scan"}, -1},
      {"an empty list of languages", {"scan", "--languages=", "--home", "scan"}, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    ProgramRun run = home.bare(c.words);
    run.words.insert(run.words.end(), {"--applications", "Applications", "--json"});
    run.folder = home.path("");
    const ProgramResult result = run_program(run);
    if (c.bytes < 0) {
      EXPECT_EQ(result.status, 2);
      continue;
    }
    EXPECT_EQ(CliHome::json_of(result)["total_smart_size"], c.bytes);
  }
}

TEST(CommandLine, help_fits_a_window_and_needs_nothing) {
  CliHome home;
  ProgramRun plain = home.bare({"--help"});
  plain.environment.clear();
  const ProgramResult whole = run_program(plain);
  EXPECT_EQ(whole.status, 0);
  EXPECT_EQ(home.run_bare({"-h"}).out, whole.out);
  std::vector<ProgramResult> helps = {whole};
  for (const char* command : {"scan", "clean", "apps", "app", "grant", "settings"}) {
    SCOPED_TRACE(command);
    EXPECT_THAT(whole.out, HasSubstr("\n  " + std::string(command)));
    helps.push_back(home.run_bare({command, "--help"}));
    EXPECT_THAT(helps.back().out, StartsWith("Usage: tarnby-cleaner-cli " + std::string(command)));
    EXPECT_THAT(helps.back().out, HasSubstr("Example:\n  tarnby-cleaner-cli " + std::string(command)));
  }
  for (const ProgramResult& help : helps) {
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    std::istringstream lines(help.out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(display_columns(line), 80U) << line;
  }
  EXPECT_THAT(home.run_bare({"--version"}).out, testing::MatchesRegex("tarnby-cleaner-cli [0-9.]+\n"));
}

}  // namespace tarnby::test
