#include "app/smart/smart_clean_view_controller.h"

#include <QMenu>

#include "app/cleaned/cleaned_view_controller.h"
#include "app/smart/about_panel.h"
#include "app/smart/smart_cleanup_view_controller.h"
#include "app/smart/warning_cleanup_view_controller.h"
#include "platform/settings_store.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;
using testing::ElementsAre;

/// A user with three logs, one cache and a trashed file, in front of what a scan has found.
class SmartCleanTest : public testing::Test {
 protected:
  void SetUp() override {
    user.tree.file(library + "Logs/alpha.log", 1000).file(library + "Logs/beta.log", 2000);
    user.tree.file(library + "Logs/gamma.log", 4000).file("ada/.Trash/thrown away", 8000);
    window.open_on_screen();
    window.scan();
    screen = window.screen<SmartCleanViewController>();
    ASSERT_NE(screen, nullptr);
    window.pass(1000);
  }

  QModelIndex group(int row) const { return screen->outlineview->model()->index(row, 0); }
  QModelIndex entry(int group_row, int row) const {
    return screen->outlineview->model()->index(row, 0, group(group_row));
  }
  std::string said(const QModelIndex& index) const {
    return index.data(Qt::AccessibleTextRole).toString().toStdString();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers with = {}) const {
    QTest::keyClick(QApplication::focusWidget(), key, with);
  }
  bool stored(const char* key) {
    window.settle();
    return AppSettings(*open_settings_file(user.url("settings/settings.plist"))).boolean(key);
  }

  static constexpr int logs = 1, trash = 6;
  const std::string library = "ada/Library/";
  TestPlatform user;
  TestWindow window{user};
  SmartCleanViewController* screen = nullptr;
};

TEST_F(SmartCleanTest, is_ticked_and_walked_by_keyboard_and_says_how_each_row_stands) {
  std::vector<std::string> about;
  for (const Category& category : smart_categories()) {
    const std::string name = "smart_clean_about_" + std::string(category.type);
    window.user.notifications.add_observer(name, [&about, name] { about.push_back(name); });
  }
  OutlineView* outline = screen->outlineview;
  ASSERT_EQ(QApplication::focusWidget(), outline);
  EXPECT_EQ(screen->size->text(), "15 KB");
  QApplication::setKeyboardInputInterval(60000);  // however slow this machine types
  QTest::keyClicks(outline, "applications l");
  EXPECT_EQ(outline->currentIndex(), group(logs));
  EXPECT_EQ(said(group(logs)), "Applications logs, 7 KB, ticked");
  press(Qt::Key_Return);
  EXPECT_TRUE(outline->isExpanded(group(logs)));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  press(Qt::Key_Space);
  EXPECT_EQ(said(entry(logs, 1)), "beta.log, 2 KB, not ticked");
  EXPECT_EQ(said(group(logs)), "Applications logs, 5 KB, partly ticked");
  EXPECT_EQ(screen->size->text(), "13 KB");
  press(Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_THAT(window.workspace.asked, ElementsAre("preview " + user.tree.path(library + "Logs/beta.log")));

  // The box of the group, which turns on before it turns off.
  const QRect cell = outline->visualRect(group(logs));
  const QPoint box =
      OutlineRow(group(logs), {0, cell.top(), outline->viewport()->width(), cell.height()}, outline->layoutDirection())
          .check.center();
  QTest::mouseClick(outline->viewport(), Qt::LeftButton, {}, box);
  EXPECT_EQ(said(group(logs)), "Applications logs, 7 KB, ticked");
  QTest::mouseClick(outline->viewport(), Qt::LeftButton, {}, box);
  EXPECT_EQ(said(group(logs)), "Applications logs, 7 KB, not ticked");
  EXPECT_EQ(said(entry(logs, 0)), "alpha.log, 1 KB, not ticked");
  EXPECT_EQ(screen->size->text(), "8 KB");
  EXPECT_THAT(about, ElementsAre("smart_clean_about_logs", "smart_clean_about_logs"))
      << "of groups only, each time the keyboard comes to one";
}

TEST_F(SmartCleanTest, tells_about_each_category_in_a_popover_that_goes_with_the_next_press) {
  for (int row = 0; row < 7; ++row) {
    screen->outlineview->setCurrentIndex(group(row));
    press(Qt::Key_F1);
    const auto* panel = window.card<AboutPanel>();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->accessibleName(), group(row).data().toString());
    EXPECT_FALSE(panel->accessibleDescription().isEmpty());
    const QWidget* popover = window.delegate.activePopover;
    EXPECT_EQ(popover, panel->parentWidget());
    if (row % 2 == 0) {
      press(Qt::Key_Escape);
    } else {
      QTest::mouseClick(window.delegate.activePopover, Qt::LeftButton, {}, {1, 1});
    }
    EXPECT_EQ(window.card(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), screen->outlineview);
  }
}

