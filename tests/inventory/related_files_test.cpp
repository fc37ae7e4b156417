#include "inventory/related_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "inventory/application.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAre;
using testing::IsSubsetOf;

const std::string library = "ada/Library/";

TEST(RelatedFiles, have_their_sizes_beside_them) {
  TestPlatform user;
  const std::string bundle = "Applications/Editor.app";
  user.application(bundle, "com.example.editor").tree.file(bundle + "/.hidden/a", 70'000).file(bundle + "/a", 5'000);
  user.tree.file(library + "Preferences/com.example.editor.plist", 30).folder("elsewhere");
  user.tree.link(library + "Caches/com.example.editor", "../../../elsewhere");
  const auto list_size = static_cast<std::int64_t>(user.tree.read(bundle + "/Contents/Info.plist").size());
  const auto item = Application(user.platform).application(user.url(bundle));
  int calls = 0;
  item->calculate_application_size_with_complete_handler(user.platform, [&] { ++calls; });
  EXPECT_EQ(item->app_size_in_bytes, 75'000 + list_size) << "the application with all that is in it";
  EXPECT_EQ(item->app_size, "75 KB");
  item->getfiles(user.platform, [&] { ++calls; });
  EXPECT_EQ(calls, 2);
  using Size = std::variant<std::uint64_t, Url>;
  EXPECT_THAT(item->sizes, ElementsAre(Size(Url::text("Executables")), Size(std::uint64_t(5'000 + list_size)),
                                       Size(Url::text("Preferences")), Size(std::uint64_t{30}),
                                       Size(Url::text("Supportfiles")), Size(std::uint64_t{18})))
      << "of a folder what is visible in it, of a link its own length";
}

TEST(RelatedFiles, are_the_bundle_alone_without_grants_and_need_not_be_there_any_more) {
  TestPlatform nobody(TestPlatform::Grants::none);
  nobody.application("Applications/Editor.app", "com.example.editor");
  nobody.tree.file(library + "Caches/com.example.editor");
  const auto item = Application(nobody.platform).application(nobody.url("Applications/Editor.app"));
  item->getfiles(nobody.platform, [] {});
  EXPECT_THAT(item->listed_files(), ElementsAre(item->url));
  item->remove_files(nobody.platform);
  EXPECT_TRUE(nobody.tree.exists("Applications/Editor.app")) << "nothing outside the grants is removed";

  TestPlatform user;
  user.application("Applications/tool.app", "com.apple.tool").tree.file(library + "Caches/com.apple.tool");
  user.tree.file(library + "Caches/companyname");
  const auto tool = Application(user.platform).application(user.url("Applications/tool.app"));
  tool->getfiles(user.platform, [] {});
  const auto shown = tool->listed_files();
  std::filesystem::remove_all(user.tree.path("Applications/tool.app"));
  tool->find_removable_files(user.platform);
  EXPECT_THAT(tool->listed_files(), IsSubsetOf(shown)) << "also for a record that was rewritten before";
  for (const Removal& removal : tool->remove_found_files(user.platform)) EXPECT_FALSE(removal.error);
  EXPECT_FALSE(user.tree.exists(library + "Caches/com.apple.tool"));

  ApplicationItem::init_with_label("Editor", {})->remove_files(user.platform);
  EXPECT_TRUE(user.tree.exists(library + "Caches/companyname")) << "and a record of nothing is nothing's";
}

TEST(RelatedFiles, are_found_at_the_real_path_where_a_disk_has_a_link_to_its_var) {
  for (const bool right : {true, false}) {
    TestPlatform user;
    user.application("Applications/Database.app", "com.example.db");
    user.tree.link("disk/var", right ? "private/var" : user.tree.path("disk/private/var"));
    const std::vector<std::string> found = {"disk/private/var/folders/a1/T/com.example.db",
                                            "disk/private/var/run/com.example.db.pid",
                                            "disk/private/var/db/com.example.db"};
    for (const std::string& path : found) user.tree.file(path);
    user.tree.file("disk/private/var/db/other");
    ASSERT_TRUE(user.bookmarks.store(Grant::disk, user.url("disk")));
    user.settings.set_integer("AllowAny", 1);
    const auto item = Application(user.platform).application(user.url("Applications/Database.app"));
    item->getfiles(user.platform, [] {});
    auto shown = user.relative(item->listed_files());
    shown.erase(shown.begin());  // the application
    EXPECT_EQ(shown.empty(), !right) << "no other link is followed";
    if (!right) continue;
    EXPECT_EQ(shown, found);
    EXPECT_THAT(item->remove_files(user.platform), testing::Each(testing::Field(&Removal::error, std::error_code())));
    for (const std::string& path : found) EXPECT_FALSE(user.tree.exists(path)) << path;
    EXPECT_TRUE(user.tree.exists("disk/private/var/db/other"));
  }
}

/// What is shown of an application, and what a removal of it takes.
struct ShownAndRemoved {
  std::vector<std::string> shown;
  std::vector<std::string> removed;
};

ShownAndRemoved files_of(TestPlatform& user, const std::string& bundle) {
  const auto item = Application(user.platform).application(user.url(bundle));
  item->getfiles(user.platform, [] {});
  ShownAndRemoved files = {user.relative(item->listed_files()), {}};
  item->find_removable_files(user.platform);
  files.removed = user.relative(item->listed_files());
  return files;
}

TEST(RelatedFiles, that_others_may_need_are_shown_and_never_removed) {
  const std::string outlook = library + "Group Containers/UBF8T346G9.Office/Outlook";
  const std::string profile = library + "Group Containers/UBF8T346G9.Office/OutlookProfile.plist";
  const std::string team = library + "Group Containers/UBF8T346G9.Office";
  const std::string suite = library + "Containers/com.microsoft.Office365";
  struct Case {
    const char* why;
    std::string bundle;
    const char* identifier;
    std::string shared;
    bool is_shown = true;
    const char* beside = nullptr;
  };
  const Case cases[] = {
      {"mail", "Applications/Microsoft Outlook.app", "com.microsoft.Outlook", outlook},
      {"its profile, beside others", "Applications/Microsoft Outlook.app", "com.microsoft.Outlook", profile, true,
       "Applications/Microsoft Word.app"},
      {"the suite's", "Applications/Microsoft Word.app", "com.microsoft.Word", suite},
      {"the team's, with its last application", "Applications/Microsoft Word.app", "com.microsoft.Word", team},
      {"the team's, with one of several", "Applications/Microsoft Word.app", "com.microsoft.Word", team, false,
       "Applications/Microsoft Excel.app"},
      {"the folder around it", "Applications/Photo 1/Photo.app", "com.adobe.Photo", "Applications/Photo 1"},
      {"the same of others", "Applications/Photo 1/Photo.app", "com.example.Photo", "Applications/Photo 1", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    user.application(c.bundle, c.identifier).tree.file(outlook + "/mail", 1).file(profile, 1).file(suite + "/x", 1);
    if (c.beside) user.application(c.beside, "com.microsoft.other");
    const ShownAndRemoved files = files_of(user, c.bundle);
    EXPECT_EQ(testing::Matches(testing::Contains(c.shared))(files.shown), c.is_shown);
    EXPECT_THAT(files.removed, testing::Not(testing::Contains(c.shared)));
    EXPECT_THAT(files.removed, testing::Contains(c.bundle));
  }
}

}  // namespace
}  // namespace tarnby
