#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using testing::ElementsAre;

const std::string library = "ada/Library/";
const std::string chrome = library + "Application Support/Google/Chrome/Default/";
const std::string airmail =
    library + "Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/";

void scan(Engine& of) {
  of.cleaner.clean_with_complete_handler([&] { EXPECT_TRUE(of.cleaner.search_is_complete); });
}

std::vector<std::string> categories_of(const TestPlatform& ada, const Cleaner& cleaner) {
  std::vector<std::string> rows;
  for (const CleanupCategory& category : junk_categories()) {
    const CleanerItem& item = *(cleaner.*category.item);
    rows.push_back(test::row_text(std::string(category.setting), item.size, ada.relative(item.files)));
    EXPECT_EQ(item.string_size, ada.platform.text.byte_count(item.size));
  }
  return rows;
}

TEST(JunkScan, fills_six_categories_and_both_sums) {
  TestPlatform ada;
  ada.tree.file(library + "Caches/com.gone.tool/x", 1).file(library + "Caches/.hidden", 100).file("ada/.Trash/.x", 2);
  ada.tree.file(library + "Containers/b/Data/Library/Caches/x", 4).file(library + "Containers/b/Data/x", 100);
  ada.tree.folder(library + "Containers/a").file(library + "Containers/file", 100).file("ada/.Trash/y/z", 8);
  ada.tree.link(library + "Containers/link", "b").file(library + "Logs/x.log", 16).file("ada/Downloads/x.dmg", 100);
  ada.tree.file(chrome + "Application Cache/x", 32)
      .file(library + "Application Support/Firefox/Profiles/p/storage/x", 64);
  ada.tree.file(library + "Safari/LocalStorage/x", 128).file(airmail + "General/Tmp/x", 256);
  ada.tree.file(library + "Containers/com.apple.mail/Data/Library/Mail Downloads/x", 512);
  Engine of(ada);
  scan(of);
  const Cleaner& cleaner = of.cleaner;
  EXPECT_THAT(
      categories_of(ada, cleaner),
      ElementsAre("Caches 5: " + library + "Caches/com.gone.tool, " + library + "Containers/a/Data/Library/Caches, " +
                      library + "Containers/b/Data/Library/Caches, " + library +
                      "Containers/com.apple.mail/Data/Library/Caches",
                  "Logs 16: " + library + "Logs/x.log", "Remainders 1: " + library + "Caches/com.gone.tool",
                  "Browsers 224: " + chrome + "Application Cache, " + chrome + "Local Storage, " + chrome +
                      "Storage, " + chrome + "Sync Data, " + chrome + "Thumbnails, " + chrome + "Session Storage, " +
                      library + "Application Support/Firefox/Profiles/p/storage, " + library + "Safari/LocalStorage",
                  "Mails 768: " + library + "Containers/com.apple.mail/Data/Library/Mail Downloads/x, " + airmail +
                      "General/AttachmentsNg, " + airmail + "General/Tmp",
                  "Trash 10: ada/.Trash/.x, ada/.Trash/y"));
  EXPECT_EQ(cleaner.apps_junk_size, 5 + 16 + 1 + 224);
  EXPECT_EQ(cleaner.media_junk_size, 768 + 10);
  EXPECT_TRUE(cleaner.apps_junk_search_complete && cleaner.media_search_coomplete);
  EXPECT_FALSE(cleaner.downloads_item);
  for (const char* browser : {"GoogleChrome", "Mozilla", "Safari"}) {
    EXPECT_TRUE(ada.platform.app_settings.boolean(browser));
  }
}

TEST(JunkScan, of_an_empty_home_has_all_categories) {
  for (const auto grants : {TestPlatform::Grants::both, TestPlatform::Grants::none}) {
    TestPlatform ada(grants);
    if (grants == TestPlatform::Grants::none) ada.tree.file(library + "Caches/x/y", 1).file("ada/.Trash/x", 1);
    Engine of(ada);
    scan(of);
    EXPECT_THAT(categories_of(ada, of.cleaner),
                ElementsAre("Caches 0:", "Logs 0:", "Remainders 0:", "Browsers 0:", "Mails 0:", "Trash 0:"));
    EXPECT_EQ(of.cleaner.apps_junk_size + of.cleaner.media_junk_size, 0);
  }
}

TEST(JunkScan, counts_a_client_of_an_earlier_scan_of_either_kind_again) {
  TestPlatform ada;
  ada.tree.file(chrome + "Application Cache/x", 1).file(library + "Safari/LocalStorage/x", 2);
  ada.tree.file(airmail + "General/Tmp/x", 4).file("ada/.Trash/x", 8);
  Engine of(ada);
  of.scan();
  for (const char* gone : {"ada/Library", "ada/.Trash"}) std::filesystem::remove_all(ada.tree.path(gone));
  ada.tree.file(chrome + "Application Cache/x", 16).file(chrome + "Local Storage/x", 32);
  scan(of);
  EXPECT_EQ(of.cleaner.browser_item->size, 16 + 32 + 2) << "Chrome as it is now, Safari as it was";
  EXPECT_EQ(of.cleaner.browser_item->files.size(), 7U);
  EXPECT_EQ(of.cleaner.media_junk_size, 4) << "the Trash is read anew";
}

}  // namespace
}  // namespace tarnby
