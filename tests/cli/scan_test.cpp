#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/text.h"
#include "tests/cli/cli_home.h"
#include "tools/bundle_files.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

std::vector<std::string> keys_of(const Json& object) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.push_back(key);
  return keys;
}

std::int64_t sum_of_sizes(const Json& list) {
  std::int64_t sum = 0;
  for (const Json& item : list) sum += item["size"].get<std::int64_t>();
  return sum;
}

}  // namespace

TEST(Scan, tells_everything_about_the_sample_home_in_a_fixed_form) {
  CliHome home;
  CliHome::make_sample(home);
  const Snapshot before = home.snapshot();
  const Json scan = home.json({"scan"});

  EXPECT_THAT(keys_of(scan), ElementsAre("total_smart_size", "notifications", "menu", "groups"));
  EXPECT_THAT(scan["notifications"], ElementsAre("smart_scan_logs", "smart_scan_remainders", "smart_scan_browsers",
                                                 "smart_scan_mails", "smart_scan_installs", "smart_scan_trash"));
  EXPECT_THAT(scan["menu"], ElementsAre("Apps Junk", "caches", "logs", "remainders", "Apps Data", "browsers", "mails",
                                        "Files", "installs", "trash"));
  std::vector<std::string> types;
  for (const Json& group : scan["groups"]) {
    const std::string type = group["type"];
    SCOPED_TRACE(type);
    types.push_back(type);
    EXPECT_THAT(keys_of(group), ElementsAre("type", "label", "size", "items"));
    EXPECT_EQ(group["size"], sum_of_sizes(group["items"]));
    EXPECT_GT(group["size"], 0) << "a group of the sample home without anything to show";
    for (const Json& item : group["items"]) {
      if (type == "remainders") {
        EXPECT_THAT(keys_of(item), ElementsAre("label", "size", "paths", "bundle"));
      } else {
        EXPECT_THAT(keys_of(item), ElementsAre("label", "size", "paths"));
      }
      EXPECT_TRUE(type != "caches" || item["paths"].size() == 1);
    }
  }
  EXPECT_THAT(types, ElementsAre("caches", "logs", "remainders", "browsers", "mails", "installs", "trash"));
  EXPECT_EQ(scan["total_smart_size"], sum_of_sizes(scan["groups"]));
  EXPECT_EQ(home.snapshot(), before) << "a scan changes nothing";
  EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner")) << "a scan with given folders writes no settings";
}

