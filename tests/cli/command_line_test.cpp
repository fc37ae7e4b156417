#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

TEST(CommandLine, that_is_wrong_is_told_in_one_line) {
  CliHome home;
  struct Case {
    const char* why;
    Words words;
    const char* told;
  };
  const Case cases[] = {
      {"nothing at all", {}, "no command was given"},
      {"an empty command", {""}, "\"\""},
      {"a command that breaks the line", {"two\nlines\x1b[2J"}, "two\\nlines\\x1b[2J"},
      {"an unknown option with a value", {"scan", "--force=\n1"}, "--force"},
      {"a shortened option", {"clean", "--dry"}, "--dry"},
      {"a flag with a value", {"clean", "--dry-run=no"}, "--dry-run takes no value"},
      {"a forgotten value does not swallow the next option", {"--home", "--dry-run", "clean"}, "--home DIR"},
      {"a second command", {"scan", "clean"}, "\"clean\""},
      {"a missing folder", {"grant", "home"}, "NAME DIR"},
      {"an unknown grant", {"grant", "Home", "/"}, "\"Home\""},
      {"an unknown group", {"clean", "logs", "Logs"}, "caches logs remainders browsers mails installs trash"},
      {"a category written otherwise", {"cleanup", "caches"}, "Caches Logs Remainders Browsers Mails Trash"},
      {"nobody to ask", {"cleanup", "--home=/", "--applications=/"}, "--yes"},
      {"an option of another command", {"scan", "--at-least=1GB"}, "--at-least is for large only"},
      {"a group that would be an option", {"clean", "--", "--yes"}, "\"--yes\""},
      {"--dry-run where nothing is removed", {"--dry-run", "settings", "Logs", "true"}, "settings removes nothing"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    expect_refused(home.run_bare(c.words), 2, c.told);
  }
  EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner"));
}

TEST(CommandLine, takes_options_anywhere_and_values_as_they_are) {
  CliHome home;
  home.tree().file("-x/Library/Logs/a.log", 3).file("scan/.Trash/a", 4);
  const std::pair<Words, int> cases[] = {
      {{"scan", "--home", "-x"}, 3},
      {{"--home", "scan", "scan"}, 4},
      {{"--home=scan", "--languages=", "scan"}, 4},
      {{"--home", "/none", "scan", "--home=scan"}, 4},  // of two the last one counts
  };
  for (auto [words, bytes] : cases) {
    words.insert(words.end(), {"--applications", "Applications"});
    EXPECT_EQ(home.bare_json(words)["total_smart_size"], bytes) << words[1];
  }
  for (const Words& words : {Words{"--help"}, Words{"clean", "--help"}, Words{"--version"}}) {
    EXPECT_THAT(home.run_bare(words).out, testing::HasSubstr("tarnby-cleaner-cli"));
  }
}

}  // namespace tarnby::test
