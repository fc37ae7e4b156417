#include "platform/queues.h"

#include <gmock/gmock.h>

#include <memory>

namespace tarnby {
namespace {

TEST(PlainMainQueue, runs_in_order_also_what_work_hands_over_when_it_goes) {
  PlainMainQueue queue;
  std::vector<int> order;
  const auto hand_over = [&](void*) { queue.async([&] { order.push_back(3); }); };
  queue.async([&, held = std::shared_ptr<void>(nullptr, hand_over)] { order.push_back(1); });
  queue.async([&] { order.push_back(2); });
  queue.quit();
  queue.run();
  EXPECT_THAT(order, testing::ElementsAre(1, 2, 3));
}

TEST(BackgroundQueue, its_end_waits_for_what_was_handed_over) {
  int done = 0;
  {
    BackgroundQueue queue;
    for (int i = 0; i < 100; ++i) queue.async([&] { ++done; });
  }
  EXPECT_EQ(done, 100);
}

}  // namespace
}  // namespace tarnby
