#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <array>
#include <thread>

#include "tests/cli/cli_home.h"
#include "tests/support/own_mounts.h"

namespace tarnby::test {

using testing::ContainsRegex;
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
    EXPECT_EQ(preview["would_remove"], result["removed"]);
    EXPECT_EQ(preview["was_cleaned"], size);
    EXPECT_EQ(result["freed"], preview["would_free"]);
    EXPECT_EQ(home.totally_cleaned(), result["freed"]);
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
    const Json told = Json::parse(home.run({"clean", "trash", "logs", "--yes", "--json"}).out);
    EXPECT_THAT(told["left"], ElementsAre(home.path("home/Library/Logs/locked")));
    EXPECT_THAT(told["left_reasons"], ElementsAre("permission denied"));
    EXPECT_EQ(told["freed"], 31'200);
    EXPECT_EQ(told["totally_cleaned"], 31'200) << "what was left was not cleaned";
    EXPECT_EQ(told["was_cleaned"], 36'200) << "as the engine counts";
    home.tree().file("home/Library/Logs/a.log", 1'200);
    const ProgramResult shown = home.run({"clean", "logs", "--yes"});
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.out, "Removed 1 entry.\nLeft 1 entry:\n  " + home.path("home/Library/Logs/locked") +
                             ": permission denied\n1 KB cleaned, 32 KB in all runs so far.\n");
  });
  EXPECT_TRUE(home.tree().exists("home/Library/Logs/locked/in"));
}

TEST(Clean, counts_once_what_two_groups_list) {
  CliHome home;
  const std::string container = "home/Library/Containers/com.gone.tool";
  home.tree().file(container + "/Data/Library/Caches/x", 20'000'000).file(container + "/Data/y", 4'000'000);
  home.tree().file("home/.Trash/a", 1'000'000);
  const ProgramResult scan = home.run({"scan"});
  EXPECT_THAT(scan.out, ContainsRegex("caches\\] +20 MB"));
  EXPECT_THAT(scan.out, ContainsRegex("remainders\\] +24 MB"));
  EXPECT_THAT(scan.out, ContainsRegex("Found in all +25 MB"));
  EXPECT_EQ(home.json({"scan"})["total_smart_size"], 45'000'000) << "as the engine counts";
  EXPECT_THAT(home.run({"junk"}).out, ContainsRegex("Found in all +25 MB"));

  const Json preview = home.json({"cleanup", "--dry-run"});
  EXPECT_EQ(preview["would_free"], 25'000'000);
  EXPECT_EQ(preview["was_cleaned"], 45'000'000);
  const Words words = {"clean", "caches", "remainders"};
#ifndef __SANITIZE_THREAD__
  TerminalProgram program(home.command(words));
  EXPECT_TRUE(program.shows("Found in these groups")) << "the question follows";
  EXPECT_TRUE(program.shows("Remove 2 entries, 24 MB, for good?"));
  program.type("n\n");
  program.finish();
#endif
  EXPECT_EQ(home.run({"clean", "caches", "remainders", "--yes"}).out,
            "Removed 2 entries.\n24 MB cleaned, 24 MB in all runs so far.\n");
}

TEST(Clean, counts_for_each_of_several_runs_at_once_what_that_one_removed) {
  CliHome home;
  constexpr int entries = 400;
  for (int at = 0; at < entries; ++at) home.tree().file("home/.Trash/" + std::to_string(at), 1'000);
  std::array<Json, 3> told;
  std::vector<std::thread> runs;
  for (Json& one : told) runs.emplace_back([&] { one = home.json({"clean", "trash", "--yes"}); });
  for (std::thread& run : runs) run.join();
  std::set<std::string> removed;
  std::size_t said = 0;
  for (const Json& one : told) {
    said += one["removed"].size();
    removed.merge(one["removed"].get<std::set<std::string>>());
    EXPECT_EQ(one["freed"], 1'000 * one["removed"].size());
    EXPECT_THAT(one["left"], IsEmpty());
  }
  EXPECT_EQ(said, removed.size()) << "no entry is removed twice";
  EXPECT_EQ(removed.size(), entries);
  EXPECT_EQ(home.totally_cleaned(), 1'000 * entries);
}

TEST(Clean, tells_of_mounted_disks_before_and_after) {
  CliHome home;
  home.tree().file("home/.Trash/box/in", 5'000).folder("home/.Trash/box/a disk").file("home/.Trash/b", 1'000);
  const std::string point = home.path("home/.Trash/box/a disk");
  const bool ran = with_own_mounts([&] {
    ASSERT_EQ(mount("none", point.c_str(), "tmpfs", 0, nullptr), 0);
    home.tree().file("home/.Trash/box/a disk/kept", 700'000);
    const std::string reason = "another disk is mounted there";
    EXPECT_THAT(home.run({"clean", "trash", "--dry-run"}).out,
                testing::EndsWith("Would stay: " + point + ": " + reason +
                                  "\nWould remove 2 entries, 6 KB. Nothing was removed.\n"));
    const Json preview = home.json({"clean", "trash", "--dry-run"});
    EXPECT_THAT(preview["left"], ElementsAre(point));
    EXPECT_THAT(preview["left_reasons"], ElementsAre(reason));
    const ProgramResult done = home.run({"clean", "trash", "--yes"});
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.out, "Removed 1 entry.\nLeft 1 entry:\n  " + home.path("home/.Trash/box") + ": " + reason +
                            "\n6 KB cleaned, 6 KB in all runs so far.\n");
    EXPECT_TRUE(home.tree().exists("home/.Trash/box/a disk/kept"));
  });
  if (!ran) GTEST_SKIP() << "this system lets nobody mount";
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
  EXPECT_THAT(told["left_reasons"], ElementsAre("it is never removed whole"));
  EXPECT_TRUE(told["free_before"].is_number() && told["free_after"].is_number());
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
