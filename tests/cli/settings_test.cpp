#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

TEST(Settings, are_kept_by_their_kind_and_refuse_what_they_cannot_hold) {
  CliHome home;
  const std::tuple<const char*, const char*, Json> kept[] = {{"Browsers", "true", true},
                                                             {"Caches", "0", false},
                                                             {"TotallyCleaned", "9223372036854775807", INT64_MAX},
                                                             {"helper_url", "here/helper", home.path("here/helper")}};
  for (const auto& [key, typed, value] : kept) {
    EXPECT_EQ(home.bare_json({"settings", key, typed})[key], value);
    EXPECT_EQ(home.bare_json({"settings"})[key], value);
  }
  const std::string before = home.tree().read("config/tarnby-cleaner/settings.plist");
  const std::pair<const char*, Words> refused[] = {
      {"an unknown key", {"settings", "Nonsense", "1"}},
      {"a word", {"settings", "Browsers", "yes"}},
      {"more than a number holds", {"settings", "AllowAny", "9223372036854775808"}},
      {"a folder", {"settings", "home", "/"}},
      {"no path", {"settings", "helper_url", ""}},
      {"a value for this run that would hide the stored one", {"settings", "Logs", "false", "--set", "Logs=true"}},
      {"a folder for this run that would hide the granted one", {"grant", "home", home.path("home"), "--home", "/"}},
      {"--set of a folder", {"settings", "--set", "home=/"}},
  };
  for (const auto& [why, words] : refused) {
    SCOPED_TRACE(why);
    expect_refused(home.run_bare(words), 2, "");
  }
  EXPECT_EQ(home.bare_json({"--set", "Browsers=0", "settings"})["Browsers"], false);
  EXPECT_EQ(home.tree().read("config/tarnby-cleaner/settings.plist"), before) << "a setting for one run is not stored";
}

TEST(Settings, keep_all_their_values_when_one_makes_no_sense) {
  CliHome home;
  home.tree().content("config/tarnby-cleaner/settings.plist",
                      "<plist><dict><key>AllowAny</key><integer>99999999999999999999</integer><key>Logs</key><false/>"
                      "<key>helper_url</key><real>1e999</real></dict></plist>");
  home.bare_json({"settings", "Browsers", "true"});
  EXPECT_EQ(home.bare_json({"settings"})["Logs"], false);
  EXPECT_EQ(home.bare_json({"settings"})["Browsers"], true);
  EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner/settings.plist.damaged"));
}

TEST(Settings, that_cannot_be_saved_are_told_and_lose_nothing) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "under a file size limit the thread sanitizer itself cannot start";
#endif
  CliHome home;
  home.bare_json({"settings", "Browsers", "true"});
  const Snapshot before = snapshot_of(home.path("config/tarnby-cleaner"));
  for (const Words& words : {Words{"settings", "Logs", "false"}, Words{"grant", "home", home.path("home")}}) {
    const ProgramRun full_disk = after_shell("ulimit -f 0;", home.bare(words));
    expect_refused(run_program(full_disk), 3, "could not be saved");
    EXPECT_EQ(snapshot_of(home.path("config/tarnby-cleaner")), before);
  }
  home.tree().content("config/tarnby-cleaner/settings.plist", "<plist><dict><key>home</key>");
  EXPECT_EQ(home.bare_json({"settings", "Logs", "false"})["Logs"], false);
  EXPECT_EQ(home.tree().read("config/tarnby-cleaner/settings.plist.damaged"), "<plist><dict><key>home</key>");
}

}  // namespace tarnby::test
