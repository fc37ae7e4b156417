#include "leftovers/remainders.h"

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
using testing::UnorderedElementsAreArray;

using Paths = std::vector<std::string>;

struct Leftovers {
  explicit Leftovers(TestPlatform& ada)
      : inventory(ada.platform), cache(ada.platform, inventory), remainders(ada.platform, cache) {}

  /// As a smart scan does it: the caches first.
  RemainderItems search() {
    cache.smart_caches();
    return remainders.smart_remianders();
  }

  const Application inventory;
  Cache cache;
  Remainders remainders;
};

std::string in_library(const std::string& path) {
  return "ada/Library/" + path;
}

TEST(Remainders, takes_names_that_look_like_identifiers_and_that_nobody_owns) {
  struct Case {
    const char* why;
    const char* entry;
    /// The identifier it stands for, empty when it is no leftover.
    const char* orphan;
  };
  const Case cases[] = {
      {"a cache", "Caches/com.gone.tool", "com.gone.tool"},
      {"a container", "Containers/com.gone.tool", "com.gone.tool"},
      {"scripts", "Application Scripts/com.gone.tool", "com.gone.tool"},
      {"saved state", "Saved Application State/com.gone.tool.savedState", "com.gone.tool"},
      {"saved state ends at the first .savedState", "Saved Application State/com.gone.tool.savedState.savedState",
       "com.gone.tool"},
      {"saved state without the suffix has no name", "Saved Application State/com.gone.tool", ""},
      {"its letter case counts", "Saved Application State/com.gone.tool.savedstate", ""},
      {"preferences lose their extension", "Preferences/com.gone.tool.plist", "com.gone.tool"},
      {"whatever it is", "Preferences/com.gone.tool.app", "com.gone.tool"},
      {"and only one of them", "Preferences/com.gone.tool.plist.lock", "com.gone.tool.plist"},
      {"so that too little may be left", "Preferences/com.gone.tool", ""},
      {"a dot at the end is no extension", "Preferences/com.gone.", "com.gone."},
      {"the same ending is kept elsewhere", "Caches/com.gone.tool.plist", "com.gone.tool.plist"},
      {"two parts are too few", "Caches/gone.tool", ""},
      {"one is", "Containers/Tool", ""},
      {"empty parts count", "Caches/gone..tool", "gone..tool"},
      {"hidden entries are no leftovers", "Caches/.com.gone.tool", ""},
      {"the system's", "Caches/com.apple.tool", ""},
      {"its name anywhere", "Caches/com.pineapple.tool", ""},
      {"the name with a capital is somebody else's", "Caches/com.Apple.tool", "com.Apple.tool"},
      {"an installed application's", "Caches/com.here.tool", ""},
      {"its preferences", "Preferences/com.here.tool.plist", ""},
      {"its saved state", "Saved Application State/com.here.tool.savedState", ""},
      {"a longer name is another one", "Containers/com.here.tool.helper", "com.here.tool.helper"},
      {"a shorter one, too", "Containers/com.here.too", "com.here.too"},
      {"letter case counts when owning", "Caches/com.here.Tool", "com.here.Tool"},
      {"support files are not looked at", "Application Support/com.gone.tool", ""},
      {"no folder is needed", "Caches/com.gone.file.db", "com.gone.file.db"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    ada.application("Applications/Tool.app", "com.here.tool");
    ada.tree.file(in_library(c.entry), 3);
    Leftovers of(ada);
    const RemainderItems items = of.search();
    const bool is_leftover = *c.orphan != '\0';
    ASSERT_EQ(items.size(), is_leftover ? 1 : 0);
    EXPECT_EQ(of.remainders.remianders().size(), items.size()) << "both searches agree";
    EXPECT_EQ(of.remainders.totalRemaidersSize, is_leftover ? 3 : 0);
    if (!is_leftover) continue;
    EXPECT_EQ(items.front()->bundle, c.orphan);
    EXPECT_EQ(items.front()->size, 3);
    EXPECT_THAT(ada.relative(items.front()->files), ElementsAre(in_library(c.entry)));
  }
}

TEST(Remainders, gives_an_orphan_every_entry_whose_path_contains_it) {
  struct Case {
    const char* why;
    const char* home;
    Paths entries;
    /// Identifier and files of each orphan, in the order in which they are found.
    std::vector<std::pair<std::string, Paths>> orphans;
  };
  const Case cases[] = {
      {"from all five places, in their order, each place in the order of names",
       "ada",
       {"Preferences/com.gone.tool.plist", "Application Scripts/com.gone.tool", "Containers/com.gone.tool",
        "Saved Application State/com.gone.tool.savedState", "Caches/com.gone.tool.b", "Caches/com.gone.tool",
        "Caches/.com.gone.tool", "Logs/com.gone.tool"},
       {{"com.gone.tool",
         {"Caches/com.gone.tool", "Caches/com.gone.tool.b", "Containers/com.gone.tool",
          "Saved Application State/com.gone.tool.savedState", "Application Scripts/com.gone.tool",
          "Preferences/com.gone.tool.plist"}},
        {"com.gone.tool.b", {"Caches/com.gone.tool.b"}}}},
      {"also what an installed application owns",
       "ada",
       {"Caches/com.gone.tool", "Caches/com.gone.toolkit"},
       {{"com.gone.tool", {"Caches/com.gone.tool", "Caches/com.gone.toolkit"}}}},
      {"also names that are no identifiers",
       "ada",
       {"Caches/com.gone.tool", "Saved Application State/X-com.gone.tool", "Preferences/apple.com.gone.tool"},
       {{"com.gone.tool",
         {"Caches/com.gone.tool", "Saved Application State/X-com.gone.tool", "Preferences/apple.com.gone.tool"}}}},
      {"whatever their letter case and accents; each spelling is an orphan",
       "ada",
       {"Caches/com.gone.café", "Containers/COM.Gone.CAFE\u0301", "Application Scripts/com.gone.cafes"},
       {{"com.gone.café",
         {"Caches/com.gone.café", "Containers/COM.Gone.CAFE\u0301", "Application Scripts/com.gone.cafes"}},
        {"COM.Gone.CAFE\u0301",
         {"Caches/com.gone.café", "Containers/COM.Gone.CAFE\u0301", "Application Scripts/com.gone.cafes"}},
        {"com.gone.cafes", {"Application Scripts/com.gone.cafes"}}}},
      {"a home below a folder of that name gives all there is",
       "com.gone.tool/ada",
       {"Caches/com.gone.tool", "Caches/Other", "Preferences/com.here.tool.plist"},
       {{"com.gone.tool", {"Caches/Other", "Caches/com.gone.tool", "Preferences/com.here.tool.plist"}}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada(TestPlatform::Grants::both, c.home);
    const std::string library = std::string(c.home) + "/Library/";
    ada.application("Applications/Kit.app", "com.gone.toolkit").application("Applications/Tool.app", "com.here.tool");
    for (const std::string& entry : c.entries) ada.tree.file(library + entry, 1);
    Paths flat;
    std::vector<std::pair<std::string, Paths>> expected;
    for (const auto& [identifier, files] : c.orphans) {
      Paths full;
      for (const std::string& file : files) full.push_back(library + file);
      flat.insert(flat.end(), full.begin(), full.end());
      expected.emplace_back(identifier, full);
    }
    Leftovers of(ada);
    EXPECT_THAT(ada.relative(of.remainders.remianders()), ElementsAreArray(flat));
    std::vector<std::pair<std::string, Paths>> found;
    for (const auto& item : of.search()) found.emplace_back(item->bundle, ada.relative(item->files));
    EXPECT_THAT(found, UnorderedElementsAreArray(expected));
    EXPECT_EQ(of.remainders.totalRemaidersSize, static_cast<std::int64_t>(flat.size()))
        << "what two orphans have counts twice";
  }
}

TEST(Remainders, two_searches_look_for_applications_in_different_places) {
  struct Case {
    const char* why;
    const char* application;
    bool known_to_plain;
    bool known_to_smart;
  };
  const Case cases[] = {
      {"three folders of Applications", "Applications/V/Sub/A.app", true, true},
      {"no deeper", "Applications/V/Sub/Deep/A.app", false, false},
      {"not Utilities", "Applications/Utilities/A.app", false, false},
      {"Utilities further down", "Applications/V/Utilities/A.app", true, true},
      {"Downloads", "ada/Downloads/A.app", true, true},
      {"not below it", "ada/Downloads/sub/A.app", false, false},
      {"Documents", "ada/Documents/A.app", true, true},
      {"below it only the smart one looks", "ada/Documents/sub/A.app", false, true},
      {"Desktop", "ada/Desktop/A.app", true, true},
      {"and below it", "ada/Desktop/sub/A.app", false, true},
      {"the user's Applications", "ada/Applications/A.app", true, true},
      {"built by the developer", "ada/Library/Developer/Xcode/DerivedData/b/A.app", false, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    ada.application(c.application, "com.here.tool").tree.file(in_library("Caches/com.here.tool/x"), 1);
    Leftovers of(ada);
    EXPECT_EQ(of.remainders.remianders().empty(), c.known_to_plain);
    EXPECT_EQ(of.remainders.installedApplications.size(), c.known_to_plain ? 1 : 0);
    EXPECT_EQ(of.search().empty(), c.known_to_smart);
    EXPECT_EQ(of.remainders.installedApplications, of.cache.applications_urls);
  }
}

TEST(Remainders, adds_up_over_searches_and_lists_what_has_content_sorted_by_label) {
  TestPlatform ada;
  ada.tree.file(in_library("Caches/com.example.zoom/x"), 20).file(in_library("Caches/com.example.alpha/x"), 3);
  ada.tree.file(in_library("Preferences/com.example.Beta.plist"), 4).folder(in_library("Caches/com.example.empty"));
  Leftovers of(ada);
  EXPECT_EQ(of.remainders.remianders().size(), 4U) << "the plain list has the empty one, too";
  EXPECT_EQ(of.remainders.totalRemaidersSize, 0) << "and counts nothing";
  const auto labels = [&] {
    Paths texts;
    for (const auto& item : of.search()) texts.push_back(item->label);
    return texts;
  };
  const Paths expected = {"Alpha by Example", "Beta by Example", "Zoom by Example"};
  EXPECT_EQ(labels(), expected);
  EXPECT_EQ(of.remainders.totalRemaidersSize, 27);
  EXPECT_EQ(labels(), expected) << "the list holds them once";
  EXPECT_EQ(of.remainders.remaindersItems.size(), 3U);
  EXPECT_EQ(of.remainders.totalRemaidersSize, 54) << "the total holds what both searches found";
}

TEST(Remainders, makes_a_label_of_the_last_and_the_second_part) {
  const std::pair<const char*, const char*> cases[] = {
      {"com.example.photoEditor", "PhotoEditor by Example"},
      {"org.mozilla.firefox", "Firefox by Mozilla"},
      {"com.BIGCo.team.APP", "APP by Bigco"},
      {"com.écurie.élan", "Élan by Écurie"},
      {"com..tool", "Tool by "},
      {"com.example.", " by Example"},
      {"example.tool", "Tool by Tool"},
      {"tool", "Tool by Tool"},
  };
  TestPlatform ada;
  const Leftovers of(ada);
  for (const auto& [identifier, label] : cases) EXPECT_EQ(of.remainders.setLabel(identifier), label);
}

TEST(Remainders, calls_applications_unused_after_thirty_days) {
  constexpr std::int64_t day = 86'400;
  constexpr std::int64_t never = -1;
  struct Case {
    const char* why;
    const char* application;
    const char* identifier;
    std::int64_t used;     // seconds ago
    std::int64_t changed;  // seconds ago
    bool unused;
  };
  const Case cases[] = {
      {"both thirty days ago", "Applications/A.app", "com.example.a", 30 * day, 30 * day, true},
      {"never used", "Applications/A.app", "com.example.a", never, 30 * day, true},
      {"used a moment less than thirty days ago", "Applications/A.app", "com.example.a", 30 * day - 1, 90 * day, false},
      {"changed a moment less than thirty days ago", "Applications/A.app", "com.example.a", 90 * day, 30 * day - 1,
       false},
      {"never used, but changed", "Applications/A.app", "com.example.a", never, 29 * day, false},
      {"changed in the future", "Applications/A.app", "com.example.a", never, -day, false},
      {"the system's", "Applications/A.app", "com.apple.a", never, 90 * day, false},
      {"the system's name anywhere", "Applications/A.app", "org.com.apple.a", never, 90 * day, false},
      {"another's that only sounds like it", "Applications/A.app", "com.Apple.a", never, 90 * day, true},
      {"no identifier", "Applications/A.app", "", never, 90 * day, false},
      {"a helper inside another application", "ada/Documents/B.app/A.app", "com.example.a", never, 90 * day, false},
      {"a helper inside a framework", "ada/Documents/B.framework/A.app", "com.example.a", never, 90 * day, false},
      {"the same beside it", "ada/Documents/B.framework.d/A.app", "com.example.a", never, 90 * day, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    const std::int64_t now = ada.platform.now().time_since_epoch().count();
    ada.application(c.application, BundleValues{c.identifier, {}, "tool", {}, {}});
    const std::string executable = std::string(c.application) + "/Contents/MacOS/tool";
    ada.tree.file(executable);
    // Access counts as use only when it came after the executable was written.
    if (c.used == never) ada.times(executable, now, now);
    if (c.used != never) ada.times(executable, now - c.used, now - c.used - 1);
    ada.times(c.application, now, now - c.changed);
    Leftovers of(ada);
    of.search();
    of.remainders.unused_apps();
    EXPECT_EQ(ada.relative(of.remainders.unusedApps), c.unused ? Paths{c.application} : Paths{});
    of.remainders.installedApplications.clear();
    of.remainders.unused_apps();
    EXPECT_THAT(of.remainders.unusedApps, IsEmpty()) << "it goes by the last search, and replaces its list";
  }
}

TEST(Remainders, without_grants_finds_nothing) {
  TestPlatform ada(TestPlatform::Grants::none);
  ada.tree.file(in_library("Caches/com.gone.tool"), 1);
  Leftovers of(ada);
  EXPECT_THAT(of.remainders.remianders(), IsEmpty());
  EXPECT_THAT(of.search(), IsEmpty());
}

}  // namespace
}  // namespace tarnby