TEST_F(SmartCleanTest, shows_an_entry_by_its_menu) {
  screen->outlineview->setExpanded(group(trash), true);
  const auto ask = [&](const QModelIndex& index) {
    screen->outlineview->setCurrentIndex(index);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(screen->outlineview->viewport(), &event);
    return screen->cleanItemMenu->isVisible();
  };
  EXPECT_FALSE(ask(group(trash))) << "groups have none";
  ASSERT_TRUE(ask(entry(trash, 0)));
  for (QAction* action : screen->cleanItemMenu->actions()) action->trigger();
  screen->cleanItemMenu->close();
  const std::string path = user.tree.path("ada/.Trash/thrown away");
  EXPECT_THAT(window.workspace.asked, ElementsAre("reveal " + path, "preview " + path, "information " + path));
  screen->selectedRow = group(trash);
  for (QAction* action : screen->cleanItemMenu->actions()) action->trigger();
  EXPECT_EQ(window.workspace.asked.size(), 3U) << "a group lies nowhere";
}

TEST_F(SmartCleanTest, asks_before_it_removes_what_is_ticked) {
  screen->outlineview->setCurrentIndex(group(logs));
  screen->outlineview->setExpanded(group(logs), true);
  screen->select_item(entry(logs, 0), false);
  screen->remove_button->click();
  auto* warning = window.card<WarningCleanupViewController>();
  ASSERT_NE(warning, nullptr);
  EXPECT_EQ(warning->windowTitle(), "Remove 14 KB for good?");
  EXPECT_EQ(warning->accessibleDescription(), "3 entries do not go to the Trash and cannot be brought back.");
  EXPECT_EQ(screen->sheet_view_controller, warning);
  EXPECT_EQ(QApplication::focusWidget(), warning->cancel_button);
  QTest::mouseClick(warning->parentWidget(), Qt::LeftButton, {}, {1, 1});
  EXPECT_EQ(window.card(), warning) << "a press beside it is no answer";
  press(Qt::Key_Escape);
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_EQ(window.screen(), screen);

  screen->remove_button->click();
  warning = window.card<WarningCleanupViewController>();
  warning->dont_show_button->click();
  press(Qt::Key_Escape);
  EXPECT_FALSE(stored("SkipWarning") || stored("CleanupReady")) << "who cancels has not answered anything";
  screen->remove_button->click();
  warning = window.card<WarningCleanupViewController>();
  EXPECT_FALSE(warning->dont_show_button->isChecked());
  warning->cleanup_button->click();
  EXPECT_NE(window.screen<SmartCleanupViewController>(), nullptr);
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_TRUE(stored("CleanupReady"));
  EXPECT_FALSE(stored("SkipWarning"));
  EXPECT_EQ(window.engine->cleaner.wasCleaned, 14000);
  EXPECT_THAT(user.tree.listing(),
              testing::Not(testing::Contains(
                  testing::AnyOf(library + "Logs/beta.log", library + "Logs/gamma.log", "ada/.Trash/thrown away"))));
  EXPECT_TRUE(user.tree.exists(library + "Logs/alpha.log"));
}

TEST_F(SmartCleanTest, goes_on_without_asking_when_nothing_is_ticked_or_nobody_wants_to_be_asked) {
  window.user.settings.set_boolean("SkipWarning", true);
  screen->remove_button->click();
  EXPECT_NE(window.screen<SmartCleanupViewController>(), nullptr);
  EXPECT_EQ(window.engine->cleaner.files.size(), 4U);
  window.settle();
  window.pass(3500);
  const auto* cleaned = window.screen<CleanedViewController>();
  ASSERT_NE(cleaned, nullptr);
  EXPECT_FALSE(cleaned->left_button->isVisible()) << "nothing was left";
  EXPECT_EQ(QApplication::focusWidget(), cleaned->done_button);
  window.user.settings.set_boolean("SkipWarning", false);

  window.scan();
  screen = window.screen<SmartCleanViewController>();
  for (int row = 0; row < 7; ++row) screen->select_smart_outline_item(group(row), false);
  screen->ask_and_remove();
  EXPECT_NE(window.screen<SmartCleanupViewController>(), nullptr);
  EXPECT_EQ(window.card(), nullptr);
  EXPECT_TRUE(window.engine->cleaner.files.empty());
  EXPECT_EQ(window.engine->cleaner.wasCleaned, 0);
}

}  // namespace
}  // namespace tarnby
