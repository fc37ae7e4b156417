#include "ui/animation.h"

#include <QCoreApplication>
#include <QTest>
#include <memory>

#include "tests/ui/widget_test.h"

namespace tarnby {
namespace {

class AnimationTest : public test::WidgetTest {};

TEST_F(AnimationTest, reaches_its_target_exactly_at_its_time_and_then_rests) {
  int done = 0;
  int steps = 0;
  Animation animation(clock_, 0, [&] { ++steps; });
  EXPECT_FALSE(clock_.beating()) << "nothing moves yet";
  animation.move_to(10, 1000, QEasingCurve::Linear, [&] { ++done; });
  EXPECT_TRUE(clock_.beating());
  clock_.pass(500);
  EXPECT_DOUBLE_EQ(animation.value(), 5);
  clock_.pass(499);
  EXPECT_LT(animation.value(), 10) << "a millisecond early is too early";
  EXPECT_EQ(done, 0);
  clock_.pass(1);
  EXPECT_EQ(animation.value(), 10);
  EXPECT_EQ(done, 1);
  EXPECT_FALSE(clock_.beating()) << "at rest the clock does not beat";
  const int steps_at_rest = steps;
  clock_.pass(1000);
  EXPECT_EQ(steps, steps_at_rest);
  EXPECT_EQ(done, 1);
}

TEST_F(AnimationTest, goes_on_from_where_it_is_when_it_is_sent_elsewhere) {
  bool first_done = false;
  bool second_done = false;
  Animation animation(clock_, 0, [] {});
  animation.move_to(1, 100, QEasingCurve::Linear, [&] { first_done = true; });
  clock_.pass(50);
  animation.move_to(0, 100, QEasingCurve::Linear, [&] { second_done = true; });
  EXPECT_DOUBLE_EQ(animation.value(), 0.5) << "no jump";
  clock_.pass(50);
  EXPECT_DOUBLE_EQ(animation.value(), 0.25);
  clock_.pass(50);
  EXPECT_TRUE(second_done);
  EXPECT_FALSE(first_done) << "a move that was replaced never arrives";
}

TEST_F(AnimationTest, may_be_sent_on_or_destroyed_by_what_it_calls) {
  auto second = std::make_unique<Animation>(clock_, 0, [] {});
  auto first = std::make_unique<Animation>(clock_, 0, [] {});
  first->move_to(1, 10, QEasingCurve::Linear, [&] {
    second.reset();
    first->move_to(2, 10, QEasingCurve::Linear, [&] { first.reset(); });
  });
  second->move_to(1, 20, QEasingCurve::Linear);
  clock_.pass(10);
  EXPECT_EQ(second, nullptr);
  ASSERT_NE(first, nullptr);
  clock_.pass(10);
  EXPECT_EQ(first, nullptr);
  EXPECT_TRUE(clock_.idle());
}

TEST_F(AnimationTest, becomes_a_plain_change_when_motion_is_reduced) {
  bool done = false;
  Animation animation(clock_, 0, [] {});
  Animation round(clock_, 0.5, [] {});
  animation.move_to(1, 1000, QEasingCurve::Linear);
  motion::set_reduced(true);
  clock_.pass(1);
  EXPECT_EQ(animation.value(), 1) << "what runs ends with the next beat";
  animation.move_to(7, 1000, QEasingCurve::Linear, [&] { done = true; });
  EXPECT_EQ(animation.value(), 7);
  EXPECT_TRUE(done);
  round.repeat(100);
  EXPECT_EQ(round.value(), 0.5) << "an endless one does not begin";
  EXPECT_FALSE(clock_.beating());
}

TEST_F(AnimationTest, the_running_programs_clock_beats_until_all_is_at_rest) {
  TimerClock clock;
  bool done = false;
  bool beaten = false;
  Animation animation(clock, 0, [&] { beaten = true; });
  animation.move_to(1, 20, QEasingCurve::Linear, [&] { done = true; });
  EXPECT_TRUE(QTest::qWaitFor([&] { return beaten; }));
  EXPECT_EQ(animation.value(), 0) << "no time passes before the first picture";
  clock.start();
  EXPECT_TRUE(QTest::qWaitFor([&] { return done; }));
  EXPECT_TRUE(clock.idle());
}

}  // namespace
}  // namespace tarnby
