#include "app/smart/smart_cleanup_view_controller.h"

#include <QListWidget>

#include "app/cleaned/cleaned_view_controller.h"
#include "app/cleaned/left_panel.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;

TEST(SmartCleanupViewController, moves_on_by_the_clock_alone_and_what_is_left_is_told_afterwards) {
  for (const bool reduced : {false, true}) {
    SCOPED_TRACE(reduced);
    TestPlatform ada;
    ada.tree.file("ada/.Trash/x/y", 1).file("elsewhere", 1);
    TestWindow at(ada);
    motion::set_reduced(reduced);
    at.open_on_screen();
    Cleaner& cleaner = at.context.sharedCleaner();
    cleaner.files = {ada.url("ada/.Trash/x"), ada.url("elsewhere"), ada.url("ada/.Trash/gone already")};
    cleaner.wasCleaned = 5'000'000;
    test::Hold hold(at.background);
    at.post("smart_cleanup_view_controller");
    const auto* screen = at.screen<SmartCleanupViewController>();
    ASSERT_NE(screen, nullptr);
    const auto shows = [&](const char* number, const char* line) {
      EXPECT_EQ(screen->smart_size->text(), number);
      EXPECT_EQ(screen->smart_item->text(), line);
    };
    shows("5 MB", "Removing what you chose...");
    at.pass(1000);
    EXPECT_EQ(screen->progressView->stroke_end(), reduced ? 1 : 0.5);
    at.pass(490);
    shows("5 MB", "Removing what you chose...");
    at.pass(10);
    shows("5 MB", "Cleanup complete...");
    at.pass(490);
    shows("5 MB", "Cleanup complete...");
    at.pass(10);
    shows("Done", "Cleanup complete...");
    EXPECT_EQ(screen->progressView->stroke_end(), 1);
    at.pass(1490);
    EXPECT_EQ(at.screen(), screen);
    at.pass(10);
    const auto* cleaned = at.screen<CleanedViewController>();
    ASSERT_NE(cleaned, nullptr) << "though nothing has been removed yet";
    EXPECT_EQ(cleaned->was_cleaned_size->text(), "5 MB");
    EXPECT_EQ(cleaned->left_button->text(), "Still removing…");
    EXPECT_FALSE(cleaned->left_button->isEnabled());
    EXPECT_TRUE(ada.tree.exists("ada/.Trash/x/y"));

    hold.release();
    at.settle();
    EXPECT_FALSE(ada.tree.exists("ada/.Trash/x"));
    EXPECT_TRUE(ada.tree.exists("elsewhere")) << "outside the grants";
    EXPECT_EQ(cleaned->left_button->text(), "One entry could not be removed");
    cleaned->left_button->click();
    ASSERT_NE(at.card<LeftPanel>(), nullptr);
    const auto* list = at.card()->findChild<QListWidget*>();
    ASSERT_EQ(list->count(), 1);
    EXPECT_THAT(list->item(0)->text().toStdString(), testing::StartsWith(ada.tree.path("elsewhere") + ": "));
  }
}

}  // namespace
}  // namespace tarnby
