#include "platform/linux/autostart.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "tests/support/program_run.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::TempTree;

constexpr const char* identifier = "org.example.helper";
constexpr const char* entry = "own/autostart/org.example.helper.desktop";
const std::string enabled_text =
    "[Desktop Entry]\nType=Application\nName=helper\nTryExec=helper\nExec=helper\nNoDisplay=true\n";

std::unique_ptr<LoginItems> entries_in(const TempTree& tree) {
  return autostart_entries(tree.url("own/autostart"), {tree.url("none/autostart"), tree.url("system/autostart")});
}

TEST(Autostart, puts_a_whole_entry_over_whatever_file_stands_there_and_takes_it_away_again) {
  for (const std::string standing : {"nothing", "a broken entry", "a dangling link", "a link to a file"}) {
    SCOPED_TRACE(standing);
    TempTree tree;
    tree.content("kept", "mine");
    if (standing == "a broken entry") tree.content(entry, std::string("[Desk\0top Ent\n=;", 16)).mode(entry, 0);
    if (standing == "a dangling link") tree.link(entry, "gone");
    if (standing == "a link to a file") tree.link(entry, "../../kept");
    const auto items = entries_in(tree);
    EXPECT_TRUE(items->set_enabled(identifier, true));
    EXPECT_EQ(tree.listing(), (std::set<std::string>{"kept", entry}));
    EXPECT_EQ(tree.read(entry), enabled_text);
    EXPECT_TRUE(items->set_enabled(identifier, false));
    EXPECT_TRUE(items->set_enabled(identifier, false)) << "what is gone is disabled";
    EXPECT_EQ(tree.listing(), (std::set<std::string>{"kept", "own/autostart/"}));
    EXPECT_EQ(tree.read("kept"), "mine");
  }
}

TEST(Autostart, hides_the_entry_for_all_users_since_removing_its_own_would_bring_it_back) {
  TempTree tree;
  tree.content("system/autostart/org.example.helper.desktop", "[Desktop Entry]\n");
  EXPECT_TRUE(entries_in(tree)->set_enabled(identifier, false));
  EXPECT_EQ(tree.read(entry), enabled_text + "Hidden=true\n");
  EXPECT_TRUE(entries_in(tree)->set_enabled(identifier, true));
  EXPECT_EQ(tree.read(entry), enabled_text);
}

TEST(Autostart, changes_nothing_where_it_cannot_finish_or_the_identifier_is_none) {
  TempTree tree;
  const std::string inside = std::string(entry).append("/inside/");
  tree.folder(inside).folder("own/other").mode("own/other", 0500);
  EXPECT_FALSE(entries_in(tree)->set_enabled(identifier, true)) << "a folder stands there";
  EXPECT_FALSE(entries_in(tree)->set_enabled(identifier, false));
  EXPECT_EQ(tree.listing(), (std::set<std::string>{inside, "own/other/"}));
  test::as_plain_user(tree, [&] {
    EXPECT_FALSE(autostart_entries(tree.url("own/other"), {})->set_enabled(identifier, true)) << "may not be written";
  });
  EXPECT_FALSE(autostart_entries(Url(), {})->set_enabled(identifier, true)) << "nowhere";
  for (const char* wrong : {"", ".", "a/b", "../a", "a..b", ".a", "a.", "a b", "a\nExec=b", "a.-b", "-a", "ä"}) {
    EXPECT_FALSE(entries_in(tree)->set_enabled(wrong, true)) << wrong;
    EXPECT_FALSE(entries_in(tree)->set_enabled(wrong, false)) << wrong;
  }
}

TEST(Autostart, starts_the_program_at_login_as_the_desktop_reads_the_entry) {
  const auto found = [](const std::string& program) {
    return test::run_program({{"/bin/sh", "-c", "command -v " + program}, {{"PATH", "/usr/bin:/bin"}}}).status == 0;
  };
  TempTree tree;
  tree.content("bin/helper", "#!/bin/sh\ntouch \"${0%/bin/helper}/started\"\n").mode("bin/helper", 0755);
  const auto items = entries_in(tree);
  const auto log_in = [&] {
    const auto run = test::run_program({{"/usr/bin/dex", "--autostart", "--wait", "-s", tree.path("own/autostart")},
                                        {{"PATH", tree.path("bin") + ":/usr/bin:/bin"}, {"HOME", tree.path()}}});
    EXPECT_EQ(run.status, 0) << run.err;
    return tree.exists("started");
  };
  ASSERT_TRUE(items->set_enabled(identifier, true));
  if (found("desktop-file-validate")) {
    const auto run = test::run_program({{"/usr/bin/desktop-file-validate", tree.path(entry)}, {}});
    EXPECT_EQ(run.status, 0) << run.out;
  }
  if (!found("dex")) GTEST_SKIP() << "no dex to log in with";
  tree.content("system/autostart/org.example.helper.desktop", "[Desktop Entry]\n");
  ASSERT_TRUE(items->set_enabled(identifier, false));
  EXPECT_FALSE(log_in());
  ASSERT_TRUE(items->set_enabled(identifier, true));
  EXPECT_TRUE(log_in());
}

}  // namespace
}  // namespace tarnby
