#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "inventory/related_files.h"
#include "tests/engine/test_engine.h"

namespace tarnby::test {
namespace {

namespace fs = std::filesystem;

/// What happens to a home after it was looked at, and what the removal of everything that was shown must leave then.
TEST(ChangedSinceListing, what_was_shown_goes_as_it_is_and_what_became_something_else_stays) {
  struct Case {
    const char* why;
    std::function<void(TempTree&)> change;
    std::set<std::string> left;
    int error;
  };
  const std::string shown = "ada/.Trash/file";
  const std::string folder = "ada/.Trash/folder";
  const auto gone = [](TempTree& tree, const std::string& path) -> TempTree& {
    fs::remove_all(tree.path(path));
    return tree;
  };
  const Case cases[] = {
      {"nothing", [](TempTree&) {}, {}, 0},
      {"a file is added to a listed folder: it goes with it",
       [&](TempTree& tree) { tree.file(folder + "/sub/added", 5); },
       {},
       0},
      {"within a listed folder a file becomes a folder",
       [&](TempTree& tree) { gone(tree, folder + "/1").file(folder + "/1/2/3"); },
       {},
       0},
      {"a file grows", [&](TempTree& tree) { tree.file(shown, 1'000'000); }, {}, 0},
      {"another file takes its place, as in every saving",
       [&](TempTree& tree) { gone(tree, shown).file(shown, 1); },
       {},
       0},
      {"an entry is added beside those that were listed",
       [](TempTree& tree) { tree.file("ada/.Trash/new"); },
       {"ada/.Trash/new"},
       0},
      {"an entry is moved away: nobody goes after it",
       [&](TempTree& tree) { fs::rename(tree.path(folder), tree.path("ada/Documents/folder")); },
       {"ada/Documents/folder/1", "ada/Documents/folder/sub/2"},
       0},
      {"the folder that holds the entries is another one now",
       [](TempTree& tree) {
         fs::rename(tree.path("ada/.Trash"), tree.path("ada/Documents/old"));
         tree.file("ada/.Trash/other");
       },
       {"ada/.Trash/other", "ada/Documents/old/file", "ada/Documents/old/folder/1", "ada/Documents/old/folder/sub/2"},
       0},
      {"a file becomes a folder",
       [&](TempTree& tree) { gone(tree, shown).file(shown + "/precious"); },
       {shown + "/precious"},
       ESTALE},
      {"a folder becomes a file", [&](TempTree& tree) { gone(tree, folder).file(folder); }, {folder}, ESTALE},
      {"a folder becomes a link",
       [&](TempTree& tree) { gone(tree, folder).link(folder, "../Documents"); },
       {folder},
       ESTALE},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    user.tree.file(shown, 3).file(folder + "/1", 1).file(folder + "/sub/2", 2).file("ada/Documents/kept", 4);
    Engine engine(user);
    engine.scan();
    engine.cleaner.files = select_groups(engine.cleaner, std::vector<std::string_view>{"trash"}).files;
    ASSERT_EQ(engine.cleaner.files.size(), 2U);
    c.change(user.tree);
    int error = 0;
    for (const Removal& removal : engine.cleaner.remove_files()) error = removal.error ? removal.error.value() : error;
    EXPECT_EQ(error, c.error);
    std::set<std::string> left;
    for (const std::string& path : user.tree.listing()) {
      if (path.starts_with("ada/") && path != "ada/.Trash/") left.insert(path);
    }
    EXPECT_TRUE(left.erase("ada/Documents/kept"));
    EXPECT_EQ(left, c.left);
  }
}

TEST(ChangedSinceListing, what_was_found_is_known_however_it_was_found) {
  TestPlatform user;
  user.application("Applications/Editor.app", "com.acme.editor");
  user.tree.file("ada/Movies/big.mov", 20'000'000).file("ada/Library/Preferences/com.acme.editor.plist", 1);
  user.tree.file("ada/Library/Caches/com.acme.editor/x", 1).file("ada/Library/Logs/a/x", 1);
  user.tree.file("ada/Downloads/b.dmg", 1);
  Engine engine(user);
  engine.scan();
  engine.cleaner.search_large_files_with_complete_handler([](const auto&...) {});
  std::vector<Url> found =
      select_groups(engine.cleaner, std::vector<std::string_view>{"caches", "logs", "installs"}).files;
  for (const auto& file : engine.cleaner.largeFiles) found.push_back(file->url_file);
  const auto item = engine.inventory.application(user.url("Applications/Editor.app"));
  const std::vector<Url> related = related_files(user.platform, *item, Purpose::remove);
  for (const Url& url : related) {
    if (url.is_within(user.url("ada"))) found.push_back(url);
  }
  EXPECT_EQ(found.size(), 6U);
  for (const Url& url : found) EXPECT_EQ(url.listed_kind(), user.files.status(url).kind) << url.path();
}

}  // namespace
}  // namespace tarnby::test
