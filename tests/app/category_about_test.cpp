#include "app/junk/category_about.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "app/junk/select_browsers.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CategoryAbout, leads_to_the_look_of_its_folder_or_what_is_in_it_or_the_folder_itself) {
  struct Case {
    const char* type;
    std::string folder;
    bool tries_the_look;
  };
  const std::string library = "ada/Library/";
  const Case cases[] = {
      {"caches", library + "Caches", true},
      {"logs", library + "Logs", true},
      {"trash", "ada/.Trash", true},
      {"downloads", "ada/Downloads", true},
      {"mails", library + "Containers/com.apple.mail/Data/Library/Mail Downloads", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    TestPlatform user;
    TestWindow window(user);
    window.open_on_screen();
    const auto shown = [&] {
      window.workspace.asked.clear();
      window.context.sharedCleaner().clean_with_complete_handler([] {});
      CategoryAbout about(window.context, c.type);
      about.show_button->click();
      window.settle();
      return window.workspace.asked;
    };
    const auto reveal = [&](const std::string& path) { return ElementsAre("reveal " + user.tree.path(path)); };
    EXPECT_THAT(shown(), IsEmpty()) << "there is no such folder";
    user.tree.folder(c.folder);
    EXPECT_THAT(shown(), reveal(c.folder));
    user.tree.file(c.folder + "/x", 1);
    EXPECT_THAT(shown(), reveal(std::string_view(c.type) == "downloads" ? c.folder : c.folder + "/x"))
        << "downloads are never listed";
    std::filesystem::remove(user.tree.path(c.folder + "/x"));
    user.tree.file(c.folder + "/.DS_Store", 1).file(c.folder + "/a", 1);
    const std::string look = c.folder + (c.tries_the_look ? "/.DS_Store" : "/a");
    EXPECT_THAT(shown(), reveal(look));
  }
}

TEST(CategoryAbout, lets_browsers_and_large_files_be_chosen_instead) {
  TestPlatform user;
  TestWindow window(user);
  window.open_on_screen();
  int asked = 0;
  window.user.notifications.add_observer("show_large_files", [&] { ++asked; });
  CategoryAbout(window.context, "large-files").show_button->click();
  EXPECT_EQ(asked, 1);
  auto* browsers = new CategoryAbout(window.context, "browsers");
  browsers->put_into(window.widget());
  browsers->show();
  browsers->show_button->click();
  EXPECT_NE(window.card<SelectBrowsers>(), nullptr);
  EXPECT_THAT(window.workspace.asked, IsEmpty());
  EXPECT_EQ(CategoryAbout(window.context, "remainders").show_button, nullptr) << "they lie all over the home";
}

}  // namespace
}  // namespace tarnby
