#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <thread>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::row_texts;
using test::TestPlatform;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

const Texts notifications = {"smart_scan_logs",  "smart_scan_remainders", "smart_scan_browsers",
                             "smart_scan_mails", "smart_scan_installs",   "smart_scan_trash"};

/// Notes each notification in `posted` as it is observed.
void observe(TestPlatform& ada, Texts& posted) {
  for (const std::string& name : notifications) {
    ada.platform.notifications.add_observer(name, [&posted, name] { posted.push_back(name); });
  }
}

Texts menu_texts(const Cleaner& cleaner) {
  Texts texts;
  for (const SmartMenuItem& item : cleaner.smart_menu_items) {
    const auto* header = std::get_if<std::string>(&item);
    texts.push_back(header ? *header : std::get<std::shared_ptr<SmartOutlineItem>>(item)->type);
  }
  return texts;
}

TEST(SmartScan, of_an_empty_home_has_all_groups_and_tells_every_step) {
  struct Group {
    const char* type;
    const char* label;
    const char* picture;
    std::shared_ptr<SmartOutlineItem> Cleaner::*outline;
    std::shared_ptr<CleanerItem> Cleaner::*item;
    std::int64_t Cleaner::*total;
  };
  const Group groups[] = {
      {"caches", "Applications caches", "Smart cache", &Cleaner::outlineCacheItem, &Cleaner::apps_caches_item,
       &Cleaner::totalCacheSize},
      {"logs", "Applications logs", "Smart logs", &Cleaner::outlineLogsItem, &Cleaner::apps_logs_item,
       &Cleaner::totalLogsSize},
      {"remainders", "Applications remainders", "Smart remainders", &Cleaner::outlineRemaindersItem,
       &Cleaner::apps_remainders_item, &Cleaner::totalRemaindersSize},
      {"browsers", "Browsers", "Smart browsers", &Cleaner::outlineBrowsersItem, &Cleaner::browser_item,
       &Cleaner::totalBrowserSize},
      {"mails", "Mail attachments", "Smart mails", &Cleaner::outlineMailsItem, &Cleaner::mails_item,
       &Cleaner::totalMailsSize},
      {"installs", "Installation files", "Smart installs", &Cleaner::outlineInstallsItem, &Cleaner::install_files_item,
       &Cleaner::totalInstallSize},
      {"trash", "Trash Bin", "Smart trash", &Cleaner::outlineTrashItem, &Cleaner::trash_item, &Cleaner::totalTrashSize},
  };
  for (const auto grants : {TestPlatform::Grants::both, TestPlatform::Grants::none}) {
    SCOPED_TRACE(grants == TestPlatform::Grants::both ? "nothing in the home" : "no home at all");
    TestPlatform ada(grants);
    if (grants == TestPlatform::Grants::none) ada.tree.file("ada/Library/Caches/x/y", 1).file("ada/.Trash/x", 1);
    Engine of(ada);
    const Cleaner& cleaner = of.cleaner;
    Texts posted;
    observe(ada, posted);
    int handled = 0;
    of.cleaner.smart_clean_with_complete_handler([&] {
      ++handled;
      EXPECT_EQ(cleaner.smart_outline_items.size(), 7U) << "the handler comes last";
      EXPECT_TRUE(cleaner.search_is_complete);
    });
    EXPECT_EQ(handled, 1);
    EXPECT_THAT(posted, IsEmpty()) << "observers hear of it on the main queue only";
    ada.main_queue.run_pending();
    EXPECT_EQ(posted, notifications);

    EXPECT_THAT(menu_texts(cleaner), ElementsAre("Apps Junk", "caches", "logs", "remainders", "Apps Data", "browsers",
                                                 "mails", "Files", "installs", "trash"));
    ASSERT_EQ(cleaner.smart_outline_items.size(), std::size(groups));
    for (std::size_t at = 0; at < std::size(groups); ++at) {
      SCOPED_TRACE(groups[at].type);
      const SmartOutlineItem& row = *cleaner.smart_outline_items[at];
      EXPECT_EQ(&row, (cleaner.*groups[at].outline).get());
      EXPECT_EQ(row.type, groups[at].type);
      EXPECT_EQ(row.label, groups[at].label);
      EXPECT_EQ(row.image, Image::named(groups[at].picture));
      EXPECT_EQ(row.size, 0);
      EXPECT_EQ((cleaner.*groups[at].item)->type, groups[at].type);
      EXPECT_EQ(cleaner.*groups[at].total, 0);
    }
    EXPECT_EQ(cleaner.total_smart_size, 0);
    EXPECT_THAT(row_texts(ada, *cleaner.mails_item), ElementsAre("apple-mail 0:"))
        << "the system's own is always there";
    EXPECT_THAT(cleaner.browser_item->items, IsEmpty());
  }
}

