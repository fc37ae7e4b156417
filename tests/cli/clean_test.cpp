#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// Paths of the named groups in a scan, each once; none named: all.
std::set<std::string> listed_in(const CliHome& home, const Json& scan, const std::set<std::string>& groups) {
  std::set<std::string> paths;
  for (const Json& group : scan["groups"]) {
    if (!groups.empty() && !groups.contains(group["type"])) continue;
    for (const Json& item : group["items"]) paths.merge(home.relative(item["paths"]));
  }
  return paths;
}

std::int64_t size_in(const Json& scan, const std::set<std::string>& groups) {
  std::int64_t size = 0;
  for (const Json& group : scan["groups"]) {
    if (groups.empty() || groups.contains(group["type"])) size += group["size"].get<std::int64_t>();
  }
  return size;
}

std::vector<std::string> keys_of(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

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
      {"none named: all", {"clean"}, {}},
      {"one group", {"clean", "logs"}, {"logs"}},
      {"another order than that of the groups", {"clean", "trash", "caches"}, {"caches", "trash"}},
      {"a group named twice is taken once", {"clean", "mails", "browsers", "mails"}, {"browsers", "mails"}},
      {"the rest", {"clean", "remainders", "installs"}, {"remainders", "installs"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    CliHome home;
    CliHome::make_sample(home);
    const Json scan = home.json({"scan"});
    const Snapshot before = home.snapshot();
    std::set<std::string> expected = listed_in(home, scan, c.groups);
    std::erase_if(expected, [&](const std::string& path) { return !before.contains(path); });

    Words dry = c.words;
    dry.insert(dry.begin(), "--dry-run");
    const Json preview = home.json(dry);
    EXPECT_THAT(keys_of(preview), ElementsAre("would_remove", "was_cleaned"));
    EXPECT_EQ(home.snapshot(), before) << "a dry run changes nothing";
    EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner")) << "a dry run writes no settings";

    Words yes = c.words;
    yes.emplace_back("--yes");
    const Json result = home.json(yes);
    EXPECT_THAT(keys_of(result), ElementsAre("removed", "left", "was_cleaned", "totally_cleaned"));
    EXPECT_EQ(home.relative(result["removed"]), expected);
    EXPECT_EQ(result["removed"].size(), expected.size()) << "each path once";
    EXPECT_THAT(result["left"], IsEmpty());
    EXPECT_EQ(result["was_cleaned"], size_in(scan, c.groups));
    EXPECT_EQ(preview["would_remove"], result["removed"]) << "what was shown is what went, in the same order";
    EXPECT_EQ(preview["was_cleaned"], result["was_cleaned"]);
    EXPECT_EQ(after_losing(home.snapshot(), expected), without(before, expected));
  }
}

TEST(Clean, adds_up_the_lifetime_total_once_a_run) {
  CliHome home;
  make_small_home(home);
  EXPECT_EQ(home.json({"clean", "logs", "--yes"})["totally_cleaned"], 1'200);
  EXPECT_EQ(home.totally_cleaned(), 1'200);
  EXPECT_EQ(home.json({"clean", "--dry-run"})["was_cleaned"], 4'030'000);
  EXPECT_EQ(home.totally_cleaned(), 1'200) << "a dry run counts nothing";
  const ProgramResult second = home.run({"clean", "--yes"});
  EXPECT_EQ(second.out, "Removed 2 entries.\n4 MB cleaned, 4 MB in all runs so far.\n");
  EXPECT_EQ(home.totally_cleaned(), 4'031'200);
  const Json third = home.json({"clean", "--yes"});
  EXPECT_THAT(third["removed"], IsEmpty());
  EXPECT_EQ(third["was_cleaned"], 0);
  EXPECT_EQ(home.totally_cleaned(), 4'031'200);
  const Json settings = home.run_bare_json({"settings"});
  EXPECT_EQ(settings["appLaunchCount"], 0) << "a run of the terminal program is no launch";
  EXPECT_TRUE(settings["home"].is_null()) << "a folder for one run is not stored";
  EXPECT_EQ(home.json({"clean", "--set", "TotallyCleaned=5", "--yes"})["totally_cleaned"], 5);
  EXPECT_EQ(home.totally_cleaned(), 4'031'200) << "a setting for one run is not stored";
}

TEST(Clean, lists_what_would_go_for_people) {
  CliHome home;
  make_small_home(home);
  const ProgramResult result = home.run({"clean", "trash", "logs", "--dry-run"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, home.path("home/Library/Logs/a.log") + "\n" + home.path("home/Library/Logs/b") + "\n" +
                            home.path("home/.Trash/old") + "\nWould remove 3 entries, 31 KB. Nothing was removed.\n");
}

TEST(Clean, asks_somebody_or_does_nothing) {
  CliHome home;
  make_small_home(home);
  const Snapshot before = home.snapshot();
  struct Case {
    const char* why;
    const char* input;
    bool input_is_closed;
  };
  const Case cases[] = {
      {"no input", "", false},
      {"an answer that no person gives", "y\n", false},
      {"a closed input", "", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    ProgramRun run = home.command({"clean"});
    run.input = c.input;
    run.input_is_closed = c.input_is_closed;
    const ProgramResult result = run_program(run);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("--yes"));
    EXPECT_EQ(home.snapshot(), before);
  }
}

TEST(Clean, tells_what_it_had_to_leave_and_why) {
  CliHome home;
  make_small_home(home);
  home.tree().file("home/Library/Logs/locked/in", 5'000).mode("home/Library/Logs/locked", 0555);
  as_plain_user(home.tree(), [&] {
    EXPECT_EQ(home.json({"clean", "--dry-run", "logs"})["was_cleaned"], 6'200);
    const ProgramResult shown = home.run({"clean", "logs", "--yes"});
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.out, "Removed 2 entries.\nLeft 1 entry:\n  " + home.path("home/Library/Logs/locked") +
                             ": Permission denied\n6 KB cleaned, 6 KB in all runs so far.\n");
    const ProgramResult result = home.run({"clean", "logs", "--yes", "--json"});
    EXPECT_EQ(result.status, 1);
    const Json told = Json::parse(result.out);
    EXPECT_THAT(told["removed"], IsEmpty());
    EXPECT_THAT(told["left"], ElementsAre(home.path("home/Library/Logs/locked")));
  });
  EXPECT_EQ(home.tree().listing().count("home/Library/Logs/locked/in"), 1U);
}

TEST(Clean, leaves_a_granted_folder_that_lies_in_the_way) {
  CliHome home;
  home.tree().file("home/.Trash/old", 1'000).file("home/.Trash/box/Applications/kept", 20).file("home/.Trash/box/b", 3);
  const auto with_granted = [&](const Words& words) {
    ProgramRun run = home.bare(words);
    run.words.insert(run.words.end(), {"--json", "--home", home.path("home"), "--applications",
                                       home.path("home/.Trash/box/Applications")});
    return run_program(run);
  };
  const Json preview = CliHome::json_of(with_granted({"clean", "trash", "--dry-run"}));
  EXPECT_THAT(preview["would_remove"], ElementsAre(home.path("home/.Trash/old")));
  EXPECT_EQ(preview["was_cleaned"], 1'000) << "what stays does not count";
  const ProgramResult result = with_granted({"clean", "trash", "--yes"});
  EXPECT_EQ(result.status, 1);
  const Json told = Json::parse(result.out);
  EXPECT_THAT(told["removed"], ElementsAre(home.path("home/.Trash/old")));
  EXPECT_THAT(told["left"], ElementsAre(home.path("home/.Trash/box")));
  EXPECT_EQ(home.tree().read("home/.Trash/box/Applications/kept").size(), 20U);
  EXPECT_EQ(home.tree().read("home/.Trash/box/b").size(), 3U);
}

TEST(Clean, takes_links_and_odd_entries_themselves_only) {
  CliHome home;
  home.tree().file("outside/kept", 9).file("home/Documents/kept", 9);
  home.tree()
      .link("home/.Trash/away", "../../outside")
      .link("home/.Trash/dead", "nowhere")
      .link("home/.Trash/loop", "loop");
  home.tree().fifo("home/.Trash/fifo").file("home/.Trash/new\nline", 1).file("home/.Trash/\xff", 1);
  home.tree().link("home/Library/Logs", "../../outside");
  const Json result = home.json({"clean", "--yes"});
  EXPECT_EQ(result["removed"].size(), 6U);
  EXPECT_EQ(home.tree().listing(),
            (std::set<std::string>{"outside/kept", "home/Documents/kept", "home/.Trash/", "home/Library/Logs",
                                   "Applications/", "config/tarnby-cleaner/settings.plist",
                                   "config/tarnby-cleaner/settings.plist.lock"}));
}

TEST(Clean, says_when_the_total_could_not_be_saved) {
  CliHome home;
  make_small_home(home);
  home.tree().content("config/tarnby-cleaner", "a file where the settings folder belongs");
  const ProgramResult result = home.run({"clean", "logs", "--yes", "--json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(Json::parse(result.out)["removed"].size(), 2U);
  EXPECT_THAT(result.err, HasSubstr("total of all runs could not be saved"));
}

TEST(Clean, fails_when_the_result_cannot_be_written) {
  for (const auto output : {ProgramRun::Output::closed, ProgramRun::Output::full}) {
    CliHome home;
    make_small_home(home);
    for (const Words& words : {Words{"scan"}, Words{"scan", "--json"}, Words{"clean", "logs", "--yes"}}) {
      ProgramRun run = home.command(words);
      run.output = output;
      const ProgramResult result = run_program(run);
      EXPECT_EQ(result.status, 1);
      EXPECT_EQ(result.err, "tarnby-cleaner-cli: the result could not be written to standard output\n");
    }
    EXPECT_EQ(home.totally_cleaned(), 1'200) << "and the settings are none the worse";
  }
}

}  // namespace tarnby::test
