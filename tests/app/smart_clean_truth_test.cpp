#include <gmock/gmock.h>

#include "app/home/home_view_controller.h"
#include "app/parts/distinct_places.h"
#include "app/smart/nothing_found.h"
#include "app/smart/smart_clean_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;
using testing::ElementsAre;

TEST(DistinctPlaces, are_the_parts_of_paths_that_differ) {
  struct Case {
    std::vector<std::string> folders;
    std::vector<std::string> places;
  };
  const Case cases[] = {
      {{"~/Downloads", "~/Desktop"}, {"~/Downloads", "~/Desktop"}},
      {{"~/Library/Caches", "~/Library/Containers/a/Data/Library"},
       {"~/Library/Caches", "~/Library/Containers/a/Data/Library"}},
      {{"~/Library/Containers/a/Data/Library", "~/Library/Containers/b/Data/Library"}, {"…/a/…", "…/b/…"}},
      {{"~/Music/Box/one/deep", "~/Music/Box/two"}, {"…/one/deep", "…/two"}},
      {{"~/a/b/c", "~/a/b/c/d"}, {"…/c", "…/c/d"}},
      {{"~/a/b/c", "~/a/b/c"}, {"…/c", "…/c"}},
      {{"~", "/srv/x"}, {"~", "/srv/x"}},
  };
  for (const Case& c : cases) EXPECT_EQ(distinct_places(c.folders), c.places) << c.folders[0];
  EXPECT_TRUE(distinct_places({}).empty());
}

/// What a user sees of a smart scan of their home.
struct Scanned {
  explicit Scanned(const std::function<void(TestPlatform&)>& fill) {
    fill(user);
    window.open_on_screen();
    scan();
  }

  void scan() {
    window.scan();
    screen = window.screen<SmartCleanViewController>();
    ASSERT_NE(screen, nullptr);
  }
  QModelIndex group(int row) const { return screen->outlineview->model()->index(row, 0); }
  std::string told(const QModelIndex& index, int role) const { return index.data(role).toString().toStdString(); }
  /// Of each entry of a group: its name and what stands beside it.
  std::vector<std::string> entries(int group_row) const {
    std::vector<std::string> rows;
    for (int row = 0; row < screen->outlineview->model()->rowCount(group(group_row)); ++row) {
      const QModelIndex index = screen->outlineview->model()->index(row, 0, group(group_row));
      rows.push_back(told(index, Qt::DisplayRole) + " | " + told(index, OutlineModel::note_role));
    }
    return rows;
  }
  /// The number within the ring.
  std::string in_ring() const {
    return screen->chart->findChild<NumberLabel*>(QStringLiteral("chart_total"))->text().toStdString();
  }

  TestPlatform user;
  TestWindow window{user};
  SmartCleanViewController* screen = nullptr;
};

constexpr int caches = 0, logs = 1, remainders = 2, browsers = 3, mails = 4, installs = 5, trash = 6;

