#include "app/access/sandbox_view_controller.h"

#include "app/home/home_view_controller.h"
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

TEST(SandboxViewController, takes_both_folders_in_either_order_and_goes_home) {
  struct Pick {
    Grant grant;
    PushButton* SandboxViewController::*button;
    const char* folder;
    const char* wrong;
  };
  Pick home = {Grant::home, &SandboxViewController::allowHome, "ada", "Shared"};
  Pick applications = {Grant::applications, &SandboxViewController::allowApps, "ada/Applications", "ada/applications"};
  for (const auto& order : {std::vector{home, applications}, std::vector{applications, home}}) {
    TestPlatform ada(Grants::none);
    ada.tree.folder("Shared").folder("ada/Applications").folder("ada/applications");
    TestWindow at(ada);
    const ViewController& content = at.open_on_screen();
    const auto curves = content.animationView->curves();
    auto* screen = at.screen<SandboxViewController>(Layer::overlay);
    ASSERT_NE(screen, nullptr);
    for (const Pick& pick : order) {
      PushButton* button = screen->*pick.button;
      button->click();
      EXPECT_EQ(at.chooser.asked_over, at.window());
      EXPECT_EQ(at.chooser.asked.title, "Allow access");
      EXPECT_EQ(at.chooser.asked.prompt, "Allow");
      EXPECT_EQ(at.chooser.asked.starting_folder,
                pick.grant == Grant::home ? ada.url("ada") : Url::file("/Applications"));
      at.chooser.answer(std::nullopt);
      EXPECT_EQ(stored(ada, pick.grant), Url());
      button->click();
      at.chooser.answer(ada.url(pick.wrong));
      EXPECT_EQ(stored(ada, pick.grant), ada.url(pick.wrong)) << "stored before it is looked at";
      EXPECT_TRUE(button->isEnabled());
      button->click();
      at.chooser.answer(ada.url(pick.folder));
      EXPECT_EQ(stored(ada, pick.grant), ada.url(pick.folder));
      EXPECT_FALSE(button->isEnabled());
      EXPECT_EQ(button->text(), "✓ Allowed");
      EXPECT_EQ(at.card(), nullptr) << "nobody is told off";
    }
    at.pass(290);
    EXPECT_TRUE(at.screen(Layer::overlay) != nullptr && at.screen() == nullptr);
    at.pass(10);
    EXPECT_TRUE(at.screen(Layer::overlay) == nullptr && at.screen<HomeViewController>() != nullptr);
    EXPECT_EQ(content.animationView->curves(), curves);
  }
}

TEST(SandboxViewController, shows_at_most_one_folder_as_allowed_from_the_beginning) {
  struct Case {
    const char* home;
    const char* applications;
    bool home_allowed;
    bool applications_allowed;
  };
  const Case cases[] = {{"", "", false, false},
                        {"ada", "", true, false},
                        {"", "Applications", false, true},
                        {"Shared", "Applications", false, true},
                        {"ada", "Shared", true, false},
                        {"ada", "Applications", true, false}};
  for (const Case& row : cases) {
    SCOPED_TRACE(std::string(row.home) + " " + row.applications);
    TestPlatform ada(Grants::none);
    ada.tree.folder("Shared");
    Bookmarks& bookmarks = ada.platform.bookmarks;
    const auto store = [&](Grant grant, std::string_view folder) {
      return folder.empty() || bookmarks.store(grant, ada.url(folder));
    };
    ASSERT_TRUE(store(Grant::home, row.home) && store(Grant::applications, row.applications));
    TestWindow at(ada);
    const SandboxViewController screen(at.context);
    EXPECT_EQ(screen.allowHome->isEnabled(), !row.home_allowed);
    EXPECT_EQ(screen.allowApps->isEnabled(), !row.applications_allowed);
  }
}

TEST(SandboxViewController, asks_of_the_other_folder_only_that_it_is_there_and_is_deaf_once_it_is_gone) {
  TestPlatform ada(Grants::none);
  ASSERT_TRUE(ada.platform.bookmarks.store(Grant::applications, ada.url("ada"))) << "a folder of another name";
  TestWindow at(ada);
  at.open();
  auto* screen = at.screen<SandboxViewController>(Layer::overlay);
  screen->info_text->click();
  EXPECT_THAT(at.workspace.asked, testing::ElementsAre("open help/folder-access.html"));
  screen->allow_home();
  at.chooser.answer(ada.url("ada"));
  at.pass(300);
  EXPECT_NE(at.screen<HomeViewController>(), nullptr) << "the launch does not ask for more";
  at.chooser.answer(ada.url("Applications"));
  EXPECT_EQ(ada.platform.bookmarks.resolve(Grant::home), ada.url("ada")) << "an answer for a screen that is gone";
}

}  // namespace
}  // namespace tarnby
