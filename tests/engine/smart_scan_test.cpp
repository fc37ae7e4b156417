#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <thread>

#include "tests/engine/test_engine.h"
#include "tests/support/open_watch.h"

namespace tarnby {
namespace {

using test::Engine;
using test::row_texts;
using test::TestPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

const Texts notifications = {"smart_scan_logs",  "smart_scan_remainders", "smart_scan_browsers",
                             "smart_scan_mails", "smart_scan_installs",   "smart_scan_trash"};
const std::string library = "ada/Library/";

TEST(SmartScan, of_an_empty_home_has_all_groups_and_tells_every_step) {
  for (const auto grants : {TestPlatform::Grants::both, TestPlatform::Grants::none}) {
    TestPlatform user(grants);
    if (grants == TestPlatform::Grants::none) user.tree.file(library + "Caches/x/y", 1).file("ada/.Trash/x", 1);
    Engine engine(user);
    const Cleaner& cleaner = engine.cleaner;
    Texts posted;
    for (const std::string& name : notifications) {
      user.notifications.add_observer(name, [&posted, name] { posted.push_back(name); });
    }
    engine.cleaner.smart_clean_with_complete_handler([&] {
      EXPECT_TRUE(cleaner.search_is_complete);
      posted.push_back("handler");
    });
    user.main_queue.run_pending();
    Texts expected = notifications;
    expected.insert(expected.begin(), "handler");
    EXPECT_EQ(posted, expected) << "observers hear of it on the main queue only";
    Texts menu;
    for (const SmartMenuItem& item : cleaner.smart_menu_items) {
      const auto* header = std::get_if<std::string>(&item);
      menu.push_back(header ? *header : std::get<std::shared_ptr<SmartOutlineItem>>(item)->type);
    }
    EXPECT_THAT(menu, ElementsAre("Apps Junk", "caches", "logs", "remainders", "Apps Data", "browsers", "mails",
                                  "Files", "installs", "trash"));
    EXPECT_EQ(cleaner.total_smart_size, 0);
    EXPECT_THAT(row_texts(user, *cleaner.mails_item), ElementsAre())
        << "of the system's own there is nothing to remove";
    EXPECT_NE(cleaner.apple_mail_item, nullptr) << "but its record is always there";
  }
}

TEST(SmartScan, lets_the_main_thread_read_what_a_notification_says_is_finished) {
  TestPlatform user;
  user.tree.file(library + "Caches/a/x", 1).file(library + "Logs/b.log", 2).file("ada/Downloads/c.dmg", 4);
  user.tree.file(library + "Caches/com.gone.tool/x", 8).file(library + "Safari/LocalStorage/x", 16);
  Engine engine(user);
  std::vector<std::int64_t> seen;
  for (std::size_t at = 0; at < notifications.size(); ++at) {
    user.notifications.add_observer(notifications[at], [&, at] {
      const Category& finished = smart_categories()[at];
      seen.push_back((engine.cleaner.*finished.smart.outline)->size);
      for (const CleanerEntry& entry : (engine.cleaner.*finished.item)->items)
        EXPECT_FALSE(test::label_of(entry).empty());
    });
  }
  bool complete = false;
  std::thread scan([&] {
    engine.cleaner.smart_clean_with_complete_handler([&] { user.main_queue.async([&] { complete = true; }); });
  });
  user.main_queue.run_until([&] { return complete; });
  scan.join();
  EXPECT_THAT(seen, ElementsAre(9, 2, 8, 16, 0, 4));
  EXPECT_EQ(engine.cleaner.total_smart_size, 39);
}

TEST(SmartScan, that_is_stopped_reads_no_application_and_calls_nothing_left_over) {
  TestPlatform user;
  const std::string editor = "Applications/Editor.app";
  user.application(editor, "com.example.editor").tree.file(library + "Caches/com.example.editor/x", 1);
  user.tree.file(library + "Caches/com.gone.tool/x", 1);
  Engine engine(user);
  engine.remainders.installedApplications = {user.url(editor)};
  user.files.stop_looking();
  test::OpenWatch watch(user.tree.path(editor + "/Contents/Info.plist"));
  engine.scan();
  EXPECT_THAT(engine.cache.smart_caches(), IsEmpty());
  EXPECT_THAT(engine.remainders.remianders(), IsEmpty()) << "an application that was not read owns files all the same";
  EXPECT_THAT(engine.remainders.language_packages(), IsEmpty());
  engine.inventory.installedApplications([](bool) {});
  engine.inventory.unusedApplications([](bool) {});
  EXPECT_FALSE(watch.has_seen_any());
  user.files.look_again();
  engine.scan();
  EXPECT_EQ(engine.cleaner.total_smart_size, 3) << "two caches, of which one is left over";
}

TEST(SmartScan, takes_the_clients_that_are_present) {
  const std::string chrome = library + "Application Support/Google/Chrome/Default/";
  const std::string firefox = library + "Application Support/Firefox/Profiles/";
  const std::string safari = library + "Safari/";
  const std::string mail = library + "Containers/com.apple.mail/Data/Library/Mail Downloads/";
  const std::string airmail =
      library + "Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/";
  const std::string spark =
      library + "Group Containers/3L68KQB4HG.group.com.readdle.smartemail/databases/messagesData/";
  const auto row = [](const char* type, std::int64_t size, const std::string& folder, Texts names) {
    for (std::string& name : names) name.insert(0, folder);
    return test::row_text(type, size, names);
  };
  const auto chrome_row = [&](std::int64_t size) {
    return row("chrome", size, chrome,
               {"Application Cache", "Local Storage", "Storage", "Sync Data", "Thumbnails", "Session Storage"});
  };
  struct Case {
    const char* why;
    std::vector<std::pair<std::string, std::int64_t>> files;
    /// Path and target.
    std::map<std::string, std::string> links;
    Texts browsers;
    Texts mails = {};
  };
  const Case cases[] = {
      {"Chrome without its first folder is not there, and Firefox without a storage has nothing to remove",
       {{chrome + "Local Storage/x", 1}, {firefox + "a/x", 1}},
       {},
       {}},
      {"a mail program that keeps none of the folders that are removed has nothing to remove",
       {{airmail + "ada@x/messages/x", 1}, {airmail + "General/x", 1}},
       {},
       {}},
      {"a link in the first folder's place is there, and counts itself; Safari as a link has no size",
       {{chrome + "Local Storage/x", 10}, {safari + "Elsewhere/x", 100}},
       {{chrome + "Application Cache", "Local Storage"}, {safari + "LocalStorage", "Elsewhere"}},
       {chrome_row(23), row("safari", 0, safari, {"LocalStorage"})}},
      {"Firefox: the storage folders of visible profiles, no files and no links",
       {{firefox + "b/storage/x", 1},
        {firefox + "a/storage/.x", 2},
        {firefox + "d/storage", 100},
        {firefox + ".e/storage/x", 100}},
       {{firefox + "f/storage", "../a/storage"}, {firefox + "g", "a"}},
       {row("mozilla", 3, firefox, {"a/storage", "b/storage"})}},
      {"all of them, in their order",
       {{spark + "b/x", 1},
        {spark + ".hidden", 100},
        {airmail + "General/Tmp/x", 2},
        {airmail + "ada@x/AttachmentsNg/x", 4},
        {airmail + "accounts.db", 100},
        {airmail + ".hidden/AttachmentsNg/x", 100},
        {mail + "x", 8},
        {mail + ".hidden", 100},
        {safari + "LocalStorage/.x", 16},
        {firefox + "p/storage/x", 32},
        {chrome + "Application Cache/x", 64},
        {chrome + "History", 100}},
       {},
       {chrome_row(64), row("mozilla", 32, firefox, {"p/storage"}), row("safari", 16, safari, {"LocalStorage"})},
       {row("apple-mail", 8, mail, {"x"}),
        row("airmail", 6, airmail,
            {"General/AttachmentsNg", "accounts.db/AttachmentsNg", "ada@x/AttachmentsNg", "General/Tmp"}),
        row("spark", 1, spark, {"b"})}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    for (const auto& [path, size] : c.files) user.tree.file(path, size);
    for (const auto& [path, target] : c.links) user.tree.link(path, target);
    Engine engine(user);
    engine.scan();
    EXPECT_EQ(row_texts(user, *engine.cleaner.browser_item), c.browsers);
    EXPECT_EQ(row_texts(user, *engine.cleaner.mails_item), c.mails);
  }
}

TEST(SmartScan, finds_installers_by_their_exact_extensions) {
  TestPlatform user;
  for (const char* path :
       {"Downloads/b.apk", "Downloads/folder.pkg/inside", "Desktop/A.dmg", "Documents/a.dmg",
        "Library/Application Support/c.ipa", "Library/Application Support/no.apk", "Desktop/no.DMG",
        "Desktop/no.dmg.part", "Desktop/.no.dmg", "Documents/sub/no.dmg", "Documents/dmg", "no.dmg"}) {
    user.tree.file(std::string("ada/") + path, 2);
  }
  user.tree.link("ada/Desktop/link.dmg", "A.dmg");
  Engine engine(user);
  engine.scan();
  EXPECT_THAT(row_texts(user, *engine.cleaner.install_files_item),
              ElementsAre("A.dmg 2: ada/Desktop/A.dmg", "a.dmg 2: ada/Documents/a.dmg", "b.apk 2: ada/Downloads/b.apk",
                          "c.ipa 2: ada/Library/Application Support/c.ipa",
                          "folder.pkg 0: ada/Downloads/folder.pkg",  // its own size, not what is in it
                          "link.dmg 5: ada/Desktop/link.dmg"));
}

TEST(SmartScan, a_second_one_restarts_all_sums_except_for_leftovers) {
  TestPlatform user;
  user.tree.file(library + "Caches/com.gone.tool/x", 10).file(library + "Safari/LocalStorage/x", 5);
  Engine engine(user);
  engine.scan();
  EXPECT_EQ(engine.cleaner.total_smart_size, 25);
  std::filesystem::remove_all(user.tree.path(library + "Safari"));
  engine.scan();
  EXPECT_EQ(engine.cleaner.total_smart_size, 30)
      << "the leftovers of both scans together, everything else as it is now";
  EXPECT_EQ(engine.cleaner.apps_remainders_item->items.size(), 1U) << "the list holds them once";
  EXPECT_TRUE(engine.cleaner.browser_item->items.empty()) << "a browser that is gone is no longer shown";
  EXPECT_EQ(engine.cleaner.smart_menu_items.size(), 10U);
}

}  // namespace
}  // namespace tarnby
