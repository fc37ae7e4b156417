#include "platform/notification_center.h"

#include <gmock/gmock.h>

#include <vector>

namespace tarnby {
namespace {

TEST(NotificationCenter, observers_may_come_and_go_while_they_are_called) {
  NotificationCenter center;
  std::vector<int> called;
  NotificationCenter::Token second = 0;
  const auto first = center.add_observer("a", [&] {
    called.push_back(1);
    center.remove_observer(second);  // what it observed for may be gone by now
    center.add_observer("a", [&] { called.push_back(3); });
  });
  second = center.add_observer("a", [&] { called.push_back(2); });
  center.post("a");
  center.remove_observer(first);
  center.post("a");
  EXPECT_THAT(called, testing::ElementsAre(1, 3)) << "the new one hears of the next";
}

}  // namespace
}  // namespace tarnby
