#include "app/parts/screen.h"

#include <filesystem>

#include "app/smart/smart_clean_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::HeldThread;
using test::Layer;
using test::TestPlatform;
using test::TestWindow;

/// A home with something of several kinds, in front of which a smart scan has begun and stands still.
struct HeldScan {
  HeldScan() {
    window.post("smart_scan_view_controller");
    window.pass(100);
    held.wait_until_held();
    user.main_queue.run_next();
  }

  /// Whether looking for files goes on, or was stopped because nobody waits for it.
  bool looks() {
    held.release();
    window.settle();
    return !user.files.walk(user.url("ada"), Hidden::skip, Packages::skip, [](auto, auto) { return true; }).empty();
  }

  TestPlatform user;
  TestWindow window{user};
  HeldThread held{opened()};

 private:
  /// The main queue, once the home screen's own tasks are over.
  test::HandMainQueue& opened() {
    user.tree.file("ada/Library/Caches/plain/x", 1000).file("ada/Library/Logs/a.log", 2000);
    user.tree.file("ada/Downloads/c.dmg", 4000).file("ada/.Trash/t", 8000);
    window.open_on_screen();
    window.settle();
    return user.main_queue;
  }
};

TEST(Screen, ends_its_scan_when_it_or_the_whole_window_goes) {
  {
    HeldScan scan;
    scan.window.post("scan_end_anim_complete");
    EXPECT_FALSE(scan.looks());
    scan.window.pass(5000);
    EXPECT_EQ(scan.window.screen<SmartCleanViewController>(), nullptr) << "nobody waits for it any more";
    scan.window.scan();
    ASSERT_NE(scan.window.screen<SmartCleanViewController>(), nullptr) << "the next one looks again";
    EXPECT_EQ(scan.window.screen<SmartCleanViewController>()->size->text(), "15 KB");
  }
  HeldScan scan;
  scan.window.close();
  EXPECT_FALSE(scan.looks());
  scan.window.pass(5000);
}

TEST(Screen, whose_scan_has_not_begun_when_it_goes_never_begins_it) {
  TestPlatform user;
  TestWindow window(user);
  window.open();
  HeldThread removal(window.background);
  window.post("smart_scan_view_controller");
  window.pass(100);
  window.post("scan_end_anim_complete");
  removal.release();
  window.settle();
  EXPECT_FALSE(window.engine->cleaner.search_is_complete);
}

TEST(Screen, survives_a_home_that_vanishes_during_scan_and_removal) {
  HeldScan scan;
  TestWindow& window = scan.window;
  std::filesystem::remove_all(scan.user.tree.path("ada"));
  scan.held.release();
  window.settle();
  window.pass(1200);
  const auto* screen = window.screen<SmartCleanViewController>();
  ASSERT_NE(screen, nullptr);
  EXPECT_TRUE(screen->is_ticked(0, 0)) << "found while it was there";
  window.user.settings.set_boolean("SkipWarning", true);
  screen->remove_button->click();
  window.settle();
  window.pass(3500);
  EXPECT_FALSE(window.context.removal.running);
  EXPECT_TRUE(window.context.removal.outcome.left.empty()) << "nothing is left of what is gone";
}

TEST(Screen, leaves_its_removal_going_when_the_window_goes) {
  TestPlatform user;
  user.tree.file("ada/.Trash/a/b", 1).file("ada/.Trash/c", 1);
  TestWindow window(user);
  window.open_on_screen();
  Cleaner& cleaner = window.context.sharedCleaner();
  cleaner.files = {user.url("ada/.Trash/a"), user.url("ada/.Trash/c")};
  HeldThread held(window.background);
  window.post("smart_cleanup_view_controller");
  window.pass(1000);
  window.close();
  window.pass(5000);
  EXPECT_TRUE(window.context.removal.running);
  held.release();
  window.settle();
  EXPECT_FALSE(window.context.removal.running);
  EXPECT_FALSE(user.tree.exists("ada/.Trash/a") || user.tree.exists("ada/.Trash/c"));

  user.tree.file("ada/.Trash/d");
  cleaner.files = {user.url("ada/.Trash/d")};
  window.context.end();
  window.open();
  window.post("smart_cleanup_view_controller");
  window.settle();
  ASSERT_EQ(window.context.removal.outcome.left.size(), 1U);
  EXPECT_EQ(window.context.removal.outcome.left[0].reason, LeftReason::not_attempted);
}

}  // namespace
}  // namespace tarnby
