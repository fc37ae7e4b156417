#include "engine/lifetime_total.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;

TEST(LifetimeTotal, grows_by_each_cleaning_and_is_on_the_disk_at_once) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  struct Case {
    const char* why;
    std::int64_t was_cleaned;
    std::int64_t total;
  };
  const Case cases[] = {
      {"the first cleaning", 1'000, 1'000},
      {"the next adds", 234, 1'234},
      {"nothing removed leaves it", 0, 1'234},
      {"a total beyond counting stays at the greatest", most, most},
  };
  TestPlatform ada;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(add_to_lifetime_total(ada.platform.app_settings, c.was_cleaned), c.total);
    PlainMainQueue queue;
    Platform next(ada.platform.session, nullptr, queue);
    EXPECT_EQ(next.app_settings.integer("TotallyCleaned"), c.total);
  }
}

TEST(LifetimeTotal, loses_nothing_to_another_process_or_to_a_disk_that_refuses) {
  TestPlatform ada;
  PlainMainQueue queue;
  Platform other(ada.platform.session, nullptr, queue);
  EXPECT_EQ(add_to_lifetime_total(other.app_settings, 5), 5);
  EXPECT_EQ(add_to_lifetime_total(ada.platform.app_settings, 10), 15) << "what the other one added meanwhile counts";

  // A folder in the file's place cannot be written over, not even by root.
  TestPlatform refused(TestPlatform::Grants::none);
  refused.tree.folder("settings/settings.plist/in the way");
  EXPECT_EQ(add_to_lifetime_total(refused.platform.app_settings, 7), 7);
  EXPECT_EQ(add_to_lifetime_total(refused.platform.app_settings, 3), 10);
  std::filesystem::remove_all(refused.tree.path("settings/settings.plist"));
  EXPECT_EQ(add_to_lifetime_total(refused.platform.app_settings, 1), 11);
  Platform next(refused.platform.session, nullptr, queue);
  EXPECT_EQ(next.app_settings.integer("TotallyCleaned"), 11);
}

}  // namespace
}  // namespace tarnby
