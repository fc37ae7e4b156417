#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"
#include "text/text.h"
#include "tools/bundle_files.h"

namespace tarnby::test {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::int64_t sum_of_sizes(const Json& list) {
  std::int64_t sum = 0;
  for (const Json& item : list) sum += item["size"].get<std::int64_t>();
  return sum;
}

}  // namespace

TEST(Scan, tells_what_it_could_not_see_and_ends_with_4_when_the_system_failed) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers beside it open files of their own";
#endif
  CliHome home;
  home.use_sample();
  const auto with_handles = [&](int handles, const ProgramRun& run) {
    return run_program(after_shell("ulimit -n " + std::to_string(handles) + ";", run));
  };
  const auto starts_with = [&](int handles) { return with_handles(handles, home.bare({"--version"})).status == 0; };
  if (!starts_with(8)) GTEST_SKIP() << "this build needs handles of its own";
  const std::pair<const char*, const char*> lists[] = {{"scan", "groups"}, {"junk", "categories"}};
  for (const auto& [command, list] : lists) {
    bool was_cut_short = false;
    for (int handles = 4; handles <= 9; ++handles) {
      if (!starts_with(handles)) continue;
      SCOPED_TRACE(std::to_string(handles) + " handles for " + command);
      const ProgramResult result = with_handles(handles, home.command({command, "--json"}));
      if (result.status == 3) continue;  // not even the home could be opened
      ASSERT_THAT(result.status, AnyOf(0, 4)) << result.err;
      std::size_t problems = 0;
      const Json told = Json::parse(result.out);
      for (const Json& group : told[list]) {
        if (group["problem"].is_null()) continue;
        EXPECT_THAT(group["problem"].get<std::string>(), HasSubstr(" could not be read"));
        ++problems;
      }
      EXPECT_EQ(result.status, problems > 0 ? 4 : 0);
      EXPECT_EQ(result.err, "");
      was_cut_short = was_cut_short || problems > 0;
      // Which of its threads gets a handle is chance, so another run may see more or less.
      const ProgramResult table = with_handles(handles, home.command({command}));
      const bool says_so = table.out.find(" could not be read") != std::string::npos;
      if (table.status == 3) continue;
      EXPECT_EQ(table.status, says_so ? 4 : 0);
    }
    EXPECT_TRUE(was_cut_short);
  }
  const Json all = home.json({"scan"});
  for (const Json& group : all["groups"]) EXPECT_TRUE(group["problem"].is_null()) << group["type"];
}

TEST(Scan, tells_everything_in_a_fixed_form_and_changes_nothing) {
  CliHome home;
  home.use_sample();
  const Snapshot before = home.snapshot();
  const ProgramResult first = home.run({"scan", "--json"});
  const Json scan = json_of(first);

  EXPECT_TRUE(first.out.starts_with(R"({"format":1,"layout":"macos","total_smart_size":)"));
  EXPECT_THAT(scan["notifications"], ElementsAre("smart_scan_logs", "smart_scan_remainders", "smart_scan_browsers",
                                                 "smart_scan_mails", "smart_scan_installs", "smart_scan_trash"));
  EXPECT_THAT(scan["menu"], ElementsAre("Apps Junk", "caches", "logs", "remainders", "Apps Data", "browsers", "mails",
                                        "Files", "installs", "trash"));
  std::vector<std::string> types;
  for (const Json& group : scan["groups"]) {
    types.push_back(group["type"]);
    EXPECT_EQ(group["size"], sum_of_sizes(group["items"])) << types.back();
  }
  EXPECT_THAT(types, ElementsAre("caches", "logs", "remainders", "browsers", "mails", "installs", "trash"));
  EXPECT_EQ(scan["total_smart_size"], sum_of_sizes(scan["groups"]));

  EXPECT_EQ(home.run({"--quiet", "--json", "scan"}).out, first.out) << "the same home, the same bytes";
  for (const char* language : {"de:fr", "xx_YY"}) {
    ProgramRun run = home.command({"scan", "--json"});
    run.environment["LANGUAGE"] = language;
    run.environment["LC_NUMERIC"] = "de_DE.UTF-8";
    EXPECT_EQ(run_program(run).out, first.out) << language;
  }
  EXPECT_EQ(home.snapshot(), before);
  EXPECT_FALSE(home.tree().exists("config/tarnby-cleaner")) << "a scan with given folders writes no settings";
}

