#include "app/parts/outline_view.h"

#include <QMenu>
#include <QScreen>

#include "app/smart/smart_clean_view_controller.h"
#include "app/smart/warning_cleanup_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;

/// A user with some logs and trashed files, in front of the outline of a smart scan with its logs open.
class OutlineViewTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"alpha", "beta", "gamma"}) user.tree.file(std::string("ada/Library/Logs/") + name, 1000);
    user.tree.file("ada/.Trash/thrown away", 8000);
    window.open_on_screen();
    window.scan();
    screen = window.screen<SmartCleanViewController>();
    ASSERT_NE(screen, nullptr);
    screen->outlineview->setAnimated(false);
    screen->show_items(group(logs));
    window.pass(1000);
    picture();
    window.settle();  // every icon is there
  }

  QModelIndex group(int row) const { return screen->outlineview->model()->index(row, 0); }
  QModelIndex entry(int group_row, int row) const {
    return screen->outlineview->model()->index(row, 0, group(group_row));
  }
  void press(Qt::Key key, Qt::KeyboardModifiers with = {}) const {
    QTest::keyClick(QApplication::focusWidget(), key, with);
  }
  /// What is on the screen, not what would be drawn now.
  QImage picture() {
    QCoreApplication::processEvents();
    return window.widget()->screen()->grabWindow(window.widget()->winId()).toImage();
  }
  /// How many pixels of a widget have changed between two pictures of the window.
  static int changed(const QImage& one, const QImage& other, const QWidget* where) {
    const QRect place(where->mapTo(where->window(), QPoint()), where->size());
    int count = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
      for (int x = place.left(); x <= place.right(); ++x) count += one.pixel(x, y) != other.pixel(x, y);
    }
    return count;
  }

  static constexpr int logs = 1;
  TestPlatform user;
  TestWindow window{user};
  SmartCleanViewController* screen = nullptr;
};

TEST_F(OutlineViewTest, leaves_nothing_of_its_focus_ring_where_the_keyboard_has_passed) {
  QWidget* rows = screen->outlineview->viewport();
  screen->outlineview->setCurrentIndex(group(0));
  press(Qt::Key_Down);
  picture();
  for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}) {
    press(key);
    const QImage seen = picture();
    rows->update();
    EXPECT_EQ(changed(seen, picture(), rows), 0) << "drawn anew it looks otherwise, after " << key;
  }
}

TEST_F(OutlineViewTest, opens_a_rows_menu_by_keyboard_and_shows_its_ring_again_when_that_is_closed) {
  OutlineView* outline = screen->outlineview;
  outline->setCurrentIndex(group(logs));
  press(Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_FALSE(screen->cleanItemMenu->isVisible()) << "groups have none";
  press(Qt::Key_Down);
  const QImage ringed = picture();
  press(Qt::Key_F10, Qt::ShiftModifier);
  ASSERT_TRUE(screen->cleanItemMenu->isVisible());
  EXPECT_EQ(screen->selectedRow, entry(logs, 0));
  QTest::keyClick(screen->cleanItemMenu, Qt::Key_Escape);
  ASSERT_FALSE(screen->cleanItemMenu->isVisible());
  window.widget()->activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == outline; }));
  EXPECT_EQ(changed(ringed, picture(), outline->viewport()), 0) << "the ring shows where the keyboard is";

  press(Qt::Key_Up);
  const QImage on_group = picture();
  press(Qt::Key_F1);
  ASSERT_NE(window.card(), nullptr);
  press(Qt::Key_Escape);
  window.pass(1000);
  EXPECT_EQ(changed(on_group, picture(), outline->viewport()), 0) << "and so after a card that lay over it";
}

TEST_F(OutlineViewTest, leaves_its_ring_out_for_who_uses_the_mouse_but_not_that_of_a_sheets_button) {
  QTest::mouseClick(screen->remove_button, Qt::LeftButton);
  const auto* warning = window.card<WarningCleanupViewController>();
  ASSERT_NE(warning, nullptr);
  EXPECT_TRUE(warning->cancel_button->shows_focus()) << "Enter presses it, and nothing else says so";
  press(Qt::Key_Escape);
  EXPECT_FALSE(screen->remove_button->shows_focus());
}

}  // namespace
}  // namespace tarnby
