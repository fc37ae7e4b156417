#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> texts(const Json& list, const char* key) {
  std::vector<std::string> found;
  for (const Json& item : list) found.push_back(item[key]);
  return found;
}

}  // namespace

TEST(Cleanup, removes_what_junk_listed_in_the_named_categories_or_those_of_the_settings) {
  const std::pair<Words, std::set<std::string>> cases[] = {
      {{"cleanup", "--set=Mails=0"}, {"Caches", "Logs", "Remainders", "Trash"}},
      {{"cleanup", "Trash", "Browsers", "Trash", "--set=Trash=false"}, {"Browsers", "Trash"}},
  };
  for (const auto& [given, categories] : cases) {
    SCOPED_TRACE(given[1]);
    CliHome home;
    home.use_sample();
    const Snapshot before = home.snapshot();
    const Json junk = home.json({"junk"});
    EXPECT_THAT(texts(junk["categories"], "key"),
                ElementsAre("Caches", "Logs", "Remainders", "Browsers", "Mails", "Trash"));
    EXPECT_THAT(texts(junk["clients"], "type"),
                ElementsAre("chrome", "mozilla", "safari", "apple-mail", "airmail", "spark"));
    std::set<std::string> expected;
    std::int64_t size = 0;
    for (const Json& category : junk["categories"]) {
      if (!categories.contains(category["key"])) continue;
      size += category["size"].get<std::int64_t>();
      expected.merge(category["paths"].get<std::set<std::string>>());
    }
    std::erase_if(expected, [&](const std::string& path) { return !before.contains(path); });
    const Snapshot settings = snapshot_of(home.path("config"));

    Words words = given;
    words.emplace_back("--dry-run");
    const Json preview = home.json(words);
    EXPECT_EQ(home.snapshot(), before) << "neither a scan nor a dry run changes anything";
    EXPECT_EQ(snapshot_of(home.path("config")), settings);

    words.back() = "--yes";
    const Json result = home.json(words);
    EXPECT_EQ(result["removed"].get<std::set<std::string>>(), expected);
    EXPECT_EQ(result["removed"].size(), expected.size()) << "each path once";
    EXPECT_EQ(result["was_cleaned"], size);
    EXPECT_EQ(home.totally_cleaned(), result["freed"]);
    EXPECT_EQ(preview["would_remove"], result["removed"]);
    EXPECT_EQ(preview["was_cleaned"], size);
    EXPECT_EQ(preview["would_free"], result["freed"]);
    EXPECT_THAT(home.tree().read("config/tarnby-cleaner/QJ4RW7NX2P.com.corvash.tarnby-cleaner.plist"),
                HasSubstr("<date>" + result["date"].get<std::string>()));
    EXPECT_EQ(home.bare_json({"settings", "Browsers"})["Browsers"], false) << "a name is for one run";
    EXPECT_EQ(after_losing(home.snapshot(), expected), without(before, expected));
  }
}

TEST(Large, lists_the_large_files_of_the_home_folder_and_needs_no_other) {
  CliHome home;
  home.tree().file("home/b.mov", 1'500'000'000).file("home/a.zip", 20'000'000).file("home/Caf\xe9.app/x", 30'000'000);
  const Json all = home.bare_json({"large", "--home", "home"});
  EXPECT_EQ(all["total"], 1'550'000'000);
  EXPECT_THAT(texts(all["groups"], "label"), ElementsAre("Applications", "Archives", "Movies"));
  EXPECT_THAT(texts(all["files"], "name"), ElementsAre("a.zip", "b.mov", "Caf\uFFFD.app"));
  EXPECT_EQ(all["groups"][2]["items"][0],
            (Json{{"name", "b.mov"}, {"path", home.path("home/b.mov")}, {"size", 1'500'000'000}, {"type", "movie"}}));
  const std::pair<const char*, std::size_t> sizes[] = {{"0", 3},      {"20000001", 2}, {"30MB", 2},
                                                       {"1.5 gb", 1}, {"0.02GB", 3},   {"9000000TB", 0}};
  for (const auto& [size, count] : sizes) {
    EXPECT_EQ(home.bare_json({"large", "--home", "home", "--at-least", size})["files"].size(), count) << size;
  }
  for (const char* size : {"", "MB", "-5", "1,5GB", "1.GB", "99999999TB", "1e9"}) {
    expect_refused(home.run_bare({"large", "--home", "home", "--at-least", size}), 2, "--at-least takes a size");
  }
  expect_refused(home.run_bare({"large"}), 3, "grant home DIR");
}

}  // namespace tarnby::test