TEST(Scan, of_the_same_home_is_the_same_to_the_byte) {
  CliHome home;
  CliHome::make_sample(home);
  const ProgramResult first = home.run({"scan", "--json"});
  ASSERT_EQ(first.status, 0);
  for (int again = 0; again < 3; ++again) EXPECT_EQ(home.run({"scan", "--json"}).out, first.out);
  EXPECT_EQ(home.run({"--quiet", "--json", "scan"}).out, first.out) << "options before the command";

  struct Case {
    const char* why;
    const char* variable;
    const char* value;
  };
  const Case cases[] = {
      {"the number form is for people", "LC_NUMERIC", "de_DE.UTF-8"},
      {"labels stay the English keys", "LANGUAGE", "de:fr"},
      {"an unknown locale is no reason for other bytes", "LC_ALL", "xx_YY.UTF-8"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    ProgramRun run = home.command({"scan", "--json"});
    run.environment[c.variable] = c.value;
    EXPECT_EQ(run_program(run).out, first.out);
  }
}

TEST(Scan, in_another_language_changes_the_order_of_names_only) {
  CliHome home;
  home.tree().file("home/Downloads/Zoo.dmg", 1).file("home/Downloads/Ähre.dmg", 2).file("home/Downloads/z.dmg", 3);
  const auto items_in = [&](const char* language) {
    ProgramRun run = home.command({"scan", "--json"});
    run.environment["LANG"] = language;
    return CliHome::json_of(run_program(run))["groups"][5]["items"];
  };
  const auto labels = [](const Json& items) {
    std::vector<std::string> result;
    for (const Json& item : items) result.push_back(item["label"]);
    return result;
  };
  const Json german = items_in("de_DE.UTF-8");
  const Json swedish = items_in("sv_SE.UTF-8");
  EXPECT_THAT(labels(german), ElementsAre("Ähre.dmg", "z.dmg", "Zoo.dmg"));
  EXPECT_THAT(labels(swedish), ElementsAre("z.dmg", "Zoo.dmg", "Ähre.dmg"));
  EXPECT_TRUE(std::is_permutation(german.begin(), german.end(), swedish.begin(), swedish.end()));
}

TEST(Scan, table_shows_each_size_under_the_other) {
  CliHome home;
  home.tree().file("home/Library/Logs/one.log", 1'500'000).file("home/Downloads/a.dmg", 2'000);
  home.tree().file("home/Desktop/a.dmg", 3'000).file("home/Library/Logs/two\nlines \x1b[31m\xe2\x80\xae.log", 0);
  const ProgramResult result = home.run({"scan"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "Apps Junk\n"
            "  Applications caches  [caches]          Zero KB\n"
            "    everything is clean\n"
            "  Applications logs  [logs]               1.5 MB\n"
            "    one.log                               1.5 MB\n"
            "    two\\nlines \\x1b[31m\\u202e.log        Zero KB\n"
            "  Applications remainders  [remainders]  Zero KB\n"
            "    everything is clean\n"
            "\n"
            "Apps Data\n"
            "  Browsers  [browsers]                   Zero KB\n"
            "    everything is clean\n"
            "  Mail attachments  [mails]              Zero KB\n"
            "    Mail                                 Zero KB\n"
            "\n"
            "Files\n"
            "  Installation files  [installs]            5 KB\n"
            "    a.dmg  in ~/Downloads                   2 KB\n"
            "    a.dmg  in ~/Desktop                     3 KB\n"
            "  Trash Bin  [trash]                     Zero KB\n"
            "    everything is clean\n"
            "\n"
            "Found in all                              1.5 MB\n");
}

TEST(Scan, stays_valid_text_whatever_a_home_holds) {
  CliHome home;
  TempTree& tree = home.tree();
  const std::string logs = "home/Library/Logs/";
  tree.file(logs + "caf\xe9.log", 10).file(logs + "\xff\xfe", 20).file(logs + "tab\tnew\nline\x01 \"quoted\" \\", 30);
  tree.file(logs + "\xed\xa0\x80 half a pair", 40).file(logs + "\xf0\x9f\x93", 50).fifo(logs + "fifo");
  tree.link(logs + "loop", "loop").link(logs + "away", "/");
  tree.content("Applications/Broken.app/Contents/Info.plist", "<?xml version=\"1.0\"?><plist><dict><key>CFBundle");
  tree.content("Applications/Binary.app/Contents/Info.plist", std::string("bplist00\xff\xff\xff\xff\0\0\0\x08", 16));
  tree.content("Applications/Empty.app/Contents/Info.plist", "");
  tree.fifo("Applications/Fifo.app/Contents/Info.plist").folder("Applications/Folder.app/Contents/Info.plist");
  tree.content("Applications/Caf\xe9.app/Contents/Info.plist",
               info_list({"com.example.caf", "Caf", "caf", "", "1\n2"}, ListForm::xml));

  const Json groups = home.json({"scan"})["groups"];
  std::map<std::string, std::int64_t> found;
  for (const Json& item : groups[1]["items"]) found[item["label"]] = item["size"];
  const std::map<std::string, std::int64_t> expected = {{"caf\uFFFD.log", 10},
                                                        {"\uFFFD\uFFFD", 20},
                                                        {"tab\tnew\nline\x01 \"quoted\" \\", 30},
                                                        {"\uFFFD\uFFFD\uFFFD half a pair", 40},
                                                        {"\uFFFD", 50},
                                                        {"fifo", 0},
                                                        {"loop", 4},
                                                        {"away", 1}};
  EXPECT_EQ(found, expected);

  const Json applications = home.json({"apps"})["applications"];
  EXPECT_THAT(keys_of(applications[0]),
              ElementsAre("label", "label_name", "path", "bundle", "bundle_name", "bundle_name_info", "executable_info",
                          "company_name", "app_version", "log_file_name", "app_icon"));
  for (const Words& words : {Words{"apps"}, Words{"app", home.path("Applications/Caf\xe9.app")}}) {
    const ProgramResult result = home.run(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(to_valid_utf8(result.out), result.out);
    EXPECT_THAT(result.out, HasSubstr("1\\n2"));
    EXPECT_TRUE(std::ranges::none_of(result.out, [](char c) { return c != '\n' && c > 0 && c < ' '; })) << result.out;
  }
}

TEST(Scan, tells_an_application_as_it_is) {
  CliHome home;
  home.tree().content("Applications/Kite.app/Contents/Info.plist",
                      info_list({"dev.hill.kite", "Kite", "kite", "Icon", "1.2"}, ListForm::binary));
  home.tree()
      .file("Applications/Kite.app/Contents/MacOS/kite", 5'000)
      .content("Applications/Kite.app/Contents/Resources/Icon.icns", "x");
  home.tree().folder("Applications/Bare.app").link("Applications/Alias.app", "Kite.app").link("short", "Applications");

  const Json kite = home.json({"app", home.path("Applications/Kite.app")});
  EXPECT_EQ(kite["application"]["bundle"], "dev.hill.kite");
  EXPECT_EQ(kite["application"]["app_icon"], home.path("Applications/Kite.app/Contents/Resources/Icon.icns"));
  EXPECT_EQ(kite["app_size_in_bytes"].get<std::size_t>(),
            5'001 + home.tree().read("Applications/Kite.app/Contents/Info.plist").size());
  const Json bare = home.json({"app", home.path("Applications/Bare.app")});
  EXPECT_TRUE(bare["application"]["bundle"].is_null());
  EXPECT_TRUE(bare["application"]["app_icon"].is_null());
  EXPECT_EQ(bare["app_size_in_bytes"], 0);

  struct Case {
    const char* why;
    std::string typed;
    int status;
  };
  const Case cases[] = {
      {"a \"/\" at the end changes nothing", home.path("Applications/Kite.app/"), 0},
      {"links on the way are the user's own", home.path("short/Kite.app"), 0},
      {"a path may be typed from the current folder", "Applications/Kite.app", 0},
      {"a link to an application is none", home.path("Applications/Alias.app"), 2},
      {"a folder without the extension is none", home.path("Applications"), 2},
      {"what is missing is none", home.path("Applications/None.app"), 2},
      {"nothing at all is none", "", 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    ProgramRun run = home.command({"app", c.typed, "--json"});
    run.folder = home.tree().path();
    const ProgramResult result = run_program(run);
    EXPECT_EQ(result.status, c.status) << result.err;
    if (c.status == 0) {
      EXPECT_EQ(Json::parse(result.out), kite);
    } else {
      EXPECT_THAT(result.out, IsEmpty());
      EXPECT_THAT(result.err, HasSubstr("is not an application"));
    }
  }
}

}  // namespace tarnby::test
