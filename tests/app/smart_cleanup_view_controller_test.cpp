#include "app/smart/smart_cleanup_view_controller.h"

#include <QClipboard>

#include "app/cleaned/cleaned_view_controller.h"
#include "app/cleaned/not_removed_panel.h"
#include "app/parts/stop_removal.h"
#include "tests/app/test_window.h"
#include "ui/freed_view.h"

namespace tarnby {
namespace {

using test::HeldThread;
using test::TestPlatform;
using test::TestWindow;

/// Something to remove, as a person has chosen it.
struct Chosen {
  Chosen() {
    user.tree.file("ada/.Trash/x/y", 3'000'000).file("ada/.Trash/z", 2'000'000).file("elsewhere", 1);
    window.open_on_screen();
    cleaner.files = {user.url("ada/.Trash/x"), user.url("ada/.Trash/z")};
    cleaner.wasCleaned = 5'000'000;
  }

  SmartCleanupViewController* begin() {
    window.post("smart_cleanup_view_controller");
    return window.screen<SmartCleanupViewController>();
  }
  const CleanedViewController* cleaned() { return window.screen<CleanedViewController>(); }
  std::int64_t total() { return user.settings.integer("TotallyCleaned"); }

  TestPlatform user;
  TestWindow window{user};
  Cleaner& cleaner = window.context.sharedCleaner();
};

TEST(SmartCleanupViewController, takes_its_time_where_the_removal_needs_none) {
  Chosen chosen;
  TestWindow& window = chosen.window;
  const auto* screen = chosen.begin();
  ASSERT_NE(screen, nullptr);
  const auto shows = [&](const char* number, const char* line) {
    EXPECT_EQ(screen->smart_size->text(), number);
    EXPECT_EQ(screen->smart_item->text(), line);
  };
  window.settle();
  shows("5 MB", "Removing what you chose...");
  EXPECT_TRUE(screen->stop_button->isHidden()) << "there is nothing to stop any more";
  window.pass(1000);
  EXPECT_DOUBLE_EQ(screen->progressView->stroke_end(), 0.5);
  window.pass(490);
  shows("5 MB", "Removing what you chose...");
  window.pass(10);
  shows("5 MB", "Cleanup complete...");
  window.pass(490);
  shows("5 MB", "Cleanup complete...");
  window.pass(10);
  shows("Done", "Cleanup complete...");
  EXPECT_EQ(screen->progressView->stroke_end(), 1);
  window.pass(1490);
  EXPECT_EQ(window.screen(), screen);
  window.pass(10);
  ASSERT_NE(chosen.cleaned(), nullptr);
  EXPECT_EQ(chosen.cleaned()->was_cleaned_size->text(), "5 MB");
  EXPECT_FALSE(chosen.cleaned()->left_button->isVisible()) << "nothing was left";
  EXPECT_EQ(chosen.total(), 5'000'000);
  EXPECT_EQ(chosen.cleaner.wasCleaned, 0) << "or it would be counted twice";
}

TEST(SmartCleanupViewController, says_it_is_done_only_after_the_removal) {
  for (const bool reduced : {false, true}) {
    SCOPED_TRACE(reduced);
    Chosen chosen;
    motion::set_reduced(reduced);
    TestWindow& window = chosen.window;
    HeldThread held(window.background);
    const auto* screen = chosen.begin();
    window.pass(10'000);
    EXPECT_EQ(window.screen(), screen) << "nothing has been removed yet";
    EXPECT_EQ(screen->smart_size->text(), "Zero KB");
    EXPECT_EQ(screen->smart_item->text(), "Removing what you chose...");
    EXPECT_EQ(screen->entries_label->text(), "0 files and folders are gone");
    EXPECT_EQ(screen->progressView->stroke_end(), 0);
    window.context.removal.progress.bytes = 2'000'000;
    window.context.removal.progress.entries = 3;
    window.pass(100);
    EXPECT_EQ(screen->smart_size->text(), "2 MB");
    EXPECT_EQ(screen->entries_label->text(), "3 files and folders are gone");
    EXPECT_DOUBLE_EQ(screen->progressView->stroke_end(), 0.4);
    window.context.removal.progress.bytes = 0;
    window.context.removal.progress.entries = 0;
    held.release();
    window.settle();
    EXPECT_EQ(screen->smart_item->text(), "Cleanup complete...");
    EXPECT_EQ(screen->smart_size->text(), "Done");
    window.pass(1500);
    ASSERT_NE(chosen.cleaned(), nullptr);
    EXPECT_EQ(chosen.cleaned()->was_cleaned_size->text(), "5 MB");
  }
}

TEST(SmartCleanupViewController, stops_when_it_is_told_to_and_tells_what_stayed) {
  for (const bool by_window : {false, true}) {
    SCOPED_TRACE(by_window);
    Chosen chosen;
    TestWindow& window = chosen.window;
    HeldThread held(window.background);
    auto* screen = chosen.begin();
    if (by_window) {
      EXPECT_FALSE(window.widget()->close());
      auto* question = window.card<StopRemoval>();
      ASSERT_NE(question, nullptr);
      EXPECT_EQ(QApplication::focusWidget(), question->go_on_button);
      EXPECT_FALSE(window.widget()->close()) << "it asks once";
      question->go_on_button->click();
      EXPECT_FALSE(window.context.removal.stopped || window.card() != nullptr);
      EXPECT_FALSE(window.widget()->close());
      window.card<StopRemoval>()->stop_button->click();
    } else {
      EXPECT_EQ(QApplication::focusWidget(), screen->stop_button);
      QTest::keyClick(screen->stop_button, Qt::Key_Escape);
    }
    EXPECT_EQ(screen->smart_item->text(), "Stopping…");
    held.release();
    window.settle();
    ASSERT_NE(chosen.cleaned(), nullptr) << "told at once";
    EXPECT_EQ(chosen.cleaned()->was_cleaned_size->text(), "Zero KB");
    EXPECT_EQ(chosen.cleaned()->label->text(), "Nothing was removed");
    EXPECT_TRUE(chosen.cleaned()->imageview->isHidden());
    EXPECT_EQ(chosen.cleaned()->left_label->text(), "Stopped. 2 entries are still there");
    EXPECT_EQ(chosen.cleaned()->left_size->text(), "5 MB");
    EXPECT_EQ(chosen.total(), 0);
    EXPECT_TRUE(chosen.user.tree.exists("ada/.Trash/x/y"));
    EXPECT_TRUE(window.widget()->close()) << "nothing goes on any more";
  }
}

TEST(SmartCleanupViewController, counts_what_was_removed_also_when_the_program_ends_before_showing_it) {
  Chosen chosen;
  chosen.begin();
  chosen.window.close();
  chosen.window.background.finish();
  count_unseen_removal(chosen.window.context);
  EXPECT_EQ(chosen.total(), 5'000'000);
  count_unseen_removal(chosen.window.context);
  EXPECT_EQ(chosen.total(), 5'000'000) << "once";
}

TEST(CleanedViewController, lists_what_was_left_and_does_not_count_it) {
  Chosen chosen;
  TestWindow& window = chosen.window;
  chosen.cleaner.files.push_back(chosen.user.url("elsewhere"));  // outside the grants
  chosen.cleaner.files.push_back(chosen.user.url("ada/.Trash/gone already"));
  chosen.cleaner.files.push_back(chosen.user.url("ada/Downloads"));
  chosen.user.tree.file("ada/Downloads/d", 4'000'000);
  chosen.cleaner.wasCleaned = 9'000'001;
  chosen.begin();
  window.settle();
  window.pass(3500);
  const auto* cleaned = chosen.cleaned();
  ASSERT_NE(cleaned, nullptr);
  EXPECT_EQ(cleaned->was_cleaned_size->text(), "5 MB") << "less what is still there";
  EXPECT_EQ(cleaned->label->text(), "was cleaned");
  EXPECT_EQ(chosen.total(), 5'000'000);
  EXPECT_EQ(cleaned->left_label->text(), "2 entries were left");
  EXPECT_EQ(cleaned->left_size->text(), "4 MB");
  EXPECT_EQ(cleaned->findChildren<FreedView*>().size(), 1);
  cleaned->left_button->click();
  ASSERT_NE(window.card<NotRemovedPanel>(), nullptr);
  NotRemovedList& list = *window.card<NotRemovedPanel>()->list;
  const auto said = [&](int row) {
    return list.model()->index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString();
  };
  ASSERT_EQ(list.model()->rowCount(), 2);
  EXPECT_EQ(said(0), chosen.user.tree.path("elsewhere") + ": it lies outside the folders that you gave access to");
  EXPECT_EQ(said(1), "~/Downloads: it is never removed whole");
  list.setCurrentIndex(list.model()->index(1, 0));
  list.show_button->click();
  EXPECT_THAT(window.workspace.asked, testing::ElementsAre("reveal " + chosen.user.tree.path("ada/Downloads")));
  list.copy_button->click();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), chosen.user.tree.path("ada/Downloads"));
  list.setCurrentIndex(list.model()->index(0, 0));
  QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), chosen.user.tree.path("elsewhere"));
}

}  // namespace
}  // namespace tarnby
