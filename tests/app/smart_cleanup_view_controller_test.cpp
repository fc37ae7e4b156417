#include "app/smart/smart_cleanup_view_controller.h"

#include <QClipboard>

#include "app/cleaned/cleaned_view_controller.h"
#include "app/cleaned/not_removed_panel.h"
#include "app/parts/stop_removal.h"
#include "tests/app/test_window.h"
#include "ui/freed_view.h"

namespace tarnby {
namespace {

using test::Hold;
using test::TestPlatform;
using test::TestWindow;

/// Something to remove, as a person has chosen it.
struct Chosen {
  Chosen() {
    ada.tree.file("ada/.Trash/x/y", 3'000'000).file("ada/.Trash/z", 2'000'000).file("elsewhere", 1);
    at.open_on_screen();
    cleaner.files = {ada.url("ada/.Trash/x"), ada.url("ada/.Trash/z")};
    cleaner.wasCleaned = 5'000'000;
  }

  SmartCleanupViewController* begin() {
    at.post("smart_cleanup_view_controller");
    return at.screen<SmartCleanupViewController>();
  }
  const CleanedViewController* cleaned() { return at.screen<CleanedViewController>(); }
  std::int64_t total() { return ada.settings.integer("TotallyCleaned"); }

  TestPlatform ada;
  TestWindow at{ada};
  Cleaner& cleaner = at.context.sharedCleaner();
};

TEST(SmartCleanupViewController, takes_its_time_where_the_removal_needs_none) {
  Chosen chosen;
  TestWindow& at = chosen.at;
  const auto* screen = chosen.begin();
  ASSERT_NE(screen, nullptr);
  const auto shows = [&](const char* number, const char* line) {
    EXPECT_EQ(screen->smart_size->text(), number);
    EXPECT_EQ(screen->smart_item->text(), line);
  };
  at.settle();
  shows("5 MB", "Removing what you chose...");
  EXPECT_TRUE(screen->stop_button->isHidden()) << "there is nothing to stop any more";
  at.pass(1000);
  EXPECT_DOUBLE_EQ(screen->progressView->stroke_end(), 0.5);
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
  ASSERT_NE(chosen.cleaned(), nullptr);
  EXPECT_EQ(chosen.cleaned()->was_cleaned_size->text(), "5 MB");
  EXPECT_FALSE(chosen.cleaned()->left_button->isVisible()) << "nothing was left";
  EXPECT_EQ(chosen.total(), 5'000'000);
  EXPECT_EQ(chosen.cleaner.wasCleaned, 0) << "or it would be counted twice";
}

TEST(SmartCleanupViewController, claims_nothing_that_has_not_happened) {
  for (const bool reduced : {false, true}) {
    SCOPED_TRACE(reduced);
    Chosen chosen;
    motion::set_reduced(reduced);
    TestWindow& at = chosen.at;
    Hold hold(at.background);
    const auto* screen = chosen.begin();
    at.pass(10'000);
    EXPECT_EQ(at.screen(), screen) << "nothing has been removed yet";
    EXPECT_EQ(screen->smart_size->text(), "Zero KB");
    EXPECT_EQ(screen->smart_item->text(), "Removing what you chose...");
    EXPECT_EQ(screen->entries_label->text(), "0 files and folders are gone");
    EXPECT_EQ(screen->progressView->stroke_end(), 0);
    at.context.removal.progress.bytes = 2'000'000;
    at.context.removal.progress.entries = 3;
    at.pass(100);
    EXPECT_EQ(screen->smart_size->text(), "2 MB");
    EXPECT_EQ(screen->entries_label->text(), "3 files and folders are gone");
    EXPECT_DOUBLE_EQ(screen->progressView->stroke_end(), 0.4);
    at.context.removal.progress.bytes = 0;
    at.context.removal.progress.entries = 0;
    hold.release();
    at.settle();
    EXPECT_EQ(screen->smart_item->text(), "Cleanup complete...");
    EXPECT_EQ(screen->smart_size->text(), "Done");
    at.pass(1500);
    ASSERT_NE(chosen.cleaned(), nullptr);
    EXPECT_EQ(chosen.cleaned()->was_cleaned_size->text(), "5 MB");
  }
}

TEST(SmartCleanupViewController, stops_when_it_is_told_to_and_tells_what_stayed) {
  for (const bool by_window : {false, true}) {
    SCOPED_TRACE(by_window);
    Chosen chosen;
    TestWindow& at = chosen.at;
    Hold hold(at.background);
    auto* screen = chosen.begin();
    if (by_window) {
      EXPECT_FALSE(at.window()->close());
      auto* question = at.card<StopRemoval>();
      ASSERT_NE(question, nullptr);
      EXPECT_EQ(QApplication::focusWidget(), question->go_on_button);
      EXPECT_FALSE(at.window()->close()) << "it asks once";
      question->go_on_button->click();
      EXPECT_FALSE(at.context.removal.stopped || at.card() != nullptr);
      EXPECT_FALSE(at.window()->close());
      at.card<StopRemoval>()->stop_button->click();
    } else {
      EXPECT_EQ(QApplication::focusWidget(), screen->stop_button);
      QTest::keyClick(screen->stop_button, Qt::Key_Escape);
    }
    EXPECT_EQ(screen->smart_item->text(), "Stopping…");
    hold.release();
    at.settle();
    ASSERT_NE(chosen.cleaned(), nullptr) << "told at once";
    EXPECT_EQ(chosen.cleaned()->was_cleaned_size->text(), "Zero KB");
    EXPECT_EQ(chosen.cleaned()->label->text(), "Nothing was removed");
    EXPECT_TRUE(chosen.cleaned()->imageview->isHidden());
    EXPECT_EQ(chosen.cleaned()->left_label->text(), "Stopped. 2 entries are still there");
    EXPECT_EQ(chosen.cleaned()->left_size->text(), "5 MB");
    EXPECT_EQ(chosen.total(), 0);
    EXPECT_TRUE(chosen.ada.tree.exists("ada/.Trash/x/y"));
    EXPECT_TRUE(at.window()->close()) << "nothing goes on any more";
  }
}

TEST(SmartCleanupViewController, counts_what_it_has_done_also_when_the_program_ends_before_it_is_told) {
  Chosen chosen;
  chosen.begin();
  chosen.at.close();
  chosen.at.background.finish();
  count_unseen_removal(chosen.at.context);
  EXPECT_EQ(chosen.total(), 5'000'000);
  count_unseen_removal(chosen.at.context);
  EXPECT_EQ(chosen.total(), 5'000'000) << "once";
}

TEST(CleanedViewController, lists_what_was_left_and_does_not_count_it) {
  Chosen chosen;
  TestWindow& at = chosen.at;
  chosen.cleaner.files.push_back(chosen.ada.url("elsewhere"));  // outside the grants
  chosen.cleaner.files.push_back(chosen.ada.url("ada/.Trash/gone already"));
  chosen.cleaner.files.push_back(chosen.ada.url("ada/Downloads"));
  chosen.ada.tree.file("ada/Downloads/d", 4'000'000);
  chosen.cleaner.wasCleaned = 9'000'001;
  chosen.begin();
  at.settle();
  at.pass(3500);
  const auto* cleaned = chosen.cleaned();
  ASSERT_NE(cleaned, nullptr);
  EXPECT_EQ(cleaned->was_cleaned_size->text(), "5 MB") << "less what is still there";
  EXPECT_EQ(cleaned->label->text(), "was cleaned");
  EXPECT_EQ(chosen.total(), 5'000'000);
  EXPECT_EQ(cleaned->left_label->text(), "2 entries were left");
  EXPECT_EQ(cleaned->left_size->text(), "4 MB");
  EXPECT_EQ(cleaned->findChildren<FreedView*>().size(), 1);
  cleaned->left_button->click();
  ASSERT_NE(at.card<NotRemovedPanel>(), nullptr);
  NotRemovedList& list = *at.card<NotRemovedPanel>()->list;
  const auto said = [&](int row) {
    return list.model()->index(row, 0).data(Qt::AccessibleTextRole).toString().toStdString();
  };
  ASSERT_EQ(list.model()->rowCount(), 2);
  EXPECT_EQ(said(0), chosen.ada.tree.path("elsewhere") + ": it lies outside the folders that you gave access to");
  EXPECT_EQ(said(1), "~/Downloads: it is never removed whole");
  list.setCurrentIndex(list.model()->index(1, 0));
  list.show_button->click();
  EXPECT_THAT(at.workspace.asked, testing::ElementsAre("reveal " + chosen.ada.tree.path("ada/Downloads")));
  list.copy_button->click();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), chosen.ada.tree.path("ada/Downloads"));
  list.setCurrentIndex(list.model()->index(0, 0));
  QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), chosen.ada.tree.path("elsewhere"));
}

}  // namespace
}  // namespace tarnby
