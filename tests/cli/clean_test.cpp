#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

void make_small_home(CliHome& home) {
  home.tree().file("home/Library/Logs/a.log", 1'000).file("home/Library/Logs/b/c.log", 200);
  home.tree().file("home/.Trash/old", 30'000).file("home/Downloads/x.dmg", 4'000'000).file("home/Documents/kept", 7);
}

}  // namespace

TEST(Clean, removes_what_the_scan_listed_in_the_named_groups_and_nothing_else) {
  struct Case {
    const char* why;
    Words words;
    std::set<std::string> groups;
  };
  const Case cases[] = {
      {"none named: all", {"clean"}, {"caches", "logs", "remainders", "browsers", "mails", "installs", "trash"}},
      {"another order than that of the groups", {"clean", "trash", "caches"}, {"caches", "trash"}},
      {"a group named twice is taken once", {"clean", "mails", "browsers", "mails"}, {"browsers", "mails"}},
      {"the rest", {"clean", "logs", "remainders", "installs"}, {"logs", "remainders", "installs"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    CliHome home;
    home.use_sample();
    const Snapshot before = home.snapshot();
    const Json scan = home.json({"scan"});
    std::set<std::string> expected;
    std::int64_t size = 0;
    for (const Json& group : scan["groups"]) {
      if (!c.groups.contains(group["type"])) continue;
      size += group["size"].get<std::int64_t>();
      for (const Json& item : group["items"]) expected.merge(item["paths"].get<std::set<std::string>>());
    }
    std::erase_if(expected, [&](const std::string& path) { return !before.contains(path); });

    Words words = c.words;
    words.emplace_back("--dry-run");
    const Json preview = home.json(words);
    EXPECT_EQ(home.snapshot(), before) << "a dry run changes nothing";
    EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner")) << "a dry run writes no settings";

    words.back() = "--yes";
    const Json result = home.json(words);
    EXPECT_EQ(result["removed"].get<std::set<std::string>>(), expected);
    EXPECT_EQ(result["removed"].size(), expected.size()) << "each path once";
    EXPECT_THAT(result["left"], IsEmpty());
    EXPECT_EQ(result["was_cleaned"], size);
    EXPECT_EQ(preview, (Json{{"would_remove", result["removed"]}, {"was_cleaned", size}}));
    EXPECT_EQ(after_losing(home.snapshot(), expected), without(before, expected));
  }
}

TEST(Clean, adds_up_the_lifetime_total_once_a_run) {
  CliHome home;
  make_small_home(home);
  EXPECT_EQ(home.json({"clean", "logs", "--yes"})["totally_cleaned"], 1'200);
  EXPECT_EQ(home.run({"clean", "--dry-run"}).out, home.path("home/Downloads/x.dmg") + "\n" +
                                                      home.path("home/.Trash/old") +
                                                      "\nWould remove 2 entries, 4 MB. Nothing was removed.\n");
  EXPECT_EQ(home.totally_cleaned(), 1'200) << "a dry run counts nothing";
  EXPECT_EQ(home.run({"clean", "--yes"}).out, "Removed 2 entries.\n4 MB cleaned, 4 MB in all runs so far.\n");
  EXPECT_EQ(home.json({"clean", "--yes"})["was_cleaned"], 0);
  EXPECT_EQ(home.json({"clean", "--set", "TotallyCleaned=5", "--yes"})["totally_cleaned"], 5);
  EXPECT_EQ(home.totally_cleaned(), 4'031'200) << "a setting for one run is not stored";
  EXPECT_TRUE(home.bare_json({"settings"})["home"].is_null()) << "neither is a folder";
}

TEST(Clean, tells_what_it_had_to_leave_and_why) {
  if (!plain_user_reaches(TARNBY_CLI)) GTEST_SKIP() << "only root may get to the program";
  CliHome home;
  make_small_home(home);
  home.tree().file("home/Library/Logs/locked/in", 5'000).mode("home/Library/Logs/locked", 0555);
  as_plain_user(home.tree(), [&] {
    const ProgramResult shown = home.run({"clean", "logs", "--yes"});
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.out, "Removed 2 entries.\nLeft 1 entry:\n  " + home.path("home/Library/Logs/locked") +
                             ": permission denied\n6 KB cleaned, 6 KB in all runs so far.\n");
  });
  EXPECT_TRUE(home.tree().exists("home/Library/Logs/locked/in"));
}

TEST(Clean, takes_links_themselves_and_leaves_a_granted_folder_in_the_way) {
  CliHome home;
  home.tree().file("outside/kept", 9).link("home/.Trash/away", "../../outside").link("home/.Trash/loop", "loop");
  home.tree().fifo("home/.Trash/fifo").file("home/.Trash/\xff", 1).link("home/Library/Logs", "../../outside");
  home.tree().file("home/.Trash/box/Applications/kept", 20).file("home/.Trash/box/b", 3);
  const Words given = {"--json", "--home=home", "--applications=home/.Trash/box/Applications", "clean", "--yes"};
  const ProgramResult result = home.run_bare(given);
  EXPECT_EQ(result.status, 1);
  const Json told = Json::parse(result.out);
  EXPECT_EQ(told["removed"].size(), 4U);
  EXPECT_THAT(told["left"], ElementsAre(home.path("home/.Trash/box")));
  EXPECT_EQ(home.tree().listing(),
            (std::set<std::string>{"outside/kept", "home/.Trash/box/Applications/kept", "home/.Trash/box/b",
                                   "home/Library/Logs", "Applications/", "config/tarnby-cleaner/settings.plist",
                                   "config/tarnby-cleaner/settings.plist.lock"}));
}

TEST(Clean, fails_when_nobody_can_answer_or_read_the_result) {
  CliHome home;
  make_small_home(home);
  const Snapshot before = home.snapshot();
  for (const char* input : {"exec </dev/null;", "exec <&-;", "yes |"}) {
    SCOPED_TRACE(input);
    expect_refused(run_program(after_shell(input, home.command({"clean"}))), 2, "--yes");
  }
  EXPECT_EQ(home.snapshot(), before);
  for (const char* output : {"exec >/dev/full;", "exec >&-;"}) {
    SCOPED_TRACE(output);
    for (const Words& words : {Words{"scan"}, Words{"clean", "logs", "--yes"}}) {
      expect_refused(run_program(after_shell(output, home.command(words))), 1, "could not be written");
    }
  }
  EXPECT_EQ(home.totally_cleaned(), 1'200) << "and the settings are none the worse";
}

}  // namespace tarnby::test
