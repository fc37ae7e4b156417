#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inventory/application.h"
#include "platform/platform.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t day = 86'400;
constexpr std::int64_t never = -1;

/// An application that was opened and changed that many seconds ago.
void add(TestPlatform& user, const std::string& path, const std::string& identifier, std::int64_t used = never,
         std::int64_t changed = 90 * day) {
  const std::int64_t now = user.platform.now().time_since_epoch().count();
  user.application(path, BundleValues{identifier, {}, "tool", {}, {}});
  user.tree.file(path + "/Contents/MacOS/tool");
  // Access counts as use only when it came after the executable was written.
  const std::int64_t opened = used == never ? now - changed : now - used;
  user.times(path + "/Contents/MacOS/tool", opened, used == never ? opened : opened - 1);
  user.times(path, now, now - changed);
}

ApplicationItems unused(TestPlatform& user) {
  Application inventory(user.platform);
  inventory.unusedApplications([](bool done) { EXPECT_TRUE(done); });
  return inventory.unused_apps;
}

TEST(UnusedApplications, were_neither_opened_nor_changed_for_thirty_days) {
  struct Case {
    const char* why;
    std::int64_t used;
    std::int64_t changed;
    bool listed;
    std::string path = "Applications/A.app";
    std::string identifier = "com.example.a";
  };
  const Case cases[] = {
      {"opened thirty, changed forty days ago", 30 * day, 40 * day, true},
      {"opened a moment less than thirty days ago", 30 * day - 1, 40 * day, false},
      {"changed a moment less than thirty days ago", 40 * day, 30 * day - 1, false},
      {"never opened", never, 30 * day, true},
      {"three folders below", never, 90 * day, false, "Applications/V/Sub/Deep/A.app"},
      {"a tool of the system", never, 90 * day, false, "Applications/Utilities/T/A.app"},
      {"anywhere in Documents", never, 90 * day, true, "ada/Documents/x/y/A.app"},
      {"only at the top of Downloads", never, 90 * day, false, "ada/Downloads/x/A.app"},
      {"inside another, whatever its case", never, 90 * day, false, "ada/Documents/B.APP/A.app"},
      {"of the system", never, 90 * day, false, "Applications/A.app", "com.apple.dt.Xcode"},
      {"without an identifier", never, 90 * day, false, "Applications/A.app", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    add(user, c.path, c.identifier, c.used, c.changed);
    const ApplicationItems found = unused(user);
    ASSERT_EQ(found.size(), c.listed ? 1U : 0U);
    if (!c.listed) continue;
    const Moment opened = user.platform.now() - std::chrono::seconds(c.used == never ? 0 : c.used);
    EXPECT_EQ(found.front()->launch_date, opened) << "who was never opened carries the moment of the search";
  }
}

TEST(UnusedApplications, are_one_item_for_all_copies_of_an_identifier) {
  TestPlatform user;
  ASSERT_TRUE(user.bookmarks.store(Grant::applications, user.url("ada/Applications")));
  add(user, "ada/Downloads/Z.app", "com.example.z", 50 * day);
  add(user, "ada/Applications/z.app", "com.example.z", 60 * day);
  add(user, "ada/Desktop/more/Z2.app", "com.example.z");
  add(user, "ada/Documents/Other.app", "com.Example.z");
  add(user, "ada/Applications/Busy.app", "com.example.z", day);
  const ApplicationItems found = unused(user);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0]->label, "Other") << "sorted by label; identifiers are compared exactly";
  EXPECT_THAT(found[0]->instances, IsEmpty());
  EXPECT_EQ(found[1]->url, user.url("ada/Applications/z.app"))
      << "the first one found, with its own date; found on two ways it is no copy of itself";
  EXPECT_EQ(found[1]->launch_date, user.platform.now() - std::chrono::seconds(60 * day));
  EXPECT_THAT(user.relative(found[1]->instances), ElementsAre("ada/Downloads/Z.app", "ada/Desktop/more/Z2.app"));
}

}  // namespace
}  // namespace tarnby
