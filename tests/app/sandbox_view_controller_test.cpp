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
Url stored(TestPlatform& user, Grant grant) {
  const auto file = open_settings_file(user.url("settings/settings.plist"));
  GrantedFolders granted;
  return Bookmarks(*file, granted).resolve(grant);
}

/// The access screen of a window, and somebody who picks folders on it.
struct Asked {
  explicit Asked(TestWindow& opened) : window(opened), screen(*opened.screen<SandboxViewController>(Layer::overlay)) {}

  void pick(Grant grant, std::string_view folder) {
    button(grant)->click();
    window.chooser.answer(window.user.url(folder));
    window.settle();
  }
  PushButton* button(Grant grant) const { return grant == Grant::home ? screen.allowHome : screen.allowApps; }
  /// What the card says, with paths of the test's own tree.
  std::string says(Grant grant) const {
    const FolderCard* shown = grant == Grant::home ? screen.home_card : screen.applications_card;
    return shown->state->text().toStdString();
  }

  TestWindow& window;
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
    TestPlatform user(Grants::none);
    user.tree.folder("Shared").folder("ada/applications").folder("empty/Applications/Empty");
    TestWindow window(user);
    const ViewController& content = window.open_on_screen();
    const auto curves = content.animationView->curves();
    const Asked asked(window);
    for (const Pick& pick : order) {
      PushButton* button = asked.button(pick.grant);
      button->click();
      EXPECT_EQ(window.chooser.asked_over, window.widget());
      EXPECT_EQ(window.chooser.asked.title, "Allow access");
      EXPECT_EQ(window.chooser.asked.prompt, "Allow");
      EXPECT_EQ(window.chooser.asked.starting_folder,
                pick.grant == Grant::home ? user.url("ada") : Url::file("/Applications"));
      window.chooser.answer(std::nullopt);
      window.settle();
      EXPECT_EQ(stored(user, pick.grant), Url());
    }
    for (const Pick& pick : order) {
      Asked(window).pick(pick.grant, pick.wrong.front());
      EXPECT_EQ(stored(user, pick.grant), user.url(pick.wrong.front())) << "stored before it is looked at";
    }
    for (const Pick& pick : order) {
      for (const char* wrong : pick.wrong) {
        Asked(window).pick(pick.grant, wrong);
        EXPECT_TRUE(asked.button(pick.grant)->isEnabled()) << wrong;
        EXPECT_THAT(asked.says(pick.grant), testing::HasSubstr("ick ")) << wrong << ": which folder is meant";
      }
      window.pass(1000);
      ASSERT_EQ(window.screen(), nullptr) << "a wrong folder was taken";
      Asked(window).pick(pick.grant, pick.right);
      EXPECT_EQ(stored(user, pick.grant), user.url(pick.right));
      EXPECT_FALSE(asked.button(pick.grant)->isEnabled());
      EXPECT_EQ(asked.button(pick.grant)->text(), "✓ Allowed");
    }
    window.pass(290);
    EXPECT_TRUE(window.screen(Layer::overlay) != nullptr && window.screen() == nullptr);
    window.pass(10);
    EXPECT_TRUE(window.screen(Layer::overlay) == nullptr && window.screen<HomeViewController>() != nullptr);
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
    TestPlatform user(Grants::none);
    user.tree.folder("Shared").folder("x/Applications");
    const auto store = [&](Grant grant, std::string_view folder) {
      return folder.empty() || user.bookmarks.store(grant, user.url(folder));
    };
    ASSERT_TRUE(store(Grant::home, row.home) && store(Grant::applications, row.applications));
    TestWindow window(user);
    window.open();
    ASSERT_NE(window.screen<SandboxViewController>(Layer::overlay), nullptr) << "also at a launch";
    const Asked asked(window);
    EXPECT_EQ(asked.screen.allowHome->isEnabled(), row.asks_for_home);
    EXPECT_EQ(asked.screen.allowApps->isEnabled(), row.asks_for_applications);
    EXPECT_TRUE(asked.screen.done_button->isHidden()) << "it ends by itself";
    const auto expected = [&](std::string words) {
      for (const auto& [name, folder] : {std::pair("HOME", "ada"), std::pair("APPS", "Applications"),
                                         std::pair("SHARED", "Shared"), std::pair("EMPTY", "x/Applications")}) {
        const auto place = words.find(name);
        if (place == std::string::npos) continue;
        const QString path = QString::fromStdString(user.tree.path(folder));
        words.replace(place, std::strlen(name), asked.screen.home_card->line_of(path).toStdString());
      }
      return words;
    };
    EXPECT_EQ(asked.says(Grant::home), expected(row.home_says));
    EXPECT_EQ(asked.says(Grant::applications), expected(row.applications_say));
  }
}

