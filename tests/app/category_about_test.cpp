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
    TestPlatform ada;
    TestWindow at(ada);
    at.open_on_screen();
    const auto shown = [&] {
      at.workspace.asked.clear();
      at.context.sharedCleaner().clean_with_complete_handler([] {});
      CategoryAbout about(at.context, c.type);
      about.show_button->click();
      at.settle();
      return at.workspace.asked;
    };
    const auto reveal = [&](const std::string& path) { return ElementsAre("reveal " + ada.tree.path(path)); };
    EXPECT_THAT(shown(), IsEmpty()) << "there is no such folder";
    ada.tree.folder(c.folder);
    EXPECT_THAT(shown(), reveal(c.folder));
    ada.tree.file(c.folder + "/x", 1);
    EXPECT_THAT(shown(), reveal(std::string_view(c.type) == "downloads" ? c.folder : c.folder + "/x"))
        << "downloads are never listed";
    std::filesystem::remove(ada.tree.path(c.folder + "/x"));
    ada.tree.file(c.folder + "/.DS_Store", 1).file(c.folder + "/a", 1);
    const std::string look = c.folder + (c.tries_the_look ? "/.DS_Store" : "/a");
    EXPECT_THAT(shown(), reveal(look));
  }
}

TEST(CategoryAbout, lets_browsers_and_large_files_be_chosen_instead) {
  TestPlatform ada;
  TestWindow at(ada);
  at.open_on_screen();
  int asked = 0;
  at.ada.notifications.add_observer("show_large_files", [&] { ++asked; });
  CategoryAbout(at.context, "large-files").show_button->click();
  EXPECT_EQ(asked, 1);
  auto* browsers = new CategoryAbout(at.context, "browsers");
  browsers->put_into(at.window());
  browsers->show();
  browsers->show_button->click();
  EXPECT_NE(at.card<SelectBrowsers>(), nullptr);
  EXPECT_THAT(at.workspace.asked, IsEmpty());
  EXPECT_EQ(CategoryAbout(at.context, "remainders").show_button, nullptr) << "they lie all over the home";
}

}  // namespace
}  // namespace tarnby
