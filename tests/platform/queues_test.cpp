#include "platform/queues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tarnby {
namespace {

using testing::ElementsAre;

/// Does something when it is forgotten, as an object may that a piece of work holds alive.
std::shared_ptr<void> when_forgotten(std::function<void()> what) {
  return {nullptr, [what = std::move(what)](void*) { what(); }};
}

TEST(PlainMainQueue, runs_in_order_also_what_work_hands_over) {
  PlainMainQueue queue;
  std::vector<int> order;
  queue.async([&] {
    order.push_back(1);
    queue.async([&] { order.push_back(3); });
    queue.quit();
    queue.async([&] { order.push_back(4); });
  });
  queue.async([&] { order.push_back(2); });
  queue.run();
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
  queue.async([&] { order.push_back(5); });
  queue.quit();
  queue.run();
  queue.async([&] { order.push_back(6); });
  queue.run_pending();
  queue.run_pending();
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5, 6)) << "a queue that was quit runs again";
}

TEST(PlainMainQueue, forgets_work_that_has_run_before_it_waits) {
  for (const bool pending : {false, true}) {
    PlainMainQueue queue;
    std::vector<int> order;
    // What work held alive may use the queue when it goes.
    queue.async([&, held = when_forgotten([&] { queue.async([&] { order.push_back(2); }); })] { order.push_back(1); });
    queue.async([&, held = when_forgotten([&] { order.push_back(4); })] { order.push_back(3); });
    if (pending) {
      queue.run_pending();
    } else {
      queue.quit();
      queue.run();
    }
    EXPECT_THAT(order, ElementsAre(1, 3, 4, 2));
  }
}

TEST(BackgroundQueue, its_end_waits_for_what_was_handed_over) {
  std::vector<int> order;
  std::optional<BackgroundQueue> queue(std::in_place);
  const auto here = std::this_thread::get_id();
  for (int i = 0; i < 100; ++i) {
    queue->async([&, i] {
      EXPECT_NE(std::this_thread::get_id(), here);
      order.push_back(i);
    });
  }
  queue.reset();
  EXPECT_EQ(order.size(), 100U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

}  // namespace
}  // namespace tarnby
