#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/session.h"
#include "tests/cli/cli_home.h"

namespace tarnby::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The sample home of the Linux kind, and nothing beside it.
class LinuxHomeCli : public testing::Test {
 protected:
  void SetUp() override {
    const ProgramResult made = run_program({{TARNBY_SAMPLE_HOME, "--linux", home.path("sample")}, {}});
    ASSERT_EQ(made.status, 0) << made.err;
    folder = home.path("sample/" + current_session().user_name);
  }

  ProgramResult run(Words words) const {
    words.insert(words.end(), {"--home", folder});
    return home.run_bare(words);
  }
  Json json(Words words) const {
    words.emplace_back("--json");
    return json_of(run(words));
  }
  Json row(const Json& scan, const char* label) const {
    for (const Json& group : scan["groups"]) {
      for (const Json& item : group["items"]) {
        if (item["label"] == label) return item;
      }
    }
    ADD_FAILURE() << "no row " << label;
    return {};
  }

  CliHome home;
  std::string folder;
};

TEST_F(LinuxHomeCli, tells_of_each_row_what_a_person_has_to_know) {
  const Json scan = json({"scan"});
  EXPECT_EQ(scan["layout"], "linux");
  const Json models = row(scan, "Downloaded models");
  EXPECT_EQ(models["grade"], "may-lose");
  EXPECT_EQ(models["ticked"], false);
  EXPECT_EQ(models["owner"], Json());
  EXPECT_EQ(models["running"], false) << "nobody minds when they go";
  EXPECT_EQ(models["frees"], models["size"]);
  EXPECT_THAT(models["after"], HasSubstr("over the network"));
  const Json viewer = row(scan, "VLC");
  EXPECT_EQ(viewer["grade"], "costs-time");
  EXPECT_EQ(viewer["owner"], "vlc");
  EXPECT_THAT(viewer["reason"], HasSubstr("VLC keeps copies here"));
  EXPECT_TRUE(viewer["changed"].is_string());
  EXPECT_EQ(row(scan, "nobody-knows")["running"], Json()) << "nobody knows whose it is";
  EXPECT_THAT(run({"scan"}).out, HasSubstr("may lose something"));
  EXPECT_THAT(run({"junk"}).out, HasSubstr("Firefox"));
}

TEST_F(LinuxHomeCli, removes_what_a_dry_run_names_and_what_may_be_lost_only_when_all_is_said) {
  const Json planned = json({"clean", "--dry-run"});
  const Json removed = json({"clean", "--yes"});
  EXPECT_EQ(planned["would_remove"], removed["removed"]);
  EXPECT_EQ(removed["left"], Json::array());
  EXPECT_GT(removed["freed"], 100'000'000);
  EXPECT_EQ(home.totally_cleaned(), removed["was_cleaned"]);
  EXPECT_TRUE(row(json({"scan"}), "Downloaded models")["frees"] > 0);
  EXPECT_EQ(json({"clean", "caches", "--all", "--yes"})["left"], Json::array());
  EXPECT_THAT(run({"scan"}).out, Not(HasSubstr("Downloaded models")));
  EXPECT_THAT(run({"junk", "--all"}).err, HasSubstr("--all is for clean only"));
}

TEST_F(LinuxHomeCli, is_taken_for_the_kind_that_is_named) {
  EXPECT_EQ(json({"scan", "--layout", "macos", "--applications", home.path("Applications")})["layout"], "macos");
  EXPECT_EQ(run({"scan", "--layout", "macos"}).status, 3) << "such a home needs an Applications folder";
  EXPECT_THAT(run({"scan", "--layout", "windows"}).err, HasSubstr("--layout takes macos or linux"));
}

}  // namespace
}  // namespace tarnby::test
