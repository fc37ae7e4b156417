#include "engine/lifetime_total.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/platform.h"
#include "tests/support/test_platform.h"

namespace tarnby {

TEST(LifetimeTotal, adds_to_what_is_on_the_disk_by_then_and_is_there_at_once) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  test::TestPlatform user;
  PlainMainQueue queue;
  Platform other(user.platform.session, nullptr, queue);
  EXPECT_EQ(add_to_lifetime_total(other.app_settings, 5), 5);
  EXPECT_EQ(add_to_lifetime_total(user.settings, 10), 15) << "another process added meanwhile";
  EXPECT_EQ(add_to_lifetime_total(user.settings, most), most) << "no more than can be counted";
  Platform next(user.platform.session, nullptr, queue);
  EXPECT_EQ(next.app_settings.integer("TotallyCleaned"), most);

  user.settings.set_integer("TotallyCleaned", -7);
  EXPECT_EQ(user.settings.integer("TotallyCleaned"), 0) << "nobody cleans less than nothing";
  EXPECT_EQ(add_to_lifetime_total(user.settings, 5), 5);
}

}  // namespace tarnby
