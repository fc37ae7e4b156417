#include "leftovers/remainders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "platform/platform.h"
#include "tests/support/seed.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAre;

using Paths = std::vector<std::string>;

const std::string library = "ada/Library/";

struct Leftovers {
  explicit Leftovers(TestPlatform& user)
      : inventory(user.platform), cache(user.platform, inventory), remainders(user.platform, cache) {}

  /// As a smart scan does it: the caches first.
  RemainderItems search() {
    cache.smart_caches();
    return remainders.smart_remianders();
  }

  const Application inventory;
  Cache cache;
  Remainders remainders;
};

TEST(Remainders, takes_names_that_look_like_identifiers_and_that_nobody_owns) {
  struct Case {
    const char* why;
    const char* entry;
    /// The identifier it stands for, empty when it is no leftover.
    std::string orphan;
  };
  const Case cases[] = {
      {"saved state ends at the first suffix", "Saved Application State/com.gone.tool.savedState.savedState",
       "com.gone.tool"},
      {"preferences lose one extension, whatever it is", "Preferences/com.gone.tool.app.lock", "com.gone.tool.app"},
      {"a dot at the end is no extension", "Preferences/com.gone.", "com.gone."},
      {"the system's name anywhere", "Caches/com.pineapple.tool", ""},
      {"the name with a capital is somebody else's", "Caches/com.Apple.tool", "com.Apple.tool"},
      {"an installed application's", "Saved Application State/com.here.tool.savedState", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    user.application("Applications/Tool.app", "com.here.tool").tree.file(library + c.entry, 3);
    Leftovers leftovers(user);
    const RemainderItems items = leftovers.search();
    EXPECT_EQ(items.empty() ? "" : items.front()->bundle, c.orphan);
    EXPECT_EQ(leftovers.remainders.remianders().size(), items.size()) << "both searches agree";
  }
}

TEST(Remainders, gives_an_orphan_every_entry_whose_path_contains_it) {
  TestPlatform user;
  user.application("Applications/Kit.app", "com.gone.cafes");
  const Paths both = {library + "Caches/com.gone.cafes", library + "Caches/com.gone.café",
                      library + "Containers/COM.Gone.CAFE\u0301", library + "Preferences/apple.com.gone.cafe"};
  for (const std::string& path : both) user.tree.file(path, 1);
  user.tree.file(library + "Caches/.com.gone.café", 1).file(library + "Logs/com.gone.café", 1);
  Leftovers leftovers(user);
  std::map<std::string, Paths> found;
  for (const auto& item : leftovers.search()) found[item->bundle] = user.relative(item->files);
  EXPECT_THAT(found, ElementsAre(testing::Pair("COM.Gone.CAFE\u0301", both), testing::Pair("com.gone.café", both)))
      << "whatever the letter case and accents, also what an application owns and names that are no identifiers";
  EXPECT_EQ(leftovers.remainders.totalRemaidersSize, 8) << "what two orphans have counts twice";

  TestPlatform below(TestPlatform::Grants::both, "com.gone.tool/ada");
  const Paths all = {"com.gone.tool/" + library + "Caches/Other", "com.gone.tool/" + library + "Caches/com.gone.tool"};
  for (const std::string& path : all) below.tree.file(path, 1);
  EXPECT_EQ(below.relative(Leftovers(below).search().at(0)->files), all) << "a home below a folder of that name";
}

TEST(Remainders, gives_orphans_what_the_rule_says_whatever_the_names) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  const std::string places[] = {"Caches", "Containers", "Application Scripts"};
  for (int round = 0; round < 10; ++round) {
    TestPlatform user(TestPlatform::Grants::both, round % 2 == 0 ? "ada" : "b.a.é/ada");
    const std::string top = round % 2 == 0 ? library : "b.a.é/" + library;
    for (int i = 0; i < 30; ++i) {
      constexpr const char* parts[] = {"a", "b", "B", "é", "e\u0301", "E", "."};
      std::string name = "a";
      for (auto left = random() % 6; left > 0; --left) name += parts[random() % std::size(parts)];
      const std::string& place = places[random() % std::size(places)];
      if (user.tree.exists(top + place + "/" + name)) continue;
      user.tree.file(top + place + "/" + name, 1);
    }
    Leftovers leftovers(user);
    std::vector<Url> expected;
    std::set<std::string> met;
    std::vector<Url> entries;
    for (const std::string& place : places) {
      const auto listed = user.files.list_urls(user.url(top + place));
      entries.insert(entries.end(), listed.begin(), listed.end());
    }
    for (const Url& orphan : entries) {
      const std::string name(orphan.last_path_component());
      if (std::count(name.begin(), name.end(), '.') < 2 || !met.insert(name).second) continue;
      std::copy_if(entries.begin(), entries.end(), std::back_inserter(expected),
                   [&](const Url& entry) { return contains_folded(entry.path(), name); });
    }
    ASSERT_EQ(user.relative(leftovers.remainders.remianders()), user.relative(expected));
  }
}

