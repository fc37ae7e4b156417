#include "platform/notification_center.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace tarnby {
namespace {

using testing::ElementsAre;

TEST(NotificationCenter, calls_those_who_observe_that_name_in_the_order_they_came) {
  NotificationCenter center;
  std::vector<int> called;
  center.add_observer("a", [&] { called.push_back(1); });
  center.add_observer("b", [&] { called.push_back(2); });
  const auto third = center.add_observer("a", [&] { called.push_back(3); });
  center.post("a");
  center.post("none");
  center.remove_observer(third);
  center.remove_observer(third);
  center.post("a");
  EXPECT_THAT(called, ElementsAre(1, 3, 1));
}

TEST(NotificationCenter, observers_may_come_and_go_while_they_are_called) {
  NotificationCenter center;
  std::vector<int> called;
  NotificationCenter::Token second = 0;
  NotificationCenter::Token first = 0;
  first = center.add_observer("a", [&] {
    called.push_back(1);
    center.remove_observer(second);  // what it observed for may be gone by now
    center.remove_observer(first);
    center.add_observer("a", [&] { called.push_back(3); });
    center.post("b");
  });
  second = center.add_observer("a", [&] { called.push_back(2); });
  center.add_observer("b", [&] { called.push_back(4); });
  center.post("a");
  EXPECT_THAT(called, ElementsAre(1, 4)) << "the new one hears of the next";
  center.post("a");
  EXPECT_THAT(called, ElementsAre(1, 4, 3));
}

TEST(NotificationCenter, what_an_observer_held_may_use_the_centre_when_it_goes) {
  NotificationCenter center;
  int called = 0;
  const auto other = center.add_observer("a", [&] { ++called; });
  std::shared_ptr<void> held(nullptr, [&](void*) { center.remove_observer(other); });
  const auto token = center.add_observer("a", [held = std::move(held)] {});
  center.remove_observer(token);
  center.post("a");
  EXPECT_EQ(called, 0);
}

TEST(NotificationCenter, any_thread_may_call) {
  NotificationCenter center;
  std::atomic<int> called{0};
  center.add_observer("a", [&] { ++called; });
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 200; ++round) {
        const auto token = center.add_observer("b", [] {});
        center.post("a");
        center.post("b");
        center.remove_observer(token);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(called, 800);
}

}  // namespace
}  // namespace tarnby