TEST(SmartClean, shows_the_same_sums_after_every_scan_of_a_launch) {
  Scanned scanned([](TestPlatform& user) {
    user.tree.file("ada/Library/Preferences/com.gone.tool.plist", 4000).file("ada/Library/Logs/a.log", 2000);
    user.tree.file("ada/Library/Saved Application State/com.gone.tool.savedState/x", 10'000);
  });
  for (int scan = 1; scan <= 3; ++scan) {
    SCOPED_TRACE(scan);
    EXPECT_EQ(scanned.told(scanned.group(remainders), OutlineModel::size_text_role), "14 KB");
    EXPECT_EQ(scanned.screen->size->text(), "16 KB");
    EXPECT_EQ(scanned.in_ring(), "16 KB");
    scanned.screen->select_smart_outline_item(scanned.group(remainders), false);
    EXPECT_EQ(scanned.told(scanned.group(remainders), OutlineModel::size_text_role), "14 KB");
    EXPECT_EQ(scanned.in_ring() + scanned.screen->size->text().toStdString(), "2 KB2 KB");
    scanned.window.post("home_view_controller");
    scanned.scan();
  }
}

TEST(SmartClean, tells_entries_of_one_name_apart) {
  Scanned scanned([](TestPlatform& user) {
    user.tree.file("ada/Library/Preferences/com.gone.tool.plist", 4)
        .file("ada/Library/Preferences/org.gone.tool.plist", 4);
    user.tree.file("ada/Downloads/Setup.dmg", 5).file("ada/Desktop/Setup.dmg", 6).file("ada/Desktop/Other.dmg", 7);
  });
  EXPECT_THAT(scanned.entries(remainders), ElementsAre("Tool by Gone | com.gone.tool", "Tool by Gone | org.gone.tool"));
  EXPECT_THAT(scanned.entries(installs),
              ElementsAre("Other.dmg | ", "Setup.dmg | ~/Downloads", "Setup.dmg | ~/Desktop"));
}

TEST(SmartClean, shows_no_box_where_nothing_is_listed_and_removes_nothing_when_nothing_is_ticked) {
  Scanned scanned([](TestPlatform& user) { user.tree.file("ada/Library/Logs/a.log", 2000).folder("ada/Downloads"); });
  for (const int empty : {caches, remainders, browsers, mails, installs, trash}) {
    EXPECT_FALSE(scanned.group(empty).data(Qt::CheckStateRole).isValid()) << empty;
    EXPECT_EQ(scanned.told(scanned.group(empty), OutlineModel::note_role), "everything is clean") << empty;
    EXPECT_THAT(scanned.told(scanned.group(empty), Qt::AccessibleTextRole), testing::EndsWith(", everything is clean"));
  }
  EXPECT_EQ(scanned.told(scanned.group(logs), OutlineModel::note_role), "");
  EXPECT_TRUE(scanned.screen->remove_button->isEnabled());
  scanned.screen->select_smart_outline_item(scanned.group(logs), false);
  EXPECT_FALSE(scanned.screen->remove_button->isEnabled());
  scanned.screen->select_smart_outline_item(scanned.group(logs), true);
  EXPECT_TRUE(scanned.screen->remove_button->isEnabled());
}

TEST(SmartClean, says_why_there_is_nothing_in_words_that_are_true_for_the_home) {
  struct Case {
    const char* home;
    std::function<void(TestPlatform&)> fill;
    const char* title;
    const char* part;
  };
  const Case cases[] = {
      {"after a clean",
       [](TestPlatform& user) {
         const std::string groups = "ada/Library/Group Containers/";
         user.tree.folder("ada/Library/Logs").folder("ada/Downloads");
         user.tree.folder(groups + "2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/General");
       },
       "There is nothing to remove", "Everything is clean."},
      {"empty", [](TestPlatform&) {}, "There is nothing here yet", "“ada” is empty"},
      {"another folder", [](TestPlatform& user) { user.tree.file("ada/song.mp3", 10); }, "There was nothing to look at",
       "If it is not your home folder"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.home);
    Scanned scanned(c.fill);
    const auto* nothing = scanned.screen->findChild<NothingFound*>();
    ASSERT_NE(nothing, nullptr);
    EXPECT_EQ(nothing->title->text(), c.title);
    EXPECT_THAT(nothing->words->text().toStdString(), testing::HasSubstr(c.part));
    EXPECT_EQ(nothing->geometry(), scanned.screen->rect()) << "in the middle of all there is";
    EXPECT_FALSE(scanned.screen->outlineview->isVisible() || scanned.screen->remove_button->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), nothing->done_button);
    nothing->done_button->click();
    EXPECT_NE(scanned.window.screen<HomeViewController>(), nullptr);
  }
}

TEST(SmartClean, calls_no_group_clean_of_which_something_was_not_seen) {
  Scanned scanned([](TestPlatform& user) { user.tree.folder("ada/Library/Logs"); });  // and nowhere for installers
  EXPECT_EQ(scanned.screen->findChild<NothingFound*>(), nullptr);
  EXPECT_TRUE(scanned.screen->app_title->isVisible());
  EXPECT_EQ(scanned.told(scanned.group(installs), OutlineModel::note_role),
            "Not looked for: none of its places is in ada");
  EXPECT_TRUE(scanned.group(installs).data(OutlineModel::alarm_role).toBool());
  EXPECT_EQ(scanned.told(scanned.group(logs), OutlineModel::note_role), "everything is clean");
  EXPECT_FALSE(scanned.group(logs).data(OutlineModel::alarm_role).toBool());
}

TEST(SmartClean, counts_once_what_two_groups_list) {
  Scanned scanned([](TestPlatform& user) {
    user.tree.file("ada/Library/Caches/com.gone.tool/x", 24'000).file("ada/Library/Logs/a.log", 2000);
  });
  EXPECT_EQ(scanned.told(scanned.group(caches), OutlineModel::size_text_role), "24 KB");
  EXPECT_EQ(scanned.told(scanned.group(remainders), OutlineModel::size_text_role), "24 KB");
  EXPECT_EQ(scanned.screen->size->text(), "26 KB");
  EXPECT_EQ(scanned.screen->counted_once->text(), "What is listed twice is counted once: 24 KB less.");
  scanned.screen->select_item(scanned.screen->outlineview->model()->index(0, 0, scanned.group(caches)), false);
  EXPECT_EQ(scanned.screen->size->text(), "26 KB") << "it still goes, as a leftover";
  EXPECT_EQ(scanned.screen->counted_once->text(), "");
  scanned.screen->select_smart_outline_item(scanned.group(remainders), false);
  EXPECT_EQ(scanned.screen->size->text(), "2 KB");
  scanned.screen->select_smart_outline_item(scanned.group(caches), true);
  EXPECT_EQ(scanned.in_ring() + scanned.screen->size->text().toStdString(), "26 KB26 KB");
}

}  // namespace
}  // namespace tarnby