TEST(Scan, stays_valid_text_whatever_a_home_holds) {
  CliHome home;
  const std::string logs = "home/Library/Logs/";
  const std::string turning = "c1 \xc2\x9b, direction \xe2\x80\xae\xe2\x80\x8f, end \xe2\x80\xa8\x7f";
  home.tree().file(logs + turning, 60).file(logs + "a\\nb", 70).file(logs + "a\nb", 80);
  home.tree().file(logs + "caf\xe9.log", 10).file(logs + "new\nline\x1b[31m \"quoted\" \\", 30).fifo(logs + "fifo");
  home.tree().file(logs + "\xed\xa0\x80 half a pair", 40).file(logs + "\xf0\x9f\x93", 50).link(logs + "loop", "loop");
  home.tree().content("Applications/Broken.app/Contents/Info.plist", "<?xml version=\"1.0\"?><plist><dict><key>CFBun");
  home.tree().fifo("Applications/Fifo.app/Contents/Info.plist").link("Applications/Alias.app", "Broken.app");
  home.tree().content("Applications/Caf\xe9.app/Contents/Info.plist",
                      info_list({"com.example.caf", "Caf", "caf", "", "1\n2"}, ListForm::xml));

  std::map<std::string, std::int64_t> found;
  const Json scan = home.json({"scan"});
  for (const Json& item : scan["groups"][1]["items"]) found[item["label"]] = item["size"];
  const std::map<std::string, std::int64_t> expected = {{"caf\uFFFD.log", 10},
                                                        {"new\nline\x1b[31m \"quoted\" \\", 30},
                                                        {"\uFFFD\uFFFD\uFFFD half a pair", 40},
                                                        {"\uFFFD", 50},
                                                        {"fifo", 0},
                                                        {"loop", 4},
                                                        {turning, 60},
                                                        {"a\\nb", 70},
                                                        {"a\nb", 80}};
  EXPECT_EQ(found, expected);
  const std::string written = home.run({"scan", "--json"}).out;
  EXPECT_THAT(written, HasSubstr(R"(c1 \u009b, direction \u202e\u200f, end \u2028\u007f)"));
  EXPECT_THAT(written, testing::AllOf(HasSubstr(R"(a\\nb)"), HasSubstr(R"(a\u000ab)")));
  EXPECT_THAT(home.run({"scan"}).out, testing::AllOf(HasSubstr(R"(c1 \x9b, direction \u202e\u200f, end \u2028\x7f)"),
                                                     HasSubstr(R"( a\\nb )"), HasSubstr(R"( a\nb )")))
      << "two names, two lines";
  EXPECT_EQ(home.json({"apps"})["applications"].size(), 1U) << "no others can be read";

  const std::pair<Words, const char*> shown[] = {{{"scan"}, "new\\nline\\x1b[31m"},
                                                 {{"apps"}, "1\\n2"},
                                                 {{"app", home.path("Applications/Caf\xe9.app")}, "1\\n2"}};
  for (const auto& [words, escaped] : shown) {
    const ProgramResult result = home.run(words);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(to_valid_utf8(result.out), result.out);
    EXPECT_THAT(result.out, HasSubstr(escaped));
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
  }
  for (const char* none : {"Applications/Alias.app", "Applications", "Applications/None.app", ""}) {
    expect_refused(home.run({"app", none}), 2, "is not an application");
  }
}

}  // namespace tarnby::test
