#include <gmock/gmock.h>

#include <QMenu>
#include <filesystem>

#include "app/junk/large_files_view_controller.h"
#include "app/junk/media_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::HeldThread;
using test::TestPlatform;
using test::TestWindow;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t MB = 1'000'000;
const std::string mails = "ada/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/";

/// A home with large files in several places, in front of the page of media junk.
class LargeFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    user.tree.file("ada/Movies/long.mov", 600 * MB).file("ada/Movies/short.mov", 60 * MB);
    user.tree.file("ada/Notes/text.pdf", 20 * MB).file("ada/Old notes/text.pdf", 30 * MB);
    user.tree.file(mails + "1/holiday.zip", 90 * MB).file("ada/Downloads/Tool.app/Contents/x", 40 * MB);
    window.delegate.applicationDidFinishLaunching();
    window.open_on_screen();
    window.settle();
    window.context.sharedCleaner().clean_with_complete_handler([] {});
    window.post("page_controller");
    window.pass(1000);
  }

  void open() {
    window.widget()->findChild<MediaViewController*>()->show_large_files();
    sheet = window.card<LargeFilesViewController>();
    ASSERT_NE(sheet, nullptr);
  }
  void open_and_wait() {
    open();
    window.settle();
  }
  QModelIndex group(int row) const { return sheet->outlineview->model()->index(row, 0); }
  QModelIndex file(int group_row, int row) const {
    return sheet->outlineview->model()->index(row, 0, group(group_row));
  }
  /// Every file that is shown, with what stands beside it.
  std::vector<std::string> files() const {
    std::vector<std::string> shown;
    for (int group_row = 0; group_row < sheet->outlineview->model()->rowCount(); ++group_row) {
      for (int row = 0; row < sheet->outlineview->model()->rowCount(group(group_row)); ++row) {
        shown.push_back((file(group_row, row).data().toString() + " | " +
                         file(group_row, row).data(OutlineModel::note_role).toString())
                            .toStdString());
      }
    }
    return shown;
  }
  std::string selected() const { return sheet->selected_larges_label->text().toStdString(); }

  TestPlatform user;
  TestWindow window{user};
  LargeFilesViewController* sheet = nullptr;
};

TEST_F(LargeFilesTest, say_which_other_category_lists_them_and_where_those_of_one_name_lie) {
  open_and_wait();
  EXPECT_THAT(
      files(),
      ElementsAre("Tool.app | also in “Downloads” · ~/Downloads",
                  "holiday.zip | also in “Mail attachments” · ~/Library/Containers/com.apple.mail/Data/Library/"
                  "Mail Downloads/1",
                  "text.pdf | ~/Notes", "text.pdf | ~/Old notes", "long.mov | ~/Movies", "short.mov | ~/Movies"));
}

TEST_F(LargeFilesTest, are_shown_at_once_when_the_sheet_is_opened_again_but_not_those_that_are_gone) {
  open_and_wait();
  ASSERT_EQ(files().size(), 6U);
  sheet->cancel();
  window.pass(10);
  std::filesystem::remove(user.tree.path("ada/Movies/long.mov"));
  HeldThread busy(window.background);
  open();
  EXPECT_EQ(files().size(), 6U) << "what is known is there before anything else is done";
  EXPECT_TRUE(sheet->slider->isEnabled());
  sheet->select_file(file(3, 0), true);
  ASSERT_EQ(selected(), "Selected: 600 MB");
  busy.release();
  window.settle();
  EXPECT_EQ(files().size(), 5U);
  EXPECT_EQ(selected(), "Selected: Zero KB") << "nobody can choose what is gone";
  EXPECT_EQ(sheet->overall_larges_label->text(), "240 MB");
  EXPECT_FALSE(sheet->submitt_button->isEnabled());
}

