#include "engine/cleaner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Cleaner, tells_the_type_of_a_file_by_its_extension_as_written) {
  const std::pair<const char*, const char*> cases[] = {
      {"a.zip", "archive"},    {"archive.tar.gz", "archive"},
      {"a.tar-gz", "archive"}, {"a.7z", "archive"},
      {"a.m4a", "audio"},      {"a.info", "document"},
      {"a.ts", "movie"},       {"photo.jpg", "picture"},
      {"photo.JPG", "other"},  {"photo.jpg.", "other"},
      {"jpg", "other"},        {".jpg", "other"},
      {"a.jpg.part", "other"}, {"a.app", "other"},
      {"a. zip", "other"},
  };
  TestPlatform ada;
  const Engine of(ada);
  for (const auto& [name, type] : cases) EXPECT_EQ(of.cleaner.type_at_url_file(ada.url(name)), type) << name;
}

TEST(Cleaner, extension_lists_can_be_met_and_say_one_thing) {
  TestPlatform ada;
  const Engine of(ada);
  const std::vector<std::string>* lists[] = {&of.cleaner.archive_formats, &of.cleaner.audio_formats,
                                             &of.cleaner.document_formats, &of.cleaner.movie_formats,
                                             &of.cleaner.picture_formats};
  const std::size_t sizes[] = {68, 26, 38, 20, 31};
  std::map<std::string, int> met;
  for (std::size_t at = 0; at < std::size(lists); ++at) {
    EXPECT_EQ(lists[at]->size(), sizes[at]);
    for (const std::string& extension : *lists[at]) {
      ++met[extension];
      EXPECT_THAT(extension, testing::MatchesRegex("[a-z0-9-]+")) << "no dot and no capital, or no file has it";
    }
  }
  EXPECT_EQ(met.at("lqr"), 2) << "the one that stands twice";
  met.erase("lqr");
  EXPECT_THAT(met, Each(testing::Pair(testing::_, 1)));
}

TEST(Cleaner, package_extension_is_the_last_piece_or_the_whole_name) {
  const std::pair<const char*, const char*> cases[] = {
      {"x.app", "app"}, {"a.tar.gz", "gz"},    {"Readme", "Readme"},
      {"ends.", ""},    {".hidden", "hidden"}, {"A.APP", "APP"},
  };
  TestPlatform ada;
  const Engine of(ada);
  for (const auto& [name, extension] : cases) {
    EXPECT_EQ(of.cleaner.package_extension_at_url(ada.url(std::string("dotted.folder/") + name)), extension) << name;
  }
}

