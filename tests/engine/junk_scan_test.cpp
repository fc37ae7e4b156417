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
const std::string mail = library + "Containers/com.apple.mail/Data/Library/";
const std::string airmail =
    library + "Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/";

/// Scans, and tells the categories with the files of all that have no clients.
std::vector<std::string> scan(const TestPlatform& user, Cleaner& cleaner) {
  std::vector<std::string> rows;
  cleaner.clean_with_complete_handler([&] {
    EXPECT_TRUE(cleaner.apps_junk_search_complete && cleaner.media_search_coomplete && cleaner.search_is_complete);
    for (const Category& category : junk_categories()) {
      const CleanerItem& item = *(cleaner.*category.item);
      const bool has_clients = item.files.size() > 4;
      rows.push_back(test::row_text(std::string(category.setting), item.size,
                                    has_clients ? std::vector<std::string>() : user.relative(item.files)));
    }
  });
  return rows;
}

TEST(JunkScan, fills_six_categories_and_counts_absent_clients_of_earlier_scans_again) {
  TestPlatform user;
  Engine engine(user);
  Cleaner& cleaner = engine.cleaner;
  EXPECT_THAT(scan(user, cleaner),
              ElementsAre("Caches 0:", "Logs 0:", "Remainders 0:", "Browsers 0:", "Mails 0:", "Trash 0:"));
  user.tree.file(library + "Caches/com.gone.tool/x", 1).file(library + "Caches/.hidden", 100).file("ada/.Trash/.x", 2);
  user.tree.file(library + "Containers/b/Data/Library/Caches/x", 4).file(library + "Containers/b/Data/x", 100);
  user.tree.folder(library + "Containers/a").file(library + "Containers/file", 100).file("ada/.Trash/y/z", 8);
  user.tree.link(library + "Containers/link", "b").file(library + "Logs/x.log", 16).file("ada/Downloads/x.dmg", 100);
  user.tree.file(chrome + "Application Cache/x", 32)
      .file(airmail + "General/Tmp/x", 256)
      .file(mail + "Mail Downloads/x", 512);
  user.tree.file(library + "Application Support/Firefox/Profiles/p/storage/x", 64)
      .file(library + "Safari/LocalStorage/x", 128);
  engine.scan();
  EXPECT_THAT(
      scan(user, cleaner),
      ElementsAre(
          "Caches 5: " + library + "Caches/com.gone.tool, " + library + "Containers/a/Data/Library/Caches, " + library +
              "Containers/b/Data/Library/Caches, " + mail + "Caches",
          "Logs 16: " + library + "Logs/x.log", "Remainders 1: " + library + "Caches/com.gone.tool", "Browsers 224:",
          "Mails 768: " + mail + "Mail Downloads/x, " + airmail + "General/AttachmentsNg, " + airmail + "General/Tmp",
          "Trash 10: ada/.Trash/.x, ada/.Trash/y"));
  EXPECT_EQ(cleaner.apps_junk_size, 5 + 16 + 1 + 224);
  EXPECT_EQ(cleaner.media_junk_size, 768 + 10);
  EXPECT_EQ(cleaner.browser_item->string_size, "224 bytes");
  EXPECT_TRUE(user.settings.boolean("Mozilla"));

  for (const char* gone : {"ada/Library", "ada/.Trash"}) std::filesystem::remove_all(user.tree.path(gone));
  user.tree.file(chrome + "Application Cache/x", 1000).file(chrome + "Local Storage/x", 1);
  EXPECT_THAT(scan(user, cleaner),
              ElementsAre("Caches 0:", "Logs 0:", "Remainders 0:", "Browsers 1193:",
                          "Mails 256: " + airmail + "General/AttachmentsNg, " + airmail + "General/Tmp", "Trash 0:"))
      << "Chrome as it is now, the others as they were";
}

}  // namespace
}  // namespace tarnby
