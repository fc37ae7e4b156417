#include "engine/hand_off.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TempTree;
using test::TestPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string store = "support/Tarnby cleaner/Store.plist";

std::string list_of(const char* body) {
  return std::string("<plist version=\"1.0\"><dict>") + body + "</dict></plist>";
}

/// A screen that has a helper and some files left over.
struct Screen {
  Screen() {
    user.tree.file("helper").folder("support").file("ada/a & b").file("ada/b");
    user.settings.store().set("helper_url", user.tree.path("helper"));
    user.settings.store().set("application_support_url", user.tree.path("support"));
    for (const char* name : {"cleaned_view_controller", "cleanup_with_file_exist"}) {
      user.notifications.add_observer(name, [this, name] { posted.emplace_back(name); });
    }
    engine.cleaner.remainder_urls = {user.url("ada/b"), user.url("ada/a & b"), user.url("ada/\xff"),
                                     user.url("ada/\x01")};
  }

  HandOff hand_off() {
    return {user.platform, engine.cleaner, [this](const Url& url) { launched.push_back(user.relative(url)); }};
  }

  /// What stands in the hand-off file, as its paths.
  std::vector<std::string> stored() const {
    const auto list = parse_property_list(user.tree.read(store));
    if (!list || !list->find("Store") || list->as<PropertyList::Dictionary>()->size() != 1) return {"damaged"};
    std::vector<Url> urls;
    for (const PropertyList& path : *list->find("Store")->as<PropertyList::Array>()) {
      urls.push_back(Url::file(*path.as<std::string>()));
    }
    return user.relative(urls);
  }

  TestPlatform user;
  Engine engine{user};
  std::vector<std::string> posted;
  std::vector<std::string> launched;
};

TEST(HandOff, waits_for_complete_and_begins_again_after_cancel) {
  Screen screen;
  TempTree& tree = screen.user.tree;
  HandOff hand_off = screen.hand_off();
  ASSERT_TRUE(hand_off.delete_files_with_helper());
  EXPECT_THAT(screen.stored(), ElementsAre("ada/b", "ada/a & b")) << "paths that no list can hold are not handed over";
  EXPECT_EQ(hand_off.store_url, screen.user.url(store));
  const std::string written = tree.read(store);
  const std::string half = written.substr(0, written.size() / 2);
  for (const std::string& no_answer : {written, half, std::string(), std::string("\xff junk"),
                                       list_of("<key>complete</key><true/>"), std::string("<plist><array/></plist>")}) {
    tree.content(store, no_answer);
    EXPECT_TRUE(hand_off.helper_timer_proc()) << no_answer;
  }
  std::filesystem::remove(tree.path(store));
  tree.folder(store);
  EXPECT_TRUE(hand_off.helper_timer_proc()) << "a folder is no answer";
  std::filesystem::remove(tree.path(store));
  EXPECT_TRUE(hand_off.helper_timer_proc()) << "neither is nothing";
  EXPECT_THAT(screen.launched, ElementsAre("helper"));

  tree.content(store, list_of("<key>Cancel</key><string/><key>Store</key><array><string>/old</string></array>"));
  screen.engine.cleaner.remainder_urls.resize(1);
  EXPECT_TRUE(hand_off.helper_timer_proc());
  EXPECT_THAT(screen.stored(), ElementsAre("ada/b")) << "written anew";
  EXPECT_THAT(screen.launched, ElementsAre("helper", "helper"));
  EXPECT_THAT(screen.posted, IsEmpty());

  tree.content(store, list_of("<key>Cancel</key><true/><key>Complete</key><integer>0</integer>"));
  EXPECT_FALSE(hand_off.helper_timer_proc());
  EXPECT_THAT(screen.posted, ElementsAre("cleaned_view_controller")) << "whatever its value, and before Cancel";
  hand_off.cancel();
  EXPECT_EQ(screen.posted.back(), "cleanup_with_file_exist");
  std::filesystem::remove(tree.path("ada/b"));
  hand_off.cancel();
  EXPECT_EQ(screen.posted.back(), "cleaned_view_controller") << "nothing is left";
}

TEST(HandOff, does_not_begin_without_a_helper_or_a_place_to_write) {
  const std::pair<const char*, std::function<void(HandOff&, TempTree&)>> cases[] = {
      {"no helper", [](HandOff& engine, TempTree&) { engine.helper_url = Url(); }},
      {"no folder", [](HandOff& engine, TempTree&) { engine.application_support_url = Url(); }},
      {"a folder in the file's place", [](HandOff&, TempTree& tree) { tree.folder(store); }},
      {"a FIFO in its place", [](HandOff&, TempTree& tree) { tree.fifo(store); }},
      {"a link in its place", [](HandOff&, TempTree& tree) { tree.link(store, "../../ada/b"); }},
  };
  for (const auto& [why, prepare] : cases) {
    SCOPED_TRACE(why);
    Screen screen;
    HandOff hand_off = screen.hand_off();
    prepare(hand_off, screen.user.tree);
    EXPECT_FALSE(hand_off.delete_files_with_helper());
    EXPECT_THAT(screen.launched, IsEmpty());
    EXPECT_EQ(screen.user.tree.read("ada/b"), "");
  }
}

}  // namespace
}  // namespace tarnby
