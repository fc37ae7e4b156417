#include "app/parts/engine_turn.h"

#include "app/home/home_view_controller.h"
#include "app/junk/scan_view_controller.h"
#include "app/smart/smart_scan_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::Layer;
using test::TestPlatform;
using test::TestWindow;

std::string scan_shown(TestWindow& window) {
  if (window.screen<ScanViewController>(Layer::overlay) != nullptr) return "categories";
  return window.screen<SmartScanViewController>(Layer::overlay) != nullptr ? "smart scan" : "";
}

TEST(EngineTurn, lets_one_scan_begin_however_fast_and_often_it_is_asked_for) {
  struct Case {
    Qt::Key first;
    Qt::Key second;
    int between;
    bool first_is_over;
    const char* shown;
  };
  std::vector<Case> cases;
  for (const int between : {0, 50, 99, 150}) {
    for (const bool first_is_over : {false, true}) {
      for (const Qt::Key second : {Qt::Key_K, Qt::Key_R}) {
        cases.push_back({Qt::Key_K, second, between, first_is_over, "categories"});
        cases.push_back({Qt::Key_R, second, between, false, "smart scan"});
      }
    }
  }
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.first) + " " + std::to_string(row.second) + " after " +
                 std::to_string(row.between) + (row.first_is_over ? ", the first scan is over" : ""));
    TestPlatform user;
    TestWindow window(user);
    window.open_on_screen();
    window.settle();
    test::HeldThread work(window.background);
    QTest::keyClick(window.widget(), row.first, Qt::ControlModifier);
    if (row.first_is_over) {
      work.release();
      window.settle();
    }
    window.pass(row.between);
    QTest::keyClick(window.widget(), row.second, Qt::ControlModifier);
    window.pass(400);
    EXPECT_EQ(scan_shown(window), row.shown);
    EXPECT_THAT(window.logged, testing::IsEmpty()) << "no scan screen has taken another one's place";
    work.release();
    window.settle();
  }
}

TEST(EngineTurn, refuses_a_scan_while_a_removal_runs_and_says_so) {
  TestPlatform user;
  TestWindow window(user);
  window.user.settings.add_integer("TotallyCleaned", 5000);
  window.open_on_screen();
  window.context.removal.running = true;
  window.post("home_view_controller");
  const auto* home = window.screen<HomeViewController>();
  EXPECT_FALSE(home->search_button->isEnabled() || home->categories_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "Still removing…");
  for (const Qt::Key key : {Qt::Key_K, Qt::Key_R}) QTest::keyClick(window.widget(), key, Qt::ControlModifier);
  for (const char* asked : {"smart_scan_view_controller", "scan_view_controller"}) window.post(asked);
  window.pass(400);
  EXPECT_EQ(scan_shown(window), "");
  ASSERT_EQ(window.screen<HomeViewController>(), home) << "refused as a whole";

  window.context.removal.running = false;
  window.post(RemovalRun::removal_changed);
  EXPECT_TRUE(home->search_button->isEnabled() && home->categories_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "Cleaned so far: 5 KB");
  QTest::keyClick(window.widget(), Qt::Key_K, Qt::ControlModifier);
  window.pass(400);
  EXPECT_EQ(scan_shown(window), "categories");
}

TEST(EngineTurn, is_free_once_a_scan_that_was_given_up_is_over) {
  TestPlatform user;
  TestWindow window(user);
  window.open_on_screen();
  window.settle();
  test::HeldThread work(window.background);
  window.post("smart_scan_view_controller");
  window.pass(100);
  window.post("home_view_controller");
  window.post("scan_end_anim_complete");
  const auto* home = window.screen<HomeViewController>();
  EXPECT_FALSE(home->search_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "Still stopping the scan…");
  work.release();
  window.settle();
  window.settle();
  EXPECT_TRUE(home->search_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "");
}

}  // namespace
}  // namespace tarnby