TEST(SmartScan, lets_the_main_thread_read_what_a_notification_says_is_finished) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Caches/a/x", 1).file("ada/Library/Logs/b.log", 2).file("ada/Downloads/c.dmg", 4);
  ada.tree.file("ada/Library/Caches/com.gone.tool/x", 8).file("ada/Library/Safari/LocalStorage/x", 16);
  Engine of(ada);
  std::map<std::string_view, std::int64_t> seen;
  for (std::size_t at = 0; at < notifications.size(); ++at) {
    const SmartCategory& finished = smart_categories()[at];
    ada.platform.notifications.add_observer(notifications[at], [&] {
      const auto& item = of.cleaner.*finished.item;
      seen[finished.type] = item->size;
      EXPECT_EQ((of.cleaner.*finished.outline)->size, item->size);
      for (const CleanerEntry& entry : item->items) EXPECT_FALSE(test::label_of(entry).empty());
    });
  }
  std::thread::id scanned_on;
  std::thread::id handled_on;
  {
    BackgroundQueue background;
    background.async([&] {
      scanned_on = std::this_thread::get_id();
      of.cleaner.smart_clean_with_complete_handler([&] {
        handled_on = std::this_thread::get_id();
        ada.main_queue.quit();
      });
    });
    ada.main_queue.run();
  }
  EXPECT_EQ(handled_on, scanned_on) << "the handler runs where the scan ran";
  EXPECT_THAT(seen, ElementsAre(std::pair("browsers", 16), std::pair("caches", 9), std::pair("installs", 4),
                                std::pair("logs", 2), std::pair("mails", 0), std::pair("remainders", 8)));
  EXPECT_EQ(of.cleaner.total_smart_size, 39);
}

TEST(SmartScan, lists_logs_sorted_by_name_and_the_trash_as_it_lies) {
  TestPlatform ada;
  for (const std::string place : {"ada/Library/Logs/", "ada/.Trash/"}) {
    ada.tree.file(place + "b", 1).file(place + "C", 2).file(place + "a", 4).file(place + "A", 8);
    ada.tree.file(place + "folder/deep/.x", 16).file(place + "folder/X.app/y", 32).folder(place + "empty");
    ada.tree.file(place + ".hidden", 64)
        .file(place + ".folder/x", 128)
        .link(place + "link", "folder")
        .fifo(place + "p");
  }
  Engine of(ada);
  of.scan();
  const auto rows = [](const std::string& place, const Texts& short_rows) {
    Texts texts;
    for (const std::string& row : short_rows) {
      texts.push_back((row + ": ").append(place).append(row, 0, row.find(' ')));
    }
    return texts;
  };
  EXPECT_THAT(row_texts(ada, *of.cleaner.apps_logs_item),
              ElementsAreArray(
                  rows("ada/Library/Logs/", {"A 8", "a 4", "b 1", "C 2", "empty 0", "folder 48", "link 6", "p 0"})))
      << "letter case is ignored, equal names stay as they were, hidden ones are left out, empty ones are not";
  EXPECT_EQ(of.cleaner.totalLogsSize, 69);
  EXPECT_THAT(row_texts(ada, *of.cleaner.trash_item),
              ElementsAreArray(rows("ada/.Trash/", {".folder 128", ".hidden 64", "A 8", "C 2", "a 4", "b 1", "empty 0",
                                                    "folder 48", "link 6", "p 0"})))
      << "in the order of the listing, hidden ones included";
  EXPECT_EQ(of.cleaner.totalTrashSize, 261);
  for (const CleanerEntry& entry : of.cleaner.trash_item->items) {
    EXPECT_EQ(std::get<std::shared_ptr<LargeFile>>(entry)->type, "");
  }
}

