#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/session.h"
#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

void expect_refused(const ProgramResult& result, const std::string& named) {
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, HasSubstr(named));
  EXPECT_THAT(result.err, testing::StartsWith("tarnby-cleaner-cli: "));
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
}

}  // namespace

TEST(Access, is_never_guessed) {
  struct Case {
    const char* why;
    std::optional<std::string> home_variable;
  };
  CliHome home;
  home.tree().file("home/Library/Logs/a.log", 1);
  const Case cases[] = {
      {"the home folder of the session is no grant", home.path("home")},
      {"without one", std::nullopt},
      {"with an empty one", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    for (const Words& words : {Words{"scan"}, Words{"clean", "--yes"}, Words{"apps", "--json"}}) {
      ProgramRun run = home.bare(words);
      run.environment.erase("HOME");
      if (c.home_variable) run.environment["HOME"] = *c.home_variable;
      expect_refused(run_program(run), "tarnby-cleaner-cli grant home DIR");
      run.words.insert(run.words.end(), {"--home", home.path("home")});
      expect_refused(run_program(run), "tarnby-cleaner-cli grant Applications DIR");
    }
  }
  EXPECT_TRUE(home.tree().exists("home/Library/Logs/a.log"));
}

TEST(Access, to_a_folder_that_is_no_use_is_told_with_its_name) {
  CliHome home;
  home.tree().file("file").link("dead", "nowhere").link("to file", "file");
  struct Case {
    const char* why;
    const char* option;
    std::string given;
    const char* named;
  };
  const Case cases[] = {
      {"missing", "--home=", home.path("none"), "\"home\""},
      {"a file", "--home=", home.path("file"), "\"home\""},
      {"a link to nowhere", "--applications=", home.path("dead"), "\"Applications\""},
      {"a link to a file", "--applications=", home.path("to file"), "\"Applications\""},
      {"empty: it must not become the folder of this moment or the stored one", "--home=", "", "\"home\""},
      {"a newline in the name stays in the line", "--home=", "no\nsuch", "no\\nsuch"},
      {"a disk", "--disk=", home.path("none"), "\"macOS\""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const std::string option = c.option;
    ProgramRun run = home.bare({"scan", "--json", option + c.given});
    if (option != "--home=") run.words.push_back("--home=" + home.path("home"));
    if (option != "--applications=") run.words.push_back("--applications=" + home.path("Applications"));
    expect_refused(run_program(run), c.named);
  }
}

TEST(Access, to_an_unreadable_folder_is_no_empty_result) {
  CliHome home;
  home.tree().file("home/.Trash/a", 1).mode("home", 0000);
  as_plain_user(home.tree(), [&] { expect_refused(home.run({"clean", "--yes"}), "Permission denied"); });
  home.tree().mode("home", 0700);
  EXPECT_TRUE(home.tree().exists("home/.Trash/a"));
}

TEST(Access, through_a_link_or_from_the_current_folder_is_to_the_same_home) {
  CliHome home;
  home.tree().file("home/Library/Logs/a.log", 5).link("short", "home").link("apps", "Applications");
  const Json direct = home.json({"scan"});
  for (const auto& [given_home, given_applications] :
       {std::pair("short", "apps"), std::pair("./home/", "Applications//."), std::pair("home/../short", "apps/")}) {
    SCOPED_TRACE(given_home);
    ProgramRun run = home.bare({"scan", "--json", "--home", given_home, "--applications", given_applications});
    run.folder = home.path("");
    EXPECT_EQ(CliHome::json_of(run_program(run)), direct);
  }
}

TEST(Access, is_granted_for_later_runs_and_checked_by_name) {
  const std::string user = current_session().user_name;
  CliHome home;
  home.tree().file("other/Library/Logs/a.log", 5).folder(user + "/Library").file(user + "/Library/Logs/b.log", 7);
  home.tree().link("link", user).file("file").folder("Applications/applications");
  struct Case {
    const char* why;
    const char* name;
    std::string folder;
    std::string real;
    bool is_valid;
  };
  const Case cases[] = {
      {"the home folder is named as the user", "home", user, user, true},
      {"a link is stored as where it leads", "home", "link", user, true},
      {"another name is stored, and told", "home", "other", "other", false},
      {"Applications by its name", "Applications", "Applications", "Applications", true},
      {"letter for letter", "Applications", "Applications/applications", "Applications/applications", false},
      {"a disk may have any name", "macOS", "other", "other", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Json told = home.run_bare_json({"grant", c.name, home.path(c.folder)});
    EXPECT_EQ(told, (Json{{"key", c.name}, {"path", home.path(c.real)}, {"valid", c.is_valid}}));
    EXPECT_EQ(home.run_bare_json({"settings", c.name})[c.name], home.path(c.real));
    const ProgramResult shown = home.run_bare({"grant", c.name, home.path(c.folder)});
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.out, testing::StartsWith(c.is_valid ? "Granted: " : "Stored, but not valid: "));
  }

  const Words missing[] = {
      {"grant", "home", home.path("none")}, {"grant", "home", home.path("file")}, {"grant", "home", ""}};
  for (const Words& words : missing) {
    SCOPED_TRACE(words.back());
    expect_refused(home.run_bare(words), "nothing was stored");
    EXPECT_EQ(home.run_bare_json({"settings", "home"})["home"], home.path("other")) << "the old grant stays";
  }

  EXPECT_EQ(home.run_bare_json({"grant", "home", home.path(user)})["valid"], true);
  EXPECT_EQ(home.run_bare_json({"scan"})["total_smart_size"], 7) << "later runs use what was granted";
  EXPECT_EQ(home.run_bare_json({"scan", "--home", home.path("other")})["total_smart_size"], 5);
  EXPECT_EQ(home.run_bare_json({"scan"})["total_smart_size"], 7) << "and a folder for one run is not stored";
}

}  // namespace tarnby::test
