#include "app/access/sandbox_view_controller.h"

#include <QLabel>
#include <QMenuBar>
#include <filesystem>

#include "app/access/folder_card.h"
#include "app/home/home_view_controller.h"
#include "app/shell/engine_objects.h"
#include "platform/settings_store.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::Layer;
using test::TestPlatform;
using test::TestWindow;

using Grants = TestPlatform::Grants;

/// What the settings file holds for a grant.
Url stored(TestPlatform& ada, Grant grant) {
  const auto file = open_settings_file(ada.url("settings/settings.plist"));
  GrantedFolders granted;
  return Bookmarks(*file, granted).resolve(grant);
}

/// The access screen of a window, and somebody who picks folders on it.
struct Asked {
  explicit Asked(TestWindow& window) : at(window), screen(*window.screen<SandboxViewController>(Layer::overlay)) {}

  void pick(Grant grant, std::string_view folder) {
    button(grant)->click();
    at.chooser.answer(at.ada.url(folder));
    at.settle();
  }
  PushButton* button(Grant grant) const { return grant == Grant::home ? screen.allowHome : screen.allowApps; }
  /// What the card says, with paths of the test's own tree.
  std::string says(Grant grant) const {
    const FolderCard* shown = grant == Grant::home ? screen.home_card : screen.applications_card;
    return shown->state->text().toStdString();
  }

  TestWindow& at;
  SandboxViewController& screen;
};

TEST(SandboxViewController, ends_once_both_folders_are_right_in_whatever_order_and_after_whatever_wrong_ones) {
  struct Pick {
    Grant grant;
    const char* right;
    std::vector<const char*> wrong;
  };
  const Pick home = {Grant::home, "ada", {"Shared"}};
  const Pick applications = {Grant::applications, "Applications", {"ada/applications", "empty/Applications"}};
  for (const auto& order : {std::vector{home, applications}, std::vector{applications, home}}) {
    TestPlatform ada(Grants::none);
    ada.tree.folder("Shared").folder("ada/applications").folder("empty/Applications/Empty");
    TestWindow at(ada);
    const ViewController& content = at.open_on_screen();
    const auto curves = content.animationView->curves();
    const Asked asked(at);
    for (const Pick& pick : order) {
      PushButton* button = asked.button(pick.grant);
      button->click();
      EXPECT_EQ(at.chooser.asked_over, at.window());
      EXPECT_EQ(at.chooser.asked.title, "Allow access");
      EXPECT_EQ(at.chooser.asked.prompt, "Allow");
      EXPECT_EQ(at.chooser.asked.starting_folder,
                pick.grant == Grant::home ? ada.url("ada") : Url::file("/Applications"));
      at.chooser.answer(std::nullopt);
      at.settle();
      EXPECT_EQ(stored(ada, pick.grant), Url());
    }
    for (const Pick& pick : order) {
      Asked(at).pick(pick.grant, pick.wrong.front());
      EXPECT_EQ(stored(ada, pick.grant), ada.url(pick.wrong.front())) << "stored before it is looked at";
    }
    for (const Pick& pick : order) {
      for (const char* wrong : pick.wrong) {
        Asked(at).pick(pick.grant, wrong);
        EXPECT_TRUE(asked.button(pick.grant)->isEnabled()) << wrong;
        EXPECT_THAT(asked.says(pick.grant), testing::HasSubstr("ick ")) << wrong << ": which folder is meant";
      }
      at.pass(1000);
      ASSERT_EQ(at.screen(), nullptr) << "a wrong folder was taken";
      Asked(at).pick(pick.grant, pick.right);
      EXPECT_EQ(stored(ada, pick.grant), ada.url(pick.right));
      EXPECT_FALSE(asked.button(pick.grant)->isEnabled());
      EXPECT_EQ(asked.button(pick.grant)->text(), "✓ Allowed");
    }
    at.pass(290);
    EXPECT_TRUE(at.screen(Layer::overlay) != nullptr && at.screen() == nullptr);
    at.pass(10);
    EXPECT_TRUE(at.screen(Layer::overlay) == nullptr && at.screen<HomeViewController>() != nullptr);
    EXPECT_EQ(content.animationView->curves(), curves);
  }
}