struct File {
  std::string path;
  std::int64_t size;
};

TEST(SmartScan, takes_the_clients_that_are_present) {
  const std::string chrome = "Application Support/Google/Chrome/Default/";
  const std::string profiles = "Application Support/Firefox/Profiles/";
  const std::string mail = "Containers/com.apple.mail/Data/Library/Mail Downloads/";
  const std::string airmail =
      "Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/";
  const std::string spark = "Group Containers/3L68KQB4HG.group.com.readdle.smartemail/databases/messagesData/";
  const Texts chrome_folders = {"Application Cache", "Local Storage", "Storage",
                                "Sync Data",         "Thumbnails",    "Session Storage"};
  struct Client {
    const char* type;
    std::int64_t size;
    Texts files;
  };
  const auto below = [](const std::string& folder, const Texts& names) {
    Texts paths;
    for (const std::string& name : names) paths.push_back(folder + name);
    return paths;
  };
  struct Case {
    const char* why;
    std::vector<File> files;
    /// Path and target.
    std::vector<std::pair<std::string, std::string>> links;
    std::vector<Client> browsers;
    /// Without Apple's, when that is empty.
    std::vector<Client> mails;
  };
  const Case cases[] = {
      {"Chrome: all six folders, those that are missing, too",
       {{chrome + "Application Cache/x", 1}, {chrome + "Sync Data/.x", 2}, {chrome + "History", 100}},
       {},
       {{"chrome", 3, below(chrome, chrome_folders)}},
       {}},
      {"Chrome without its first folder is not there", {{chrome + "Local Storage/x", 1}}, {}, {}, {}},
      {"a link in its place is there, and counts itself",
       {{chrome + "Local Storage/x", 10}},
       {{chrome + "Application Cache", "Local Storage"}},
       {{"chrome", 23, below(chrome, chrome_folders)}},
       {}},
      {"Firefox: the storage folders of its profiles",
       {{profiles + "b/storage/x", 1},
        {profiles + "a/storage/.x", 2},
        {profiles + "c/places", 100},
        {profiles + "d/storage", 100},
        {profiles + ".e/storage/x", 100},
        {profiles + "profile", 100}},
       {{profiles + "f/storage", "../a/storage"}, {profiles + "g", "a"}},
       {{"mozilla", 3, below(profiles, {"a/storage", "b/storage"})}},
       {}},
      {"Firefox with a profile and no storage", {{profiles + "a/x", 1}}, {}, {{"mozilla", 0, {}}}, {}},
      {"Safari: one folder",
       {{"Safari/LocalStorage/.x", 1}, {"Safari/LocalStorage/deep/x", 2}, {"Safari/History", 100}},
       {},
       {{"safari", 3, {"Safari/LocalStorage"}}},
       {}},
      {"Safari as a link: there, with no size as a folder",
       {{"Safari/Elsewhere/x", 100}},
       {{"Safari/LocalStorage", "Elsewhere"}},
       {{"safari", 0, {"Safari/LocalStorage"}}},
       {}},
      {"Apple's mail: what is visible in its folder",
       {{mail + "b", 1}, {mail + "a/x", 2}, {mail + ".hidden", 100}},
       {},
       {},
       {{"apple-mail", 3, below(mail, {"a", "b"})}}},
      {"Airmail: every account's attachments, there or not, and what is temporary",
       {{airmail + "ada@x/AttachmentsNg/x", 1},
        {airmail + "bob@x/Messages", 100},
        {airmail + "accounts.db", 100},
        {airmail + ".hidden/AttachmentsNg/x", 100},
        {airmail + "General/Tmp/x", 2}},
       {},
       {},
       {{"airmail", 3,
         below(airmail, {"General/AttachmentsNg", "accounts.db/AttachmentsNg", "ada@x/AttachmentsNg",
                         "bob@x/AttachmentsNg", "General/Tmp"})}}},
      {"Spark: what is visible in its folder",
       {{spark + "b/x", 1}, {spark + "a", 2}, {spark + ".hidden", 100}},
       {},
       {},
       {{"spark", 3, below(spark, {"a", "b"})}}},
      {"all of them, in their order",
       {{spark + "x", 1},
        {airmail + "General/Tmp/x", 2},
        {mail + "x", 4},
        {"Safari/LocalStorage/x", 8},
        {profiles + "p/storage/x", 16},
        {chrome + "Application Cache/x", 32}},
       {},
       {{"chrome", 32, below(chrome, chrome_folders)},
        {"mozilla", 16, {profiles + "p/storage"}},
        {"safari", 8, {"Safari/LocalStorage"}}},
       {{"apple-mail", 4, {mail + "x"}},
        {"airmail", 2, below(airmail, {"General/AttachmentsNg", "General/Tmp"})},
        {"spark", 1, {spark + "x"}}}},
  };
  const std::map<std::string, std::shared_ptr<CleanerItem> Cleaner::*> fields = {
      {"chrome", &Cleaner::browser_chrome_item}, {"mozilla", &Cleaner::browser_mozilla_item},
      {"safari", &Cleaner::browser_safari_item}, {"apple-mail", &Cleaner::apple_mail_item},
      {"airmail", &Cleaner::airmail_item},       {"spark", &Cleaner::spark_mail_item},
  };
  const std::string library = "ada/Library/";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    for (const File& file : c.files) ada.tree.file(library + file.path, file.size);
    for (const auto& [path, target] : c.links) ada.tree.link(library + path, target);
    Engine of(ada);
    of.scan();
    const auto check = [&](const CleanerItem& category, const char* group, const std::vector<Client>& clients) {
      Texts expected;
      std::int64_t size = 0;
      for (const Client& client : clients) {
        expected.push_back(test::row_text(client.type, client.size, below(library, client.files)));
        size += client.size;
      }
      EXPECT_EQ(row_texts(ada, category), expected);
      EXPECT_EQ(category.size, size);
      for (const CleanerEntry& entry : category.items) {
        const auto& client = std::get<std::shared_ptr<CleanerItem>>(entry);
        EXPECT_EQ(client->group, group);
        EXPECT_EQ(client, of.cleaner.*fields.at(client->type));
      }
    };
    check(*of.cleaner.browser_item, "browsers", c.browsers);
    std::vector<Client> mails = c.mails;
    if (mails.empty() || mails.front().type != std::string_view("apple-mail")) {
      mails.insert(mails.begin(), {"apple-mail", 0, {}});
    }
    check(*of.cleaner.mails_item, "mail-clients", mails);
  }
}

