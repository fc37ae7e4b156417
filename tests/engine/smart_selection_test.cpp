#include "engine/smart_selection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using testing::ElementsAreArray;

using Paths = std::vector<std::string>;

TEST(SmartSelection, takes_whole_groups_in_their_fixed_order) {
  const std::string airmail =
      "ada/Library/Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/";
  TestPlatform ada;
  ada.tree.file("ada/Library/Containers/a/Data/Library/Caches/x", 1).file("ada/Library/Logs/b.log", 2);
  ada.tree.file("ada/Library/Containers/com.gone.tool/x", 4).file("ada/Library/Preferences/com.gone.tool.plist", 8);
  ada.tree.file(airmail + "General/Tmp/x", 16).file("ada/Downloads/c.pkg", 32).file("ada/.Trash/.d", 64);
  Engine of(ada);
  struct Case {
    const char* why;
    std::vector<std::string_view> types;
    Paths files;
    std::int64_t bytes;
  };
  const Paths caches = {"ada/Library/Containers/a/Data/Library/Caches"};
  const Paths leftovers = {"ada/Library/Containers/com.gone.tool", "ada/Library/Preferences/com.gone.tool.plist"};
  const Paths mails = {airmail + "General/AttachmentsNg", airmail + "General/Tmp"};
  const Paths all = {caches[0], "ada/Library/Logs/b.log", leftovers[0],   leftovers[1], mails[0],
                     mails[1],  "ada/Downloads/c.pkg",    "ada/.Trash/.d"};
  const Case cases[] = {
      {"none", {}, {}, 0},
      {"a cache is the folder that was measured", {"caches"}, caches, 1},
      {"a leftover is every entry of it", {"remainders"}, leftovers, 12},
      {"a client is every file of it", {"mails"}, mails, 16},
      {"a group without rows adds nothing", {"browsers"}, {}, 0},
      {"in whatever order they are asked for, and once",
       {"trash", "browsers", "installs", "mails", "remainders", "logs", "caches", "trash"},
       all,
       127},
      {"an unknown one is none", {"Trash", ""}, {}, 0},
  };
  EXPECT_TRUE(select_groups(of.cleaner, cases[5].types).files.empty()) << "before a scan there is nothing";
  of.scan();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const SmartSelection selection = select_groups(of.cleaner, c.types);
    EXPECT_THAT(ada.relative(selection.files), ElementsAreArray(c.files));
    EXPECT_EQ(selection.bytes, c.bytes);
  }
}

TEST(SmartSelection, counts_a_group_as_the_scan_did) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Containers/com.gone.tool/x", 4);
  Engine of(ada);
  of.scan();
  of.scan();
  const std::string_view types[] = {"remainders"};
  EXPECT_EQ(select_groups(of.cleaner, types).bytes, 8) << "leftovers add up over the scans of a process";
  of.cleaner.files = select_groups(of.cleaner, types).files;
  of.cleaner.remove_files();
  of.scan();
  const SmartSelection rest = select_groups(of.cleaner, types);
  EXPECT_TRUE(rest.files.empty());
  EXPECT_EQ(rest.bytes, 0) << "but a group from which nothing can be chosen adds nothing";
  EXPECT_EQ(of.cleaner.totalRemaindersSize, 8);
}

}  // namespace
}  // namespace tarnby
