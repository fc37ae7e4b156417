#include "app/parts/screen.h"

#include <filesystem>

#include "app/smart/smart_clean_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::Hold;
using test::Layer;
using test::TestPlatform;
using test::TestWindow;

/// A home with something of several kinds, in front of which a smart scan has begun and stands still.
struct HeldScan {
  HeldScan() {
    at.post("smart_scan_view_controller");
    at.pass(100);
    hold.wait_until_there();
    ada.main_queue.run_next();
  }

  /// Whether looking for files goes on, or was stopped because nobody waits for it.
  bool looks() {
    hold.release();
    at.settle();
    return !ada.files.walk(ada.url("ada"), Hidden::skip, Packages::skip, [](auto, auto) { return true; }).empty();
  }

  TestPlatform ada;
  TestWindow at{ada};
  Hold hold{opened()};

 private:
  /// The main queue, once the home screen's own tasks are over.
  test::HandMainQueue& opened() {
    ada.tree.file("ada/Library/Caches/plain/x", 1000).file("ada/Library/Logs/a.log", 2000);
    ada.tree.file("ada/Downloads/c.dmg", 4000).file("ada/.Trash/t", 8000);
    at.open_on_screen();
    at.settle();
    return ada.main_queue;
  }
};

TEST(Screen, ends_its_scan_when_it_or_the_whole_window_goes) {
  {
    HeldScan scan;
    scan.at.post("scan_end_anim_complete");
    EXPECT_FALSE(scan.looks());
    scan.at.pass(5000);
    EXPECT_EQ(scan.at.screen<SmartCleanViewController>(), nullptr) << "nobody waits for it any more";
    scan.at.scan();
    ASSERT_NE(scan.at.screen<SmartCleanViewController>(), nullptr) << "the next one looks again";
    EXPECT_EQ(scan.at.screen<SmartCleanViewController>()->size->text(), "15 KB");
  }
  HeldScan scan;
  scan.at.close();
  EXPECT_FALSE(scan.looks());
  scan.at.pass(5000);
}

TEST(Screen, whose_scan_has_not_begun_when_it_goes_never_begins_it) {
  TestPlatform ada;
  TestWindow at(ada);
  at.open();
  Hold removal(at.background);
  at.post("smart_scan_view_controller");
  at.pass(100);
  at.post("scan_end_anim_complete");
  removal.release();
  at.settle();
  EXPECT_FALSE(at.engine->cleaner.search_is_complete);
}

TEST(Screen, bears_a_home_that_vanishes_while_it_is_scanned_and_removed_from) {
  HeldScan scan;
  TestWindow& at = scan.at;
  std::filesystem::remove_all(scan.ada.tree.path("ada"));
  scan.hold.release();
  at.settle();
  at.pass(1200);
  const auto* screen = at.screen<SmartCleanViewController>();
  ASSERT_NE(screen, nullptr);
  EXPECT_TRUE(screen->is_ticked(0, 0)) << "found while it was there";
  at.ada.settings.set_boolean("SkipWarning", true);
  screen->remove_button->click();
  at.settle();
  at.pass(3500);
  EXPECT_FALSE(at.context.removal.running);
  EXPECT_TRUE(at.context.removal.outcome.left.empty()) << "nothing is left of what is gone";
}

TEST(Screen, leaves_its_removal_going_when_the_window_goes) {
  TestPlatform ada;
  ada.tree.file("ada/.Trash/a/b", 1).file("ada/.Trash/c", 1);
  TestWindow at(ada);
  at.open_on_screen();
  Cleaner& cleaner = at.context.sharedCleaner();
  cleaner.files = {ada.url("ada/.Trash/a"), ada.url("ada/.Trash/c")};
  Hold hold(at.background);
  at.post("smart_cleanup_view_controller");
  at.pass(1000);
  at.close();
  at.pass(5000);
  EXPECT_TRUE(at.context.removal.running);
  hold.release();
  at.settle();
  EXPECT_FALSE(at.context.removal.running);
  EXPECT_FALSE(ada.tree.exists("ada/.Trash/a") || ada.tree.exists("ada/.Trash/c"));

  ada.tree.file("ada/.Trash/d");
  cleaner.files = {ada.url("ada/.Trash/d")};
  at.context.end();
  at.open();
  at.post("smart_cleanup_view_controller");
  at.settle();
  ASSERT_EQ(at.context.removal.outcome.left.size(), 1U);
  EXPECT_EQ(at.context.removal.outcome.left[0].reason, LeftReason::not_attempted);
}

}  // namespace
}  // namespace tarnby