TEST(SandboxViewController, ignores_an_answer_that_comes_after_it_is_gone) {
  TestPlatform user(Grants::none);
  TestWindow window(user);
  window.open();
  const Asked asked(window);
  asked.screen.info_text->click();
  EXPECT_THAT(window.workspace.asked, testing::ElementsAre("open help/folder-access.html"));
  asked.screen.allow_home();
  window.post("sandbox_end_anim_complete");
  window.chooser.answer(user.url("ada"));
  window.settle();
  EXPECT_EQ(user.bookmarks.resolve(Grant::home), Url()) << "an answer for a screen that is gone";
}

TEST(SandboxViewController, asks_for_the_home_alone_where_no_applications_folder_belongs_to_it) {
  TestPlatform user(Grants::none);
  user.tree.folder("ada/.config").folder("ada/Library/Books");
  TestWindow window(user);
  window.open();
  const Asked asked(window);
  EXPECT_TRUE(asked.screen.applications_card->isHidden()) << "the home is all that there is to ask for";
  EXPECT_EQ(asked.screen.label->text(), "Allow access to your home folder");
  Asked(window).pick(Grant::home, "ada");
  window.pass(300);
  EXPECT_NE(window.screen<HomeViewController>(), nullptr);
  window.close();
  window.open();
  EXPECT_NE(window.screen<HomeViewController>(), nullptr) << "the next launch begins there";

  user.tree.folder("ada/Library/Caches");
  window.close();
  window.open();
  EXPECT_EQ(window.screen<HomeViewController>(), nullptr) << "what is in there belongs to applications";
}

TEST(SandboxViewController, comes_back_from_the_menu_and_what_was_changed_there_is_what_is_scanned) {
  TestPlatform user;
  user.tree.file("ada/Library/Caches/old/x", 1000).file("disk/ada/Library/Caches/new/x", 2000).folder("Shared");
  TestWindow window(user);
  EngineObjects objects(user.platform);
  window.context.sharedCleaner = [&]() -> Cleaner& { return objects.cleaner(); };
  window.context.renew_grants = [&] { objects.renew_grants(); };
  window.open_on_screen();
  EXPECT_EQ(objects.cleaner().url_home, user.url("ada"));
  QAction* entry = nullptr;
  for (QAction* action : window.widget()->findChildren<QAction*>()) {
    if (action->text() == "Folder access…") entry = action;
  }
  ASSERT_NE(entry, nullptr);
  window.context.removal.running = true;
  entry->trigger();
  EXPECT_EQ(window.screen(Layer::overlay), nullptr) << "not under the hands of a removal";
  window.context.removal.running = false;
  entry->trigger();
  const Asked asked(window);
  EXPECT_EQ(window.screen(), nullptr) << "in the place of the home screen";
  EXPECT_EQ(asked.screen.allowHome->text(), "Change…");
  EXPECT_TRUE(asked.screen.allowApps->isEnabled());

  Asked(window).pick(Grant::home, "Shared");
  EXPECT_THAT(asked.says(Grant::home), testing::HasSubstr("is another folder"));
  EXPECT_EQ(stored(user, Grant::home), user.url("ada")) << "the right one stays";
  Asked(window).pick(Grant::home, "disk/ada");
  window.pass(1000);
  EXPECT_EQ(window.screen(), nullptr) << "not before the person is done";
  asked.screen.done_button->click();
  window.pass(300);
  ASSERT_NE(window.screen<HomeViewController>(), nullptr);
  EXPECT_EQ(objects.cleaner().url_home, user.url("disk/ada"));
  window.scan();
  ASSERT_FALSE(objects.cleaner().outlineCacheItem == nullptr);
  EXPECT_EQ(objects.cleaner().outlineCacheItem->size, 2000);
}

}  // namespace
}  // namespace tarnby
