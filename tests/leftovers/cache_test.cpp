#include "leftovers/cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Paths = std::vector<std::string>;

struct Caches {
  explicit Caches(TestPlatform& ada) : inventory(ada.platform), cache(ada.platform, inventory) {}

  const Application inventory;
  Cache cache;
};

TEST(Cache, finds_applications_wherever_people_keep_them) {
  TestPlatform ada;
  const Paths found = {
      "Applications/A.app",
      "Applications/Utilities.app",
      "Applications/Vendor/B.app",
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
  const Paths passed_over = {
      "Applications/A.app/Contents/Helper.app",
      "Applications/Utilities/Terminal.app",
      "Applications/Utilities/Tools/Tool.app",
      "Applications/Vendor/Sub/Deep/TooDeep.app",
      "Applications/.Hidden.app",
      "ada/Downloads/sub/Below.app",
      "ada/Documents/.hidden/Hidden.app",
      "ada/Desktop/Capital.APP",
      "ada/Applications/sub/Below.app",
      "ada/Elsewhere.app",
      "ada/Library/Developer/Elsewhere.app",
  };
  for (const std::string& path : found) ada.application(path, "com.example." + path);
  for (const std::string& path : passed_over) ada.application(path, "com.example." + path);
  ada.tree.link("ada/Desktop/linked", "../Downloads").link("ada/Documents/x link.app", "F.app");
  ada.tree.folder("ada/Downloads/No identifier.app");

  Caches of(ada);
  const ApplicationItems items = of.cache.installed_applications();
  Paths urls = found;
  urls.insert(urls.begin() + 9, "ada/Documents/x link.app");
  urls.insert(urls.begin() + 6, "ada/Downloads/No identifier.app");
  EXPECT_THAT(ada.relative(of.cache.applications_urls), ElementsAreArray(urls)) << "what has no identifier, too";
  Paths described;
  for (const auto& item : items) described.push_back(ada.relative(item->url));
  EXPECT_THAT(described, ElementsAreArray(found)) << "only what has one";
  EXPECT_EQ(of.cache.bundles.size(), found.size());
}

TEST(Cache, of_applications_with_the_same_identifier_or_label_knows_the_last) {
  TestPlatform ada;
  ada.application("Applications/Same.app", "com.example.one")
      .application("Applications/V/Other.app", "com.example.two");
  ada.application("ada/Downloads/Same.app", "com.example.two");
  Caches of(ada);
  EXPECT_EQ(of.cache.installed_applications().size(), 3U);
  EXPECT_EQ(of.cache.bundles.at("com.example.two")->label, "Same");
  EXPECT_EQ(of.cache.names.at("Same")->bundle, "com.example.two");
  EXPECT_EQ(of.cache.names.size(), 2U);
  std::filesystem::remove_all(ada.tree.path("ada/Downloads"));
  of.cache.installed_applications();
  EXPECT_EQ(of.cache.bundles.at("com.example.two")->label, "Other") << "the maps are made anew";
}

struct Shown {
  std::string label;
  std::string image;
  std::string url;
  std::int64_t size;
  friend bool operator==(const Shown&, const Shown&) = default;
  friend void PrintTo(const Shown& item, std::ostream* out) {
    *out << item.label << " | " << item.image << " | " << item.url << " | " << item.size;
  }
};

std::vector<Shown> shown(const TestPlatform& ada, const CacheItems& items) {
  std::vector<Shown> rows;
  for (const auto& item : items) {
    const std::string kind = item->image.kind == Image::Kind::icon_of_path ? "icon of " : "";
    const std::string image = item->image ? kind + ada.relative(item->image.url) : "no image";
    rows.push_back({item->label, image, ada.relative(item->url), item->size});
  }
  return rows;
}

TEST(Cache, shows_each_cache_as_the_application_it_belongs_to) {
  const std::string icon = "Applications/Browser.app/Contents/Resources/App.icns";
  struct Case {
    const char* why;
    const char* file;
    Shown shown;
  };
  const std::string caches = "ada/Library/Caches/";
  const std::string containers = "ada/Library/Containers/";
  const std::string inside = "/Data/Library/Caches";
  const Case cases[] = {
      {"by its identifier", "Caches/com.example.browser/x", {"Browser", icon, caches + "com.example.browser", 7}},
      {"by its label", "Caches/Browser/x", {"Browser", icon, caches + "Browser", 7}},
      {"the identifier goes before the label",
       "Caches/com.example.plain/x",
       {"Plain", "no image", caches + "com.example.plain", 7}},
      {"a name that nobody has",
       "Caches/browser/x",
       {"browser", "icon of " + caches + "browser", caches + "browser", 7}},
      {"the name as the user sees it", "Caches/Browser.app/x", {"Browser", icon, caches + "Browser.app", 7}},
      {"a container by its identifier",
       "Containers/com.example.browser/Data/Library/Caches/x",
       {"Browser", icon, containers + "com.example.browser" + inside, 7}},
      {"a container never by its label",
       "Containers/Browser/Data/Library/Caches/x",
       {"Browser", "icon of " + containers + "Browser", containers + "Browser" + inside, 7}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    ada.application("Applications/Browser.app", BundleValues{"com.example.browser", {}, {}, "App", {}});
    ada.application("Applications/Plain.app", "com.example.plain");
    ada.application("Applications/com.example.plain.app", BundleValues{"com.example.other", {}, {}, "App", {}});
    ada.tree.file(icon).file(std::string("ada/Library/") + c.file, 7);
    Caches of(ada);
    EXPECT_THAT(shown(ada, of.cache.smart_caches()), ElementsAre(c.shown));
    EXPECT_EQ(of.cache.totalCacheSize, 7);
  }
}

TEST(Cache, takes_folders_with_content_only_sorted_by_label) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Caches/b/.hidden/deep/x", 5).file("ada/Library/Caches/b/In.app/y", 2);
  ada.tree.file("ada/Library/Caches/C/x", 1).file("ada/Library/Caches/a/x", 3);
  ada.tree.folder("ada/Library/Caches/empty/sub").file("ada/Library/Caches/zero/x", 0);
  ada.tree.file("ada/Library/Caches/.hidden/x", 100).file("ada/Library/Caches/file", 100);
  ada.tree.link("ada/Library/Caches/link", "C");
  ada.tree.file("ada/Library/Containers/B/Data/Library/Caches/x", 9).file("ada/Library/Containers/B/Data/x", 100);
  ada.tree.file("ada/Library/Containers/none/Data/Documents/x", 100);
  ada.tree.link("ada/Library/Containers/linked/Data/Library/Caches", "../../../../Caches/C");
  Caches of(ada);
  const auto rows = shown(ada, of.cache.smart_caches());
  const auto row = [](const std::string& label, const std::string& folder, const std::string& below, int size) {
    const std::string url = "ada/Library/" + folder + "/" + label;
    return Shown{label, "icon of " + url, url + below, size};
  };
  EXPECT_THAT(rows, ElementsAre(row("a", "Caches", "", 3), row("b", "Caches", "", 7),
                                row("B", "Containers", "/Data/Library/Caches", 9), row("C", "Caches", "", 1)));
  EXPECT_EQ(of.cache.totalCacheSize, 20);
  EXPECT_EQ(shown(ada, of.cache.cacheItems), rows);
}

TEST(Cache, counts_each_smart_search_anew_and_leaves_the_total_to_it) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Caches/a/x", 10);
  Caches of(ada);
  of.cache.smart_caches();
  of.cache.smart_caches();
  EXPECT_EQ(of.cache.totalCacheSize, 10);
  ada.tree.file("ada/Library/Caches/b/x", 5);
  bool answer = false;
  of.cache.caches([&](bool done) { answer = done; });
  EXPECT_TRUE(answer);
  EXPECT_EQ(of.cache.cacheItems.size(), 2U);
  EXPECT_EQ(of.cache.totalCacheSize, 10) << "the plain search does not count";
}

TEST(Cache, without_grants_finds_nothing) {
  TestPlatform ada(TestPlatform::Grants::none);
  ada.tree.file("ada/Library/Caches/a/x", 10);
  ada.application("Applications/A.app", "com.example.a");
  Caches of(ada);
  EXPECT_THAT(of.cache.smart_caches(), IsEmpty());
  EXPECT_THAT(of.cache.applications_urls, IsEmpty());
  EXPECT_EQ(of.cache.totalCacheSize, 0);
}

}  // namespace
}  // namespace tarnby
