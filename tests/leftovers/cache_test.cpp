#include "leftovers/cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAreArray;

using Paths = std::vector<std::string>;

struct Caches {
  explicit Caches(TestPlatform& user) : inventory(user.platform), cache(user.platform, inventory) {}

  const Application inventory;
  Cache cache;
};

TEST(Cache, finds_applications_wherever_people_keep_them) {
  TestPlatform user;
  const Paths found = {
      "Applications/A.app",
      "Applications/Utilities.app",
      "Applications/Vendor/Sub/C.app",
      "Applications/Vendor/Utilities/D.app",  // Utilities is passed over at the first level only
      "ada/Downloads/E.app",
      "ada/Documents/F.app",
      "ada/Documents/F.app/Contents/Helper.app",  // a walk looks inside bundles
      "ada/Documents/deep/down/G.app",
      "ada/Desktop/deep/H.app",
      "ada/Applications/I.app",
      "ada/Library/Developer/Xcode/DerivedData/Build/J.app",
  };
  for (const std::string& path : found) user.application(path, "com.example." + path);
  for (const char* path : {"Applications/A.app/Contents/Helper.app", "Applications/Utilities/Tools/Tool.app",
                           "Applications/Vendor/Sub/Deep/TooDeep.app", "Applications/.Hidden.app",
                           "ada/Downloads/sub/Below.app", "ada/Documents/.hidden/Hidden.app", "ada/Desktop/Big.APP",
                           "ada/Applications/sub/Below.app", "ada/Elsewhere.app"}) {
    user.application(path, std::string("com.example.") + path);
  }
  user.tree.link("ada/Desktop/linked", "../Downloads").folder("ada/Downloads/No identifier.app");
  Caches search(user);
  Paths described;
  for (const auto& item : search.cache.installed_applications()) described.push_back(user.relative(item->url));
  EXPECT_THAT(described, ElementsAreArray(found));
  Paths urls = found;
  urls.insert(urls.begin() + 5, "ada/Downloads/No identifier.app");
  EXPECT_THAT(user.relative(search.cache.applications_urls), ElementsAreArray(urls)) << "what has no identifier, too";
}

TEST(Cache, shows_each_cache_as_the_application_it_belongs_to) {
  struct Case {
    const char* why;
    std::string folder;
    std::string label;
    /// Empty for the icon of the entry itself.
    std::string image;
  };
  const std::string icon = "Applications/Browser.app/Contents/Resources/App.icns";
  const std::string inside = "/Data/Library/Caches";
  const Case cases[] = {
      {"by its identifier", "Caches/com.example.browser", "Browser", icon},
      {"by its label", "Caches/Browser", "Browser", icon},
      {"the identifier goes before the label", "Caches/com.example.plain", "Plain", "no image"},
      {"the last application with an identifier", "Caches/com.example.twice", "Twice", "no image"},
      {"a name that nobody has", "Caches/browser", "browser", ""},
      {"the name as the user sees it", "Caches/Browser.app", "Browser", icon},
      {"a container by its identifier", "Containers/com.example.browser" + inside, "Browser", icon},
      {"a container never by its label", "Containers/Browser" + inside, "Browser", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    user.application("Applications/Browser.app", BundleValues{"com.example.browser", {}, {}, "App", {}});
    user.application("Applications/Plain.app", "com.example.plain");
    user.application("Applications/com.example.plain.app", BundleValues{"com.example.other", {}, {}, "App", {}});
    user.application("Applications/Once.app", "com.example.twice")
        .application("ada/Desktop/Twice.app", "com.example.twice");
    const std::string folder = "ada/Library/" + c.folder;
    user.tree.file(icon).file(folder + "/x", 7);
    Caches search(user);
    const CacheItems items = search.cache.smart_caches();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->label, c.label);
    EXPECT_EQ(user.relative(items[0]->url), folder);
    const Image& image = items[0]->image;
    const std::string own = folder.substr(0, folder.find(inside));
    EXPECT_EQ(image ? user.relative(image.url) : "no image", c.image.empty() ? own : c.image);
    EXPECT_EQ(image.kind == Image::Kind::icon_of_path, c.image.empty());
  }
}

TEST(Cache, restarts_its_total_with_each_smart_search_only) {
  TestPlatform user;
  user.tree.file("ada/Library/Caches/a/x", 10);
  Caches search(user);
  search.cache.smart_caches();
  search.cache.smart_caches();
  EXPECT_EQ(search.cache.totalCacheSize, 10);
  user.tree.file("ada/Library/Caches/b/x", 5);
  search.cache.caches([](bool done) { EXPECT_TRUE(done); });
  EXPECT_EQ(search.cache.cacheItems.size(), 2U);
  EXPECT_EQ(search.cache.totalCacheSize, 10) << "the plain search does not count";
}

}  // namespace
}  // namespace tarnby
