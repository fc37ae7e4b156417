#include "app/smart/smart_scan_view_controller.h"

#include "app/home/home_view_controller.h"
#include "app/smart/smart_clean_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::Layer;
using test::TestPlatform;
using test::TestWindow;

TEST(SmartScanViewController, shows_each_step_of_a_fast_scan_long_enough_to_be_read) {
  TestPlatform user;
  user.tree.file("ada/Library/Caches/a/x", 1000).file("ada/Library/Caches/com.gone.tool/x", 8000);
  user.tree.file("ada/Library/Logs/b.log", 2000).file("ada/Library/Safari/LocalStorage/x", 16000);
  user.tree.file("ada/Downloads/c.dmg", 4000).file("ada/.Trash/d", 32000);
  TestWindow window(user);
  window.open_on_screen();
  test::HeldThread held(window.background);
  window.post("smart_scan_view_controller");
  window.pass(100);
  auto* screen = window.screen<SmartScanViewController>(Layer::overlay);
  ASSERT_NE(screen, nullptr);
  std::vector<std::string> told;
  const auto listen = [&] {
    std::ostringstream now;
    now << screen->smart_item->text().toStdString() << ", " << screen->smart_size->text().toStdString() << ", "
        << screen->progressView->stroke_end();
    if (told.empty() || told.back() != now.str()) told.push_back(now.str());
  };
  listen();
  window.pass(1500);
  listen();
  window.pass(1500);
  listen();

  held.release();
  std::promise<void> scanned;
  window.background.async([&] { scanned.set_value(); });
  scanned.get_future().wait();
  int shown = 0;
  for (window.pass(0); window.screen(Layer::overlay) == screen && shown < 5000; window.pass(10), shown += 10) listen();
  EXPECT_THAT(told, testing::ElementsAre(
                        "Scan in \"Applications caches\", Zero KB, 0", "Scan in \"Applications caches\", Zero KB, 0.25",
                        "Scan in \"Applications caches\", Zero KB, 0.5", "Scan in \"Applications logs\", 9 KB, 0.5",
                        "Scan in \"Applications remainders\", 11 KB, 0.6", "Scan in \"Browsers\", 11 KB, 0.7",
                        "Scan in \"Mail attachments\", 27 KB, 0.8", "Scan in \"Installation files\", 27 KB, 0.9",
                        "Scan in \"Trash Bin\", 31 KB, 1", "Scan in \"Trash Bin\", 63 KB, 1"));
  EXPECT_EQ(shown, 7 * 150) << "the first has had its time while the scan was waited for";
  const auto* clean = window.screen<SmartCleanViewController>();
  ASSERT_NE(clean, nullptr);
  EXPECT_EQ(clean->size->text(), "63 KB");
}

TEST(SmartScanViewController, lasts_as_long_as_it_takes_to_read_and_no_longer) {
  TestPlatform user;
  TestWindow window(user);
  window.open_on_screen();
  window.post("smart_scan_view_controller");
  window.pass(100);
  window.settle();
  window.pass(1190);
  EXPECT_NE(window.screen<SmartScanViewController>(Layer::overlay), nullptr);
  window.pass(10);
  EXPECT_NE(window.screen<SmartCleanViewController>(), nullptr);
}

TEST(SmartScanViewController, that_is_stopped_leads_home_and_the_next_one_finds_everything) {
  TestPlatform user;
  user.tree.file("ada/Library/Caches/a/x", 1000).file("ada/.Trash/d", 32000);
  TestWindow window(user);
  window.open_on_screen();
  window.settle();
  for (const bool by_key : {true, false}) {
    SCOPED_TRACE(by_key ? "Escape" : "the button");
    test::HeldThread scan(user.main_queue);
    window.post("smart_scan_view_controller");
    window.pass(100);
    scan.wait_until_held();
    auto* screen = window.screen<SmartScanViewController>(Layer::overlay);
    ASSERT_NE(screen, nullptr);
    EXPECT_EQ(QApplication::focusWidget(), screen->stop_button);
    by_key ? QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape) : screen->stop_button->click();
    EXPECT_TRUE(user.files.stopped_looking());
    EXPECT_EQ(window.screen(Layer::overlay), nullptr);
    EXPECT_NE(window.screen<HomeViewController>(), nullptr);
    scan.release();
    window.settle();
    user.main_queue.when_handed_over = nullptr;  // now that no other thread hands anything over
    window.pass(3000);
    EXPECT_NE(window.screen<HomeViewController>(), nullptr) << "what it found is nobody's";
  }
  window.scan();
  ASSERT_NE(window.screen<SmartCleanViewController>(), nullptr);
  EXPECT_EQ(window.screen<SmartCleanViewController>()->size->text(), "33 KB");
}

TEST(SmartScanViewController, that_waits_for_the_background_queue_does_not_scan_after_the_program_ends) {
  TestPlatform user;
  user.tree.file("ada/Library/Caches/a/x", 1000);
  TestWindow window(user);
  window.open();
  test::HeldThread held(window.background);
  window.post("smart_scan_view_controller");
  window.pass(100);
  window.context.end();
  held.release();
  window.settle();
  EXPECT_TRUE(user.files.stopped_looking());
  EXPECT_FALSE(window.engine->cleaner.search_is_complete);
}

}  // namespace
}  // namespace tarnby