TEST(SandboxViewController, shows_how_each_stored_folder_stands) {
  struct Case {
    const char* home;
    const char* applications;
    bool asks_for_home;
    bool asks_for_applications;
    std::string home_says;
    std::string applications_say;
  };
  const Case cases[] = {
      {"", "", true, true, "HOME", ""},
      {"ada", "", false, true, "HOME", ""},
      {"", "Applications", true, false, "HOME", "APPS"},
      {"Shared", "Applications", true, false, "SHARED is another folder. Pick your home folder: HOME", "APPS"},
      {"ada", "Shared", false, true, "HOME", "SHARED is another folder. Pick the one named “Applications”."},
      {"ada", "x/Applications", false, true, "HOME",
       "No application is in EMPTY. Pick the folder “Applications” that holds yours."},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::string(row.home) + " " + row.applications);
    TestPlatform ada(Grants::none);
    ada.tree.folder("Shared").folder("x/Applications");
    const auto store = [&](Grant grant, std::string_view folder) {
      return folder.empty() || ada.bookmarks.store(grant, ada.url(folder));
    };
    ASSERT_TRUE(store(Grant::home, row.home) && store(Grant::applications, row.applications));
    TestWindow at(ada);
    at.open();
    ASSERT_NE(at.screen<SandboxViewController>(Layer::overlay), nullptr) << "also at a launch";
    const Asked asked(at);
    EXPECT_EQ(asked.screen.allowHome->isEnabled(), row.asks_for_home);
    EXPECT_EQ(asked.screen.allowApps->isEnabled(), row.asks_for_applications);
    EXPECT_TRUE(asked.screen.done_button->isHidden()) << "it ends by itself";
    const auto expected = [&](std::string words) {
      for (const auto& [name, folder] : {std::pair("HOME", "ada"), std::pair("APPS", "Applications"),
                                         std::pair("SHARED", "Shared"), std::pair("EMPTY", "x/Applications")}) {
        const auto place = words.find(name);
        if (place == std::string::npos) continue;
        const QString path = QString::fromStdString(ada.tree.path(folder));
        words.replace(place, std::strlen(name), asked.screen.home_card->line_of(path).toStdString());
      }
      return words;
    };
    EXPECT_EQ(asked.says(Grant::home), expected(row.home_says));
    EXPECT_EQ(asked.says(Grant::applications), expected(row.applications_say));
  }
}

TEST(SandboxViewController, is_deaf_once_it_is_gone) {
  TestPlatform ada(Grants::none);
  TestWindow at(ada);
  at.open();
  const Asked asked(at);
  asked.screen.info_text->click();
  EXPECT_THAT(at.workspace.asked, testing::ElementsAre("open help/folder-access.html"));
  asked.screen.allow_home();
  at.post("sandbox_end_anim_complete");
  at.chooser.answer(ada.url("ada"));
  at.settle();
  EXPECT_EQ(ada.bookmarks.resolve(Grant::home), Url()) << "an answer for a screen that is gone";
}

TEST(SandboxViewController, asks_for_the_home_alone_where_no_applications_folder_belongs_to_it) {
  TestPlatform ada(Grants::none);
  ada.tree.folder("ada/.config").folder("ada/Library/Books");
  TestWindow at(ada);
  at.open();
  const Asked asked(at);
  EXPECT_TRUE(asked.screen.allowApps->isEnabled()) << "nobody looks into a home that was not given";
  Asked(at).pick(Grant::home, "ada");
  EXPECT_EQ(asked.says(Grant::applications), "Not needed for this home folder");
  at.pass(300);
  EXPECT_NE(at.screen<HomeViewController>(), nullptr);
  at.close();
  at.open();
  EXPECT_NE(at.screen<HomeViewController>(), nullptr) << "the next launch begins there";

  ada.tree.folder("ada/Library/Caches");
  at.close();
  at.open();
  EXPECT_EQ(at.screen<HomeViewController>(), nullptr) << "what is in there belongs to applications";
}

TEST(SandboxViewController, comes_back_from_the_menu_and_what_was_changed_there_is_what_is_scanned) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Caches/old/x", 1000).file("disk/ada/Library/Caches/new/x", 2000).folder("Shared");
  TestWindow at(ada);
  EngineObjects objects(ada.platform);
  at.context.sharedCleaner = [&]() -> Cleaner& { return objects.cleaner(); };
  at.context.renew_grants = [&] { objects.renew_grants(); };
  at.open_on_screen();
  EXPECT_EQ(objects.cleaner().url_home, ada.url("ada"));
  QAction* entry = nullptr;
  for (QAction* action : at.window()->findChildren<QAction*>()) {
    if (action->text() == "Folder access…") entry = action;
  }
  ASSERT_NE(entry, nullptr);
  at.context.removal.running = true;
  entry->trigger();
  EXPECT_EQ(at.screen(Layer::overlay), nullptr) << "not under the hands of a removal";
  at.context.removal.running = false;
  entry->trigger();
  const Asked asked(at);
  EXPECT_EQ(at.screen(), nullptr) << "in the place of the home screen";
  EXPECT_EQ(asked.screen.allowHome->text(), "Change…");
  EXPECT_TRUE(asked.screen.allowApps->isEnabled());

  Asked(at).pick(Grant::home, "Shared");
  EXPECT_THAT(asked.says(Grant::home), testing::HasSubstr("is another folder"));
  EXPECT_EQ(stored(ada, Grant::home), ada.url("ada")) << "the right one stays";
  Asked(at).pick(Grant::home, "disk/ada");
  at.pass(1000);
  EXPECT_EQ(at.screen(), nullptr) << "not before the person is done";
  asked.screen.done_button->click();
  at.pass(300);
  ASSERT_NE(at.screen<HomeViewController>(), nullptr);
  EXPECT_EQ(objects.cleaner().url_home, ada.url("disk/ada"));
  at.scan();
  ASSERT_FALSE(objects.cleaner().outlineCacheItem == nullptr);
  EXPECT_EQ(objects.cleaner().outlineCacheItem->size, 2000);
}

}  // namespace
}  // namespace tarnby
