#include <QSignalSpy>

#include "tests/ui/widget_test.h"
#include "ui/background_view.h"
#include "ui/cleaned_mark.h"
#include "ui/dash_view.h"
#include "ui/progress_view.h"
#include "ui/pulse_view.h"
#include "ui/scan_views.h"
#include "ui/space_view.h"
#include "ui/theme.h"

namespace tarnby {
namespace {

class DrawingTest : public test::WidgetTest {
 protected:
  int part_said(QWidget* widget) { return accessible(widget).valueInterface()->currentValue().toInt(); }
};

TEST_F(DrawingTest, a_ring_fills_at_an_even_pace_and_ends_at_its_time) {
  auto* ring = shown<ScanView>(clock_);
  bool done = false;
  ring->animate_stroke_end(0.5, 8000, [&] { done = true; });
  clock_.pass(4000);
  EXPECT_DOUBLE_EQ(ring->stroke_end(), 0.25);
  EXPECT_EQ(part_said(ring), 25);
  clock_.pass(3999);
  EXPECT_LT(ring->stroke_end(), 0.5);
  EXPECT_FALSE(done);
  clock_.pass(1);
  EXPECT_EQ(ring->stroke_end(), 0.5);
  EXPECT_TRUE(done);
  ring->set_stroke_end(7);
  EXPECT_EQ(ring->stroke_end(), 1) << "never more than whole";
  EXPECT_TRUE(clock_.idle());
}

TEST_F(DrawingTest, reduced_motion_shows_the_end_at_once) {
  motion::set_reduced(true);
  auto* ring = shown<DeleteView>(clock_);
  auto* space = shown<SpaceView>(clock_);
  auto* background = shown<BackgroundView>(clock_);
  auto* mark = shown<CleanedMark>(clock_);
  auto* pulse = shown<PulseView>(clock_);
  auto* search = shown<SearchView>(clock_);
  const BackgroundView::Curves before = background->curves();
  bool done = false;
  ring->animate_stroke_end(1, 5400, [&] { done = true; });
  space->show_space(0.4, "4 GB used", "6 GB free");
  background->animation_for_cleaned_view();
  mark->draw_in();
  pulse->set_pulsing(true);
  search->set_searching(true);
  EXPECT_EQ(ring->stroke_end(), 1);
  EXPECT_TRUE(done);
  EXPECT_EQ(space->filled(), 0.4);
  EXPECT_NE(background->curves(), before);
  EXPECT_EQ(mark->drawn(), 1);
  EXPECT_TRUE(clock_.idle());
}

TEST_F(DrawingTest, endless_ones_move_only_while_they_are_seen) {
  auto* pulse = shown<PulseView>(clock_);
  auto* search = shown<SearchView>(clock_);
  EXPECT_TRUE(clock_.idle());
  pulse->set_pulsing(true);
  search->set_searching(true);
  EXPECT_FALSE(clock_.idle());
  EXPECT_EQ(accessible(search).valueInterface(), nullptr) << "nobody knows how far a search is";
  EXPECT_TRUE(accessible(pulse).state().busy);
  window_.hide();
  EXPECT_TRUE(clock_.idle()) << "a hidden window costs nothing";
  window_.show();
  EXPECT_FALSE(clock_.idle());
  pulse->set_pulsing(false);
  search->set_searching(false);
  EXPECT_TRUE(clock_.idle());
}

TEST_F(DrawingTest, the_background_stands_elsewhere_for_each_kind_of_screen) {
  using Change = void (BackgroundView::*)();
  const Change changes[] = {&BackgroundView::animation_for_home_view, &BackgroundView::animation_for_scan_view,
                            &BackgroundView::animation_for_page_view, &BackgroundView::animation_for_delete_view,
                            &BackgroundView::animation_for_cleaned_view};
  BackgroundView unseen(clock_, nullptr);
  unseen.animation_for_scan_view();
  EXPECT_TRUE(clock_.idle()) << "what nobody has seen does not move";

  auto* background = shown<BackgroundView>(clock_);
  std::vector<BackgroundView::Curves> places;
  for (const Change change : changes) {
    (background->*change)();
    clock_.pass(600);
    EXPECT_TRUE(clock_.idle()) << "the glide takes 0.6 s";
    for (const auto& other : places) EXPECT_NE(background->curves(), other);
    for (const auto& curve : background->curves()) {
      EXPECT_GE(theme::contrast(theme::text, curve.color), theme::readable_contrast) << "texts stand on it";
    }
    places.push_back(background->curves());
  }
  EXPECT_EQ(places[1], unseen.curves());
  const QColor cleaned = places.back()[2].color;
  EXPECT_GT(cleaned.green(), cleaned.red() + 40) << "greener when cleaned";

  background->animation_for_home_view();
  clock_.pass(300);
  const double halfway = (places.front()[0].heights[0] + places.back()[0].heights[0]) / 2;
  EXPECT_NEAR(background->curves()[0].heights[0], halfway, 1e-9) << "half of the way at half of the time";
  background->animation_for_scan_view();
  EXPECT_NEAR(background->curves()[0].heights[0], halfway, 1e-9) << "a quick second change does not jump";
  clock_.pass(600);
  background->animation_for_scan_view();
  EXPECT_TRUE(clock_.idle()) << "it is there already";
}

TEST_F(DrawingTest, the_steps_know_what_is_done_and_what_is_to_come) {
  auto* steps = shown<DashView>();
  steps->set_steps({"Caches", "Logs", "Trash"});
  const auto states = [&] { return std::array{steps->state_of(0), steps->state_of(1), steps->state_of(2)}; };
  using enum StepState;
  EXPECT_EQ(states(), (std::array{to_come, to_come, to_come})) << "none has begun";
  steps->set_current(1);
  EXPECT_EQ(states(), (std::array{done, now, to_come}));
  EXPECT_EQ(said(steps, QAccessible::Value), "Logs (2/3): Caches, Logs, Trash");
  steps->set_current(3);
  EXPECT_EQ(states(), (std::array{done, done, done}));
}

TEST_F(DrawingTest, bars_say_what_they_show_and_survive_bad_numbers) {
  auto* space = shown<SpaceView>(clock_);
  space->show_space(0.62, "312 GB used", "188 GB free");
  EXPECT_EQ(said(space, QAccessible::Value), "312 GB used, 188 GB free");
  EXPECT_EQ(part_said(space), 62) << "at once, however long the bar takes to get there";
  for (const double bad : {-1.0, 2.0, std::nan("")}) {
    space->show_space(bad, "", "");
    clock_.pass(1000);
    EXPECT_GE(space->filled(), 0);
    EXPECT_LE(space->filled(), 1);
  }
  auto* progress = shown<ProgressView>(clock_);
  progress->animate_progress(1, 100);
  clock_.pass(50);
  EXPECT_EQ(part_said(progress), 50);
}

}  // namespace
}  // namespace tarnby