TEST(Remainders, two_searches_look_for_applications_in_different_places) {
  const std::map<std::string, std::pair<bool, bool>> known_to_plain_and_smart = {
      {"Applications/V/Sub/A.app", {true, true}},
      {"Applications/V/Sub/Deep/A.app", {false, false}},
      {"Applications/Utilities/A.app", {false, false}},
      {"Applications/V/Utilities/A.app", {true, true}},
      {"ada/Downloads/A.app", {true, true}},
      {"ada/Downloads/sub/A.app", {false, false}},
      {"ada/Documents/A.app", {true, true}},
      {"ada/Documents/sub/A.app", {false, true}},
      {"ada/Applications/A.app", {true, true}},
      {"ada/Desktop/sub/A.app", {false, true}},
  };
  for (const auto& [application, known] : known_to_plain_and_smart) {
    SCOPED_TRACE(application);
    TestPlatform user;
    user.application(application, "com.here.tool").tree.file(library + "Caches/com.here.tool/x", 1);
    Leftovers leftovers(user);
    EXPECT_EQ(leftovers.remainders.remianders().empty(), known.first);
    EXPECT_EQ(leftovers.search().empty(), known.second);
  }
}

TEST(Remainders, adds_up_over_searches_and_lists_what_has_content_sorted_by_label) {
  TestPlatform user;
  user.tree.file(library + "Caches/com.BIGCo.zoom.APP/x", 20).file(library + "Caches/com.écurie.élan/x", 3);
  user.tree.file(library + "Preferences/com..beta.plist", 4).folder(library + "Caches/com.example.empty");
  Leftovers leftovers(user);
  EXPECT_EQ(leftovers.remainders.remianders().size(), 4U)
      << "the plain list has the empty one, too, and counts nothing";
  for (const std::int64_t total : {27, 54}) {
    Paths labels;
    for (const auto& item : leftovers.search()) labels.push_back(item->label);
    EXPECT_THAT(labels, ElementsAre("APP by Bigco", "Beta by ", "Élan by Écurie")) << "each once";
    EXPECT_EQ(leftovers.remainders.totalRemaidersSize, total) << "of all searches";
  }
}

TEST(Remainders, calls_applications_unused_after_thirty_days) {
  constexpr std::int64_t day = 86'400;
  constexpr std::int64_t never = -1;
  struct Case {
    const char* why;
    std::int64_t used;     // seconds ago
    std::int64_t changed;  // seconds ago
    bool unused;
    std::string application = "Applications/A.app";
    std::string identifier = "com.example.a";
  };
  const Case cases[] = {
      {"both thirty days ago", 30 * day, 30 * day, true},
      {"used a moment less than thirty days ago", 30 * day - 1, 90 * day, false},
      {"changed a moment less than thirty days ago", 90 * day, 30 * day - 1, false},
      {"the system's name anywhere", never, 90 * day, false, "Applications/A.app", "org.com.apple.a"},
      {"a helper inside another application", never, 90 * day, false, "ada/Documents/B.app/A.app"},
      {"a helper inside a framework", never, 90 * day, false, "ada/Documents/B.framework/A.app"},
      {"the same beside it", never, 90 * day, true, "ada/Documents/B.framework.d/A.app"},
      {"an extension in upper case is no bundle here", never, 90 * day, true, "ada/Documents/B.APP/A.app"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    const std::int64_t now = user.platform.now().time_since_epoch().count();
    user.application(c.application, BundleValues{c.identifier, {}, "tool", {}, {}});
    const std::string executable = c.application + "/Contents/MacOS/tool";
    user.tree.file(executable);
    // Access counts as use only when it came after the executable was written.
    user.times(executable, c.used == never ? now : now - c.used, c.used == never ? now : now - c.used - 1);
    user.times(c.application, now, now - c.changed);
    Leftovers leftovers(user);
    leftovers.search();
    leftovers.remainders.unused_apps();
    EXPECT_EQ(user.relative(leftovers.remainders.unusedApps), c.unused ? Paths{c.application} : Paths{});
  }
}

}  // namespace
}  // namespace tarnby