TEST_F(LargeFilesTest, are_ticked_and_unticked_alone_and_by_their_kind) {
  open_and_wait();
  const auto state = [&](int row) { return group(row).data(Qt::CheckStateRole).value<Qt::CheckState>(); };
  sheet->select_file(file(3, 0), true);
  sheet->select_file(file(3, 1), true);
  EXPECT_EQ(selected(), "Selected: 660 MB");
  EXPECT_EQ(state(3), Qt::Checked);
  sheet->select_file(file(3, 0), false);
  EXPECT_EQ(selected(), "Selected: 60 MB");
  EXPECT_EQ(state(3), Qt::PartiallyChecked);
  EXPECT_EQ(sheet->selected_files.size(), 1U);
  sheet->select_file(file(3, 1), false);
  EXPECT_EQ(selected(), "Selected: Zero KB");
  EXPECT_FALSE(sheet->submitt_button->isEnabled());
  sheet->outlineview->setFocus();
  sheet->outlineview->setCurrentIndex(group(2));
  QTest::keyClick(sheet->outlineview, Qt::Key_Space);
  EXPECT_EQ(selected(), "Selected: 50 MB") << "both texts";
  sheet->outlineview->setCurrentIndex(file(3, 0));
  QTest::keyClick(sheet->outlineview, Qt::Key_Space);
  QTest::keyClick(sheet->outlineview, Qt::Key_Space);
  EXPECT_EQ(selected(), "Selected: 50 MB");
}

TEST_F(LargeFilesTest, that_are_chosen_while_the_category_is_off_count_as_a_whole) {
  std::vector<std::int64_t> changes;
  window.user.notifications.add_number_observer("update_ui_with_large_files_item_size",
                                                [&](std::int64_t change) { changes.push_back(change); });
  const auto choose = [&](const QModelIndex& chosen) {
    sheet->select_file(chosen, true);
    sheet->submit();
    window.pass(10);
  };
  open_and_wait();
  choose(file(3, 0));
  user.settings.set_boolean("LargeFiles", false);
  open_and_wait();
  EXPECT_EQ(sheet->chosen_label->text(), "Chosen before: 600 MB. A new choice takes its place.");
  choose(file(3, 1));
  EXPECT_TRUE(user.settings.boolean("LargeFiles"));
  open_and_wait();
  choose(file(3, 0));
  EXPECT_THAT(changes, ElementsAre(600 * MB, 60 * MB, 540 * MB)) << "the last one takes the place of the one before";
}

TEST_F(LargeFilesTest, of_which_none_is_large_enough_are_not_just_missing) {
  open_and_wait();
  sheet->slider->setValue(5);
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_TRUE(sheet->nothing_label->isVisible());
  EXPECT_EQ(sheet->nothing_label->text(), "Nothing here is as large as 1 GB");
  sheet->slider->setValue(1);
  EXPECT_FALSE(sheet->nothing_label->isVisible());
  EXPECT_EQ(files().size(), 6U);
}

TEST_F(LargeFilesTest, have_a_menu_and_nothing_happens_by_opening_it) {
  open_and_wait();
  sheet->outlineview->setCurrentIndex(file(0, 0));
  QTest::keyClick(sheet->outlineview, Qt::Key_F10, Qt::ShiftModifier);
  ASSERT_TRUE(sheet->file_menu->isVisible());
  EXPECT_THAT(window.workspace.asked, IsEmpty());
  for (QAction* action : sheet->file_menu->actions()) action->trigger();
  sheet->file_menu->close();
  const std::string path = user.tree.path("ada/Downloads/Tool.app");
  EXPECT_THAT(window.workspace.asked, ElementsAre("reveal " + path, "preview " + path, "information " + path));
}

TEST_F(LargeFilesTest, are_searched_until_the_search_is_stopped) {
  HeldThread search(window.background);
  open();
  EXPECT_EQ(sheet->cancel_button->text(), "Stop");
  EXPECT_TRUE(sheet->progress->isVisible());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(window.card(), nullptr);
  search.release();
  window.settle();
  open_and_wait();
  EXPECT_EQ(sheet->cancel_button->text(), "Cancel");
  EXPECT_EQ(files().size(), 6U);
}

}  // namespace
}  // namespace tarnby
