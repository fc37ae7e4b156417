#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/session.h"
#include "tests/cli/cli_home.h"

namespace tarnby::test {

TEST(Access, is_never_guessed) {
  CliHome home;
  home.tree().file("home/.Trash/a", 1).file("file").link("dead", "nowhere");
  struct Case {
    const char* why;
    Words options;
    const char* told;
  };
  const Case cases[] = {
      {"the home folder of the session is no grant", {}, "tarnby-cleaner-cli grant home DIR"},
      {"Applications neither", {"--home=home"}, "tarnby-cleaner-cli grant Applications DIR"},
      {"missing", {"--home=none", "--applications=Applications"}, "\"home\""},
      {"a file", {"--home=home", "--applications=file"}, "\"Applications\""},
      {"a link to nowhere", {"--home=home", "--applications=dead"}, "\"Applications\""},
      {"empty: not the folder of this moment", {"--home", "", "--applications=Applications"}, "\"home\""},
      {"a newline stays in the line", {"--home=no\nsuch", "--applications=Applications"}, "no\\nsuch"},
      {"a disk", {"--disk=none", "--home=home", "--applications=Applications"}, "\"macOS\""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    ProgramRun run = home.bare({"clean", "--yes"});
    run.words.insert(run.words.end(), c.options.begin(), c.options.end());
    run.environment["HOME"] = home.path("home");
    expect_refused(run_program(run), 3, c.told);
  }
  if (!plain_user_reaches(TARNBY_CLI)) GTEST_SKIP() << "only root may get to the program";
  home.tree().mode("home", 0000);
  as_plain_user(home.tree(), [&] { expect_refused(home.run({"clean", "--yes"}), 3, "Permission denied"); });
  home.tree().mode("home", 0700);
  EXPECT_TRUE(home.tree().exists("home/.Trash/a"));
}

TEST(Access, is_granted_for_later_runs_and_checked_by_name) {
  const std::string user = current_session().user_name;
  CliHome home;
  home.tree().file("other/.Trash/a", 5).file(user + "/.Trash/b", 7).link("link", user).file("file");
  struct Case {
    const char* why;
    const char* name;
    std::string folder;
    std::string real;
    bool is_valid;
  };
  const Case cases[] = {
      {"another name is stored, and told", "home", "other", "other", false},
      {"a link is stored as where it leads", "home", "link", user, true},
      {"Applications by its name", "Applications", "Applications", "Applications", true},
      {"a disk may have any name", "macOS", "other", "other", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Json told = home.bare_json({"grant", c.name, c.folder});
    EXPECT_EQ(told, (Json{{"key", c.name}, {"path", home.path(c.real)}, {"valid", c.is_valid}}));
    EXPECT_EQ(home.bare_json({"settings", c.name})[c.name], home.path(c.real));
  }
  for (const char* folder : {"none", "file", ""}) {
    expect_refused(home.run_bare({"grant", "home", folder}), 3, "nothing was stored");
  }
  EXPECT_EQ(home.bare_json({"scan", "--home", "other"})["total_smart_size"], 5);
  EXPECT_EQ(home.bare_json({"scan"})["total_smart_size"], 7) << "later runs use what was granted, and only that";
  expect_refused(home.run_bare({"scan", "--home", ""}), 3, "\"home\"");
}

}  // namespace tarnby::test