TEST(SmartScan, finds_installers_by_their_exact_extensions) {
  TestPlatform ada;
  for (const std::string place : {"Downloads", "Desktop", "Documents", "Library/Application Support"}) {
    for (const char* extension : {"dmg", "pkg", "ipa", "apk", "DMG", "Pkg", "exe", "dmg.part"}) {
      ada.tree.file("ada/" + place + "/" + std::string(1, place.back()) + "." + extension, 1);
    }
    ada.tree.file("ada/" + place + "/sub/below.dmg", 1).file("ada/" + place + "/.hidden.dmg", 1);
    ada.tree.file("ada/" + place + "/dmg", 1).file("ada/" + place + "/.dmg", 1);
  }
  ada.tree.file("ada/elsewhere.dmg", 1).file("ada/Downloads/folder.pkg/inside", 1000);
  ada.tree.link("ada/Desktop/link.dmg", "P.dmg").file("ada/Documents/P.dmg", 2).file("ada/Desktop/empty.ipa", 0);
  Engine of(ada);
  of.scan();
  const Texts rows = row_texts(ada, *of.cleaner.install_files_item);
  EXPECT_THAT(rows,
              ElementsAreArray(
                  {"empty.ipa 0: ada/Desktop/empty.ipa",
                   "folder.pkg 0: ada/Downloads/folder.pkg",  // its own size, not what is in it
                   "link.dmg 5: ada/Desktop/link.dmg", "p.apk 1: ada/Desktop/p.apk", "p.dmg 1: ada/Desktop/p.dmg",
                   "P.dmg 2: ada/Documents/P.dmg", "p.ipa 1: ada/Desktop/p.ipa", "p.pkg 1: ada/Desktop/p.pkg",
                   "s.apk 1: ada/Downloads/s.apk", "s.apk 1: ada/Documents/s.apk", "s.dmg 1: ada/Downloads/s.dmg",
                   "s.dmg 1: ada/Documents/s.dmg", "s.ipa 1: ada/Downloads/s.ipa", "s.ipa 1: ada/Documents/s.ipa",
                   "s.pkg 1: ada/Downloads/s.pkg", "s.pkg 1: ada/Documents/s.pkg",
                   "t.dmg 1: ada/Library/Application Support/t.dmg", "t.ipa 1: ada/Library/Application Support/t.ipa",
                   "t.pkg 1: ada/Library/Application Support/t.pkg"}))
      << "no apk of Application Support; equal names in the order of the places";
  EXPECT_EQ(of.cleaner.totalInstallSize, 22);
  EXPECT_EQ(of.cleaner.installFiles.size(), rows.size());
}