TEST(Cleaner, measures_what_is_there) {
  TestPlatform ada;
  ada.tree.file("ada/folder/.hidden", 10).folder("ada/folder/empty").file("ada/folder/In.app/x", 5).file("ada/file", 3);
  ada.tree.link("ada/link", "folder");  // 6 bytes of its own
  Engine of(ada);
  struct Case {
    const char* why;
    std::vector<Url> urls;
    std::int64_t size;
  };
  const Case cases[] = {
      {"nothing", {}, 0},
      {"a folder: hidden files and packages, too", {ada.url("ada/folder")}, 15},
      {"a file", {ada.url("ada/file")}, 3},
      {"a link itself", {ada.url("ada/link")}, 6},
      {"each as often as it is listed", {ada.url("ada/folder"), ada.url("ada/folder"), ada.url("ada/file")}, 33},
      {"what is missing or no file", {ada.url("ada/none"), Url::text("https://example.com/x"), Url()}, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(of.cleaner.overall_size_of_files(c.urls), c.size);
  }
  EXPECT_EQ(of.cleaner.overall_size_of_direcory(ada.url("ada/folder")), 15);
  for (const char* no_folder : {"ada/file", "ada/link", "ada/none"}) {
    EXPECT_EQ(of.cleaner.overall_size_of_direcory(ada.url(no_folder)), 0) << no_folder;
  }
}

TEST(Cleaner, counts_the_categories_that_are_switched_on) {
  struct Row {
    const char* setting;
    std::shared_ptr<CleanerItem> Cleaner::*item;
  };
  const Row rows[] = {
      {"Caches", &Cleaner::apps_caches_item},
      {"Logs", &Cleaner::apps_logs_item},
      {"Remainders", &Cleaner::apps_remainders_item},
      {"Browsers", &Cleaner::browser_item},
      {"Mails", &Cleaner::mails_item},
      {"Trash", &Cleaner::trash_item},
      {"Downloads", &Cleaner::downloads_item},
      {"LargeFiles", &Cleaner::large_files_item},
  };
  TestPlatform ada;
  Engine of(ada);
  AppSettings& settings = ada.platform.app_settings;
  const auto switch_all = [&](bool on) {
    for (const Row& row : rows) settings.set_boolean(row.setting, on);
  };
  switch_all(true);
  EXPECT_EQ(of.cleaner.beCleaned(), 0) << "before any scan";
  for (std::int64_t bytes = 1; const Row& row : rows) {
    of.cleaner.*row.item = std::make_shared<CleanerItem>();
    (of.cleaner.*row.item)->size = bytes;
    bytes *= 2;
  }
  EXPECT_EQ(of.cleaner.beCleaned(), 255);
  switch_all(false);
  EXPECT_EQ(of.cleaner.beCleaned(), 0);
  for (const Row& row : rows) {
    settings.set_boolean(row.setting, true);
    EXPECT_EQ(of.cleaner.beCleaned(), (of.cleaner.*row.item)->size) << row.setting;
    settings.set_boolean(row.setting, false);
  }
  switch_all(true);
  of.cleaner.trash_item->size = -5;
  EXPECT_EQ(of.cleaner.beCleaned(), 255 - 32) << "only sizes above 0";
  of.cleaner.trash_item->size = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(of.cleaner.beCleaned(), std::numeric_limits<std::int64_t>::max()) << "sums do not wrap";
}

TEST(Cleaner, without_a_grant_every_location_is_nowhere) {
  TestPlatform ada(TestPlatform::Grants::none);
  const Engine of(ada);
  const Cleaner& cleaner = of.cleaner;
  const Url* locations[] = {&cleaner.url_home,  &cleaner.url_library, &cleaner.url_caches,   &cleaner.url_logs,
                            &cleaner.url_mails, &cleaner.url_trash,   &cleaner.url_downloads};
  for (const Url* location : locations) EXPECT_TRUE(location->empty()) << location->path();
}

TEST(Cleaner, removes_the_listed_files_in_order_and_nothing_else) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Caches/a/deep/x", 1).file("ada/Library/Caches/b", 1).file("ada/Library/Caches/kept", 1);
  ada.tree.file("ada/Downloads/x.dmg", 1).file("outside", 1).link("ada/Library/Caches/link", "../../Downloads");
  Engine of(ada);
  of.cleaner.wasCleaned = 77;
  of.cleaner.apps_caches_item = std::make_shared<CleanerItem>();
  of.cleaner.apps_caches_item->size = 5;
  ada.platform.app_settings.set_boolean("Caches", false);
  const SettingsStore::Values before = ada.platform.app_settings.store().all();
  for (const char* path : {"ada/Library/Caches/a", "ada/Library/Caches/gone", "outside", "ada/Library/Caches",
                           "ada/Library/Caches/link", "ada/Library/Caches/b"}) {
    of.cleaner.files.push_back(ada.url(path));
  }
  const std::atomic<bool> stopped = true;
  std::vector<bool> attempted;
  for (const Removal& removal : of.cleaner.remove_files(&stopped)) attempted.push_back(removal.attempted);
  EXPECT_EQ(attempted, std::vector<bool>(6, false));
  EXPECT_TRUE(ada.tree.exists("ada/Library/Caches/a/deep/x")) << "stopped before it began";

  std::vector<bool> failed;
  for (const Removal& removal : of.cleaner.remove_files()) {
    EXPECT_TRUE(removal.attempted);
    failed.push_back(bool(removal.error));
  }
  EXPECT_THAT(failed, ElementsAre(false, false, true, true, false, false))
      << "what was gone counts as removed; outside the grants and the user's own folders are refused";
  std::set<std::string> left = ada.tree.listing();
  std::erase_if(left, [](const std::string& path) { return path.starts_with("settings/"); });
  EXPECT_THAT(left, ElementsAre("Applications/", "ada/Downloads/x.dmg", "ada/Library/Caches/kept", "outside"));
  EXPECT_EQ(of.cleaner.wasCleaned, 77) << "counting is the business of whoever chose the files";
  EXPECT_EQ(of.cleaner.apps_caches_item->size, 5);
  EXPECT_EQ(ada.platform.app_settings.store().all(), before);
  for (const Removal& removal : of.cleaner.remove_files()) EXPECT_TRUE(removal.attempted) << "again changes nothing";
  EXPECT_THAT(of.cleaner.remainder_urls, IsEmpty());
}

}  // namespace
}  // namespace tarnby
