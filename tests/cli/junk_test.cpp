#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

std::vector<std::string> texts(const Json& list, const char* key) {
  std::vector<std::string> found;
  for (const Json& item : list) found.push_back(item[key]);
  return found;
}

}  // namespace

TEST(Junk, tells_categories_and_clients_and_changes_no_file) {
  CliHome home;
  home.use_sample();
  const Snapshot before = home.snapshot();
  const Json junk = home.json({"junk"});
  EXPECT_EQ(junk.begin().key(), "apps_junk_size");
  EXPECT_THAT(texts(junk["categories"], "key"),
              ElementsAre("Caches", "Logs", "Remainders", "Browsers", "Mails", "Trash"));
  EXPECT_THAT(texts(junk["clients"], "type"),
              ElementsAre("chrome", "mozilla", "safari", "apple-mail", "airmail", "spark"));
  std::vector<std::int64_t> sizes;
  for (const Json& category : junk["categories"]) sizes.push_back(category["size"]);
  EXPECT_EQ(junk["apps_junk_size"], sizes[0] + sizes[1] + sizes[2] + sizes[3]);
  EXPECT_EQ(junk["media_junk_size"], sizes[4] + sizes[5]);
  EXPECT_EQ(junk["be_cleaned"], sizes[0] + sizes[1] + sizes[2] + sizes[4] + sizes[5]) << "all but browsers by default";
  EXPECT_EQ(junk["categories"][0]["string_size"], "1.51 GB");
  EXPECT_EQ(home.snapshot(), before);
  EXPECT_EQ(home.bare_json({"settings", "GoogleChrome"})["GoogleChrome"], true);
  EXPECT_THAT(home.run({"junk"}).out, HasSubstr("Google Chrome"));
}

TEST(Cleanup, removes_the_named_categories_or_those_of_the_settings_and_nothing_else) {
  struct Case {
    const char* why;
    Words words;
    std::set<std::string> categories;
  };
  const Case cases[] = {
      {"none named: those switched on", {"cleanup"}, {"Caches", "Logs", "Remainders", "Mails", "Trash"}},
      {"or by other settings",
       {"cleanup", "--set=Trash=0", "--set=Browsers=1", "--set=Mails=0", "--set=Downloads=1"},
       {"Caches", "Logs", "Remainders", "Browsers"}},
      {"named: exactly those", {"cleanup", "Trash", "Browsers", "Trash", "--set=Trash=false"}, {"Browsers", "Trash"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    CliHome home;
    home.use_sample();
    const Snapshot before = home.snapshot();
    std::set<std::string> expected;
    std::int64_t size = 0;
    const Json junk = home.json({"junk"});
    for (const Json& category : junk["categories"]) {
      if (!c.categories.contains(category["key"])) continue;
      size += category["size"].get<std::int64_t>();
      expected.merge(category["paths"].get<std::set<std::string>>());
    }
    std::erase_if(expected, [&](const std::string& path) { return !before.contains(path); });
    const Snapshot settings = snapshot_of(home.path("config"));

    Words words = c.words;
    words.emplace_back("--dry-run");
    const Json preview = home.json(words);
    EXPECT_EQ(home.snapshot(), before) << "a dry run changes nothing";
    EXPECT_EQ(snapshot_of(home.path("config")), settings) << "nor the settings";

    words.back() = "--yes";
    const Json result = home.json(words);
    EXPECT_EQ(result["removed"].get<std::set<std::string>>(), expected);
    EXPECT_EQ(result["removed"].size(), expected.size()) << "each path once";
    EXPECT_THAT(result["left"], IsEmpty());
    EXPECT_EQ(result["was_cleaned"], size);
    EXPECT_EQ(home.totally_cleaned(), size);
    EXPECT_EQ(preview, (Json{{"would_remove", result["removed"]}, {"was_cleaned", size}}));
    EXPECT_THAT(result["date"].get<std::string>(), MatchesRegex("20..-..-..T..:..:..Z"));
    EXPECT_THAT(home.tree().read("config/tarnby-cleaner/QJ4RW7NX2P.com.corvash.tarnby-cleaner.plist"),
                HasSubstr(result["date"].get<std::string>()));
    EXPECT_EQ(home.bare_json({"settings", "Browsers"})["Browsers"], false) << "a name is for one run";
    EXPECT_EQ(after_losing(home.snapshot(), expected), without(before, expected));
  }
}

TEST(Cleanup, tells_what_it_had_to_leave_and_never_guesses_an_answer) {
  CliHome home;
  home.tree().file("home/.Trash/locked", 5'000).file("home/Library/Logs/a.log", 1'000).mode("home/.Trash", 0555);
  expect_refused(home.run({"cleanup", "Logs"}), 2, "--yes");
  as_plain_user(home.tree(), [&] {
    const ProgramResult shown = home.run({"cleanup", "Logs", "Trash", "--yes"});
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.out, "Removed 1 entry.\nLeft 1 entry:\n  " + home.path("home/.Trash/locked") +
                             ": Permission denied\n6 KB cleaned, 6 KB in all runs so far.\n");
  });
  EXPECT_TRUE(home.tree().exists("home/.Trash/locked"));
  home.tree().mode("home/.Trash", 0755);
}

TEST(Large, lists_the_large_files_of_the_home_folder_and_needs_no_other) {
  CliHome home;
  home.tree().file("home/b.mov", 1'500'000'000).file("home/a.zip", 20'000'000).file("home/c", 9'999'999);
  home.tree().file("home/Caf\xe9.app/x", 30'000'000);
  const Json all = home.bare_json({"large", "--home", "home"});
  EXPECT_EQ(all["total"], 1'550'000'000);
  EXPECT_THAT(texts(all["groups"], "label"), ElementsAre("Applications", "Archives", "Movies"));
  EXPECT_THAT(texts(all["files"], "name"), ElementsAre("a.zip", "b.mov", "Caf\uFFFD.app"));
  EXPECT_EQ(all["groups"][2]["items"][0],
            (Json{{"name", "b.mov"}, {"path", home.path("home/b.mov")}, {"size", 1'500'000'000}, {"type", "movie"}}));
  EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner"));

  const std::pair<const char*, std::size_t> sizes[] = {{"0", 3},      {"20000000", 3}, {"20000001", 2},
                                                       {"30MB", 2},   {"1.5 gb", 1},   {"1.51GB", 0},
                                                       {"0.02GB", 3}, {"9000000TB", 0}};
  for (const auto& [size, count] : sizes) {
    EXPECT_EQ(home.bare_json({"large", "--home", "home", "--at-least", size})["files"].size(), count) << size;
  }
  for (const char* size : {"", "MB", "-5", "1,5GB", "1.GB", "1MiB", "99999999TB", "1e9"}) {
    expect_refused(home.run_bare({"large", "--home", "home", "--at-least", size}), 2, "--at-least takes a size");
  }
  expect_refused(home.run_bare({"large"}), 3, "grant home DIR");
}

}  // namespace tarnby::test