TEST(SmartScan, again_counts_anew_except_for_leftovers) {
  TestPlatform ada;
  ada.tree.file("ada/Library/Caches/com.gone.tool/x", 10).file("ada/Library/Logs/a.log", 3);
  ada.tree.file("ada/Library/Safari/LocalStorage/x", 5).file("ada/.Trash/x", 2).file("ada/Downloads/x.dmg", 1);
  Engine of(ada);
  const Cleaner& cleaner = of.cleaner;
  const auto sizes = [&] {
    std::map<std::string, std::int64_t> by_type;
    for (const auto& row : cleaner.smart_outline_items) by_type[row->type] = row->size;
    return by_type;
  };
  std::map<std::string, std::int64_t> expected = {{"caches", 10}, {"logs", 3},     {"remainders", 10}, {"browsers", 5},
                                                  {"mails", 0},   {"installs", 1}, {"trash", 2}};
  of.scan();
  EXPECT_EQ(sizes(), expected);
  EXPECT_EQ(cleaner.total_smart_size, 31);

  std::filesystem::remove_all(ada.tree.path("ada/Library/Safari"));
  ada.tree.file("ada/.Trash/y", 1);
  expected["remainders"] = 20;
  expected["browsers"] = 0;
  expected["trash"] = 3;
  of.scan();
  EXPECT_EQ(sizes(), expected) << "the leftovers of both scans together, everything else as it is now";
  EXPECT_EQ(cleaner.total_smart_size, 37);
  EXPECT_EQ(cleaner.apps_remainders_item->items.size(), 1U) << "the list holds them once";
  EXPECT_THAT(cleaner.browser_item->items, IsEmpty()) << "a browser that is gone is no longer shown";
  EXPECT_EQ(menu_texts(cleaner).size(), 10U);
}

}  // namespace
}  // namespace tarnby
