#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::HasSubstr;

TEST(Settings, are_written_and_read_by_their_kind) {
  CliHome home;
  struct Case {
    const char* key;
    const char* typed;
    Json value;
  };
  const Case cases[] = {
      {"Browsers", "true", true},        {"Browsers", "0", false}, {"Caches", "7", true},
      {"UOAppearence", "-1", -1},        {"AllowAny", "true", 1},  {"TotallyCleaned", "9223372036854775807", INT64_MAX},
      {"Uninstaller Orvane", "1", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.key) + " " + c.typed);
    const Json expected = {{c.key, c.value}};
    EXPECT_EQ(home.run_bare_json({"settings", c.key, c.typed}), expected);
    EXPECT_EQ(home.run_bare_json({"settings", c.key}), expected);
  }
  EXPECT_EQ(home.run_bare({"settings", "UOAppearence"}).out, "UOAppearence  -1\n");
  const Json all = home.run_bare_json({"settings"});
  EXPECT_EQ(all.size(), 30U);
  EXPECT_EQ(all.begin().key(), "Caches");
  EXPECT_EQ(all["Trash"], true) << "never written: as a launch would write it";
  EXPECT_EQ(all["LargeFiles"], false);
  EXPECT_TRUE(all["macOS"].is_null());
}

TEST(Settings, refuse_what_they_cannot_hold) {
  CliHome home;
  home.run_bare({"settings", "Browsers", "true"});
  const std::string before = home.tree().read("config/tarnby-cleaner/settings.plist");
  const std::pair<const char*, Words> cases[] = {
      {"an unknown key", {"settings", "browsers"}},
      {"an unknown key to write", {"settings", "Nonsense", "1"}},
      {"a word", {"settings", "Browsers", "yes"}},
      {"nothing", {"settings", "Browsers", ""}},
      {"a fraction", {"settings", "AllowAny", "1.5"}},
      {"more than a number holds", {"settings", "AllowAny", "9223372036854775808"}},
      {"a number and more", {"settings", "AllowAny", "1 "}},
      {"a folder", {"settings", "home", "/"}},
      {"one word too many", {"settings", "Browsers", "true", "false"}},
      {"a value for this run that would hide the stored one",
       {"settings", "Browsers", "false", "--set", "Browsers=true"}},
      {"a folder for this run that would hide the granted one", {"grant", "home", home.path("home"), "--home", "/"}},
      {"--set without a value", {"settings", "--set", "Browsers"}},
      {"--set of an unknown key", {"settings", "--set", "Nonsense=1"}},
      {"--set of a folder", {"settings", "--set", "home=/"}},
      {"--set of a word", {"settings", "--set", "Browsers=on"}},
  };
  for (const auto& [why, words] : cases) {
    SCOPED_TRACE(why);
    const ProgramResult result = home.run_bare(words);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_EQ(home.tree().read("config/tarnby-cleaner/settings.plist"), before);
  }
}

TEST(Settings, for_one_run_are_not_stored) {
  CliHome home;
  const Json shown =
      home.run_bare_json({"--set", "Browsers=1", "settings", "--set=AllowAny=3", "--disk", home.path("home")});
  EXPECT_EQ(shown["Browsers"], true);
  EXPECT_EQ(shown["AllowAny"], 3) << "said later and in so many words";
  EXPECT_EQ(shown["macOS"], home.path("home"));
  EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner"));
}

TEST(Settings, that_cannot_be_saved_are_told_and_spoil_nothing) {
  const auto expect_unsaved = [](const ProgramResult& result) {
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("could not be saved"));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  };
  CliHome home;
  home.run_bare({"settings", "Browsers", "true"});
  const auto before = home.tree().listing();
  const Words writing[] = {{"settings", "Logs", "false", "--json"}, {"grant", "home", home.path("home"), "--json"}};
  for (const Words& words : writing) {
    SCOPED_TRACE(words.front());
    ProgramRun full_disk = home.bare(words);
    full_disk.largest_file = 16;
    expect_unsaved(run_program(full_disk));
    as_plain_user(home.tree(), [&] {
      home.tree().mode("config/tarnby-cleaner", 0500);
      expect_unsaved(home.run_bare(words));
      home.tree().mode("config/tarnby-cleaner", 0700);
    });
    EXPECT_EQ(home.tree().listing(), before);
    EXPECT_EQ(home.run_bare_json({"settings", "Logs"})["Logs"], true);
    EXPECT_EQ(home.run_bare_json({"settings", "Browsers"})["Browsers"], true);
    EXPECT_TRUE(home.run_bare_json({"settings", "home"})["home"].is_null());
  }
}

TEST(Settings, that_are_damaged_are_set_aside) {
  CliHome home;
  home.tree().content("config/tarnby-cleaner/settings.plist", "<plist><dict><key>home</key>");
  EXPECT_EQ(home.run_bare_json({"settings", "Logs"})["Logs"], true);
  EXPECT_EQ(home.run_bare_json({"settings", "Logs", "false"})["Logs"], false);
  EXPECT_EQ(home.tree().read("config/tarnby-cleaner/settings.plist.damaged"), "<plist><dict><key>home</key>");
}

}  // namespace tarnby::test
