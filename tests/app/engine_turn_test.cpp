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

std::string scan_shown(TestWindow& at) {
  if (at.screen<ScanViewController>(Layer::overlay) != nullptr) return "categories";
  return at.screen<SmartScanViewController>(Layer::overlay) != nullptr ? "smart scan" : "";
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
    TestPlatform ada;
    TestWindow at(ada);
    at.open_on_screen();
    at.settle();
    test::Hold work(at.background);
    QTest::keyClick(at.window(), row.first, Qt::ControlModifier);
    if (row.first_is_over) {
      work.release();
      at.settle();
    }
    at.pass(row.between);
    QTest::keyClick(at.window(), row.second, Qt::ControlModifier);
    at.pass(400);
    EXPECT_EQ(scan_shown(at), row.shown);
    EXPECT_THAT(at.logged, testing::IsEmpty()) << "no scan screen has taken another one's place";
    work.release();
    at.settle();
  }
}

TEST(EngineTurn, makes_whoever_asks_wait_for_a_removal_and_says_so) {
  TestPlatform ada;
  TestWindow at(ada);
  at.ada.settings.add_integer("TotallyCleaned", 5000);
  at.open_on_screen();
  at.context.removal.running = true;
  at.post("home_view_controller");
  const auto* home = at.screen<HomeViewController>();
  EXPECT_FALSE(home->search_button->isEnabled() || home->categories_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "Still removing…");
  for (const Qt::Key key : {Qt::Key_K, Qt::Key_R}) QTest::keyClick(at.window(), key, Qt::ControlModifier);
  for (const char* asked : {"smart_scan_view_controller", "scan_view_controller"}) at.post(asked);
  at.pass(400);
  EXPECT_EQ(scan_shown(at), "");
  ASSERT_EQ(at.screen<HomeViewController>(), home) << "refused as a whole";

  at.context.removal.running = false;
  at.post(RemovalRun::removal_changed);
  EXPECT_TRUE(home->search_button->isEnabled() && home->categories_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "Cleaned so far: 5 KB");
  QTest::keyClick(at.window(), Qt::Key_K, Qt::ControlModifier);
  at.pass(400);
  EXPECT_EQ(scan_shown(at), "categories");
}

TEST(EngineTurn, is_free_once_a_scan_that_was_given_up_is_over) {
  TestPlatform ada;
  TestWindow at(ada);
  at.open_on_screen();
  at.settle();
  test::Hold work(at.background);
  at.post("smart_scan_view_controller");
  at.pass(100);
  at.post("home_view_controller");
  at.post("scan_end_anim_complete");
  const auto* home = at.screen<HomeViewController>();
  EXPECT_FALSE(home->search_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "Still stopping the scan…");
  work.release();
  at.settle();
  at.settle();
  EXPECT_TRUE(home->search_button->isEnabled());
  EXPECT_EQ(home->cleaned_so_far->text(), "");
}

}  // namespace
}  // namespace tarnby
