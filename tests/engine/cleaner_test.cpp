#include "engine/cleaner.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;

TEST(Cleaner, tells_the_type_of_a_file_by_its_extension_as_written) {
  TestPlatform user;
  const Engine engine(user);
  const std::pair<const char*, const char*> cases[] = {
      {"archive.tar.gz", "archive"}, {"a.m4a", "audio"},     {"a.info", "document"}, {"a.ts", "movie"},
      {"photo.jpg", "picture"},      {"photo.JPG", "other"}, {".jpg", "other"},      {"a.jpg.part", "other"}};
  for (const auto& [name, type] : cases) EXPECT_EQ(engine.cleaner.type_at_url_file(user.url(name)), type) << name;
  std::vector<std::size_t> sizes;
  for (const auto formats : {&Cleaner::archive_formats, &Cleaner::audio_formats, &Cleaner::document_formats,
                             &Cleaner::movie_formats, &Cleaner::picture_formats}) {
    sizes.push_back((engine.cleaner.*formats).size());
  }
  EXPECT_EQ(sizes, (std::vector<std::size_t>{68, 26, 38, 20, 31}));
}

TEST(Cleaner, counts_the_categories_that_are_switched_on) {
  const std::map<std::string, std::shared_ptr<CleanerItem> Cleaner::*> items = {
      {"Caches", &Cleaner::apps_caches_item},
      {"Logs", &Cleaner::apps_logs_item},
      {"Remainders", &Cleaner::apps_remainders_item},
      {"Browsers", &Cleaner::browser_item},
      {"Mails", &Cleaner::mails_item},
      {"Trash", &Cleaner::trash_item},
      {"Downloads", &Cleaner::downloads_item},
      {"LargeFiles", &Cleaner::large_files_item}};
  TestPlatform user;
  Engine engine(user);
  AppSettings& settings = user.settings;
  std::int64_t bytes = 1;
  for (const auto& [setting, item] : items) {
    settings.set_boolean(setting, true);
    EXPECT_EQ(engine.cleaner.beCleaned(), 0) << setting << " before any scan";
    engine.cleaner.*item = std::make_shared<CleanerItem>();
    (engine.cleaner.*item)->size = bytes;
    EXPECT_EQ(engine.cleaner.beCleaned(), bytes) << setting;
    settings.set_boolean(setting, false);
    bytes *= 2;
  }
  for (const auto& [setting, item] : items) settings.set_boolean(setting, true);
  EXPECT_EQ(engine.cleaner.beCleaned(), 255);
  engine.cleaner.trash_item->size = -5;
  EXPECT_EQ(engine.cleaner.beCleaned(), 127) << "only sizes above 0";
}

TEST(Cleaner, removes_the_listed_files_in_order_and_nothing_else) {
  TestPlatform user;
  user.tree.file("ada/Library/Caches/a/deep/x", 1).file("ada/Library/Caches/b", 1).file("ada/Library/Caches/kept", 1);
  user.tree.file("ada/Downloads/x.dmg", 1).file("outside", 1).link("ada/Library/Caches/link", "../../Downloads");
  Engine engine(user);
  for (const char* path : {"ada/Library/Caches/a", "ada/Library/Caches/gone", "outside", "ada/Library/Caches",
                           "ada/Library/Caches/link", "ada/Library/Caches/b"}) {
    engine.cleaner.files.push_back(user.url(path));
  }
  const std::atomic<bool> stopped = true;
  for (const Removal& removal : engine.cleaner.remove_files({.stop = &stopped})) EXPECT_FALSE(removal.attempted);
  EXPECT_TRUE(user.tree.exists("ada/Library/Caches/a/deep/x")) << "stopped before it began";
  std::vector<bool> failed;
  for (const Removal& removal : engine.cleaner.remove_files()) failed.push_back(bool(removal.error));
  EXPECT_EQ(failed, (std::vector<bool>{false, false, true, true, false, false}))
      << "what was gone counts as removed; outside the grants and the user's own folders are refused";
  std::set<std::string> left = user.tree.listing();
  std::erase_if(left, [](const std::string& path) { return path.starts_with("settings/"); });
  EXPECT_EQ(left,
            (std::set<std::string>{"Applications/", "ada/Downloads/x.dmg", "ada/Library/Caches/kept", "outside"}));
}

}  // namespace
}  // namespace tarnby
