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
  TestPlatform ada;
  const std::string bundle = "Applications/Editor.app";
  ada.application(bundle, "com.example.editor").tree.file(bundle + "/.hidden/a", 70'000).file(bundle + "/a", 5'000);
  ada.tree.file(library + "Preferences/com.example.editor.plist", 30).folder("elsewhere");
  ada.tree.link(library + "Caches/com.example.editor", "../../../elsewhere");
  const auto list_size = static_cast<std::int64_t>(ada.tree.read(bundle + "/Contents/Info.plist").size());
  const auto item = Application(ada.platform).application(ada.url(bundle));
  int calls = 0;
  item->calculate_application_size_with_complete_handler(ada.platform, [&] { ++calls; });
  EXPECT_EQ(item->app_size_in_bytes, 75'000 + list_size) << "the application with all that is in it";
  EXPECT_EQ(item->app_size, "75 KB");
  item->getfiles(ada.platform, [&] { ++calls; });
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

  TestPlatform ada;
  ada.application("Applications/tool.app", "com.apple.tool").tree.file(library + "Caches/com.apple.tool");
  ada.tree.file(library + "Caches/companyname");
  const auto tool = Application(ada.platform).application(ada.url("Applications/tool.app"));
  tool->getfiles(ada.platform, [] {});
  const auto shown = tool->listed_files();
  std::filesystem::remove_all(ada.tree.path("Applications/tool.app"));
  tool->find_removable_files(ada.platform);
  EXPECT_THAT(tool->listed_files(), IsSubsetOf(shown)) << "also for a record that was rewritten before";
  for (const Removal& removal : tool->remove_found_files(ada.platform)) EXPECT_FALSE(removal.error);
  EXPECT_FALSE(ada.tree.exists(library + "Caches/com.apple.tool"));

  ApplicationItem::init_with_label("Editor", {})->remove_files(ada.platform);
  EXPECT_TRUE(ada.tree.exists(library + "Caches/companyname")) << "and a record of nothing is nothing's";
}

}  // namespace
}  // namespace tarnby
