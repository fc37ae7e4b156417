#include "engine/categories.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "engine/cleaner.h"
#include "engine/notifications.h"
#include "text/localization.h"

namespace tarnby {

/// A struct, so that `Cleaner` can let it name the scans.
struct CategoryTable {
  static constexpr Category rows[] = {
      {.type = "caches",
       .label = english("Applications caches"),
       .setting = "Caches",
       .help = "what applications put aside to be faster, and make again",
       .item = &Cleaner::apps_caches_item,
       .smart = {.scan = &Cleaner::scan_caches,
                 .header = english("Apps Junk"),
                 .picture = "Smart cache",
                 .total = &Cleaner::totalCacheSize,
                 .outline = &Cleaner::outlineCacheItem},
       .in_junk_scan = true},
      {.type = "logs",
       .label = english("Applications logs"),
       .setting = "Logs",
       .help = "what applications wrote down about their work",
       .item = &Cleaner::apps_logs_item,
       .smart = {.scan = &Cleaner::scan_logs,
                 .notification = notifications::smart_scan_logs,
                 .picture = "Smart logs",
                 .total = &Cleaner::totalLogsSize,
                 .outline = &Cleaner::outlineLogsItem},
       .in_junk_scan = true},
      {.type = "remainders",
       .label = english("Applications remainders"),
       .setting = "Remainders",
       .help = "files of applications that are no longer installed",
       .item = &Cleaner::apps_remainders_item,
       .smart = {.scan = &Cleaner::scan_remainders,
                 .notification = notifications::smart_scan_remainders,
                 .picture = "Smart remainders",
                 .total = &Cleaner::totalRemaindersSize,
                 .outline = &Cleaner::outlineRemaindersItem},
       .in_junk_scan = true},
      {.type = "browsers",
       .label = english("Browsers"),
       .setting = "Browsers",
       .help = "caches and stored site data of Chrome, Firefox and Safari",
       .item = &Cleaner::browser_item,
       .smart = {.scan = &Cleaner::scan_browsers,
                 .notification = notifications::smart_scan_browsers,
                 .header = english("Apps Data"),
                 .picture = "Smart browsers",
                 .total = &Cleaner::totalBrowserSize,
                 .outline = &Cleaner::outlineBrowsersItem},
       .in_junk_scan = true,
       .clients = browser_rows},
      {.type = "mails",
       .label = english("Mail attachments"),
       .setting = "Mails",
       .help = "attachments that mail programs have saved",
       .item = &Cleaner::mails_item,
       .smart = {.scan = &Cleaner::scan_mails,
                 .notification = notifications::smart_scan_mails,
                 .picture = "Smart mails",
                 .total = &Cleaner::totalMailsSize,
                 .outline = &Cleaner::outlineMailsItem},
       .in_junk_scan = true,
       .clients = mail_rows},
      {.type = "installs",
       .label = english("Installation files"),
       .help = "installers in Downloads, Desktop, Documents, Application Support",
       .item = &Cleaner::install_files_item,
       .smart = {.scan = &Cleaner::scan_installs,
                 .notification = notifications::smart_scan_installs,
                 .header = english("Files"),
                 .picture = "Smart installs",
                 .total = &Cleaner::totalInstallSize,
                 .outline = &Cleaner::outlineInstallsItem}},
      {.type = "trash",
       .label = english("Trash Bin"),
       .setting = "Trash",
       .help = "what is in the Trash",
       .item = &Cleaner::trash_item,
       .smart = {.scan = &Cleaner::scan_trash,
                 .notification = notifications::smart_scan_trash,
                 .picture = "Smart trash",
                 .total = &Cleaner::totalTrashSize,
                 .outline = &Cleaner::outlineTrashItem},
       .in_junk_scan = true,
       .tells_what_is_left = true},
      {.type = "downloads",
       .label = english("Downloads"),
       .setting = "Downloads",
       .item = &Cleaner::downloads_item,
       .is_removed = false},
      {.type = "large-files",
       .label = english("Large files"),
       .setting = "LargeFiles",
       .item = &Cleaner::large_files_item,
       .tells_what_is_left = true},
  };
};

namespace {

/// Not told by its scan: under a sanitizer g++ 12 compares no pointers to member functions at compile time.
constexpr bool is_smart(const Category& category) {
  return category.smart.total != nullptr;
}

constexpr bool is_junk(const Category& category) {
  return category.in_junk_scan;
}

constexpr bool is_switched(const Category& category) {
  return !category.setting.empty();
}

template <bool (*belongs)(const Category&)>
std::span<const Category> view() {
  constexpr auto& rows = CategoryTable::rows;
  static constexpr auto chosen = [] {
    std::array<Category, std::count_if(std::begin(rows), std::end(rows), belongs)> found{};
    std::copy_if(std::begin(rows), std::end(rows), found.begin(), belongs);
    return found;
  }();
  return chosen;
}

}  // namespace

std::span<const Category> smart_categories() {
  return view<is_smart>();
}

std::span<const Category> junk_categories() {
  return view<is_junk>();
}

std::span<const Category> cleanup_categories() {
  return view<is_switched>();
}

const Category* category_row(std::string_view type) {
  const auto* row = std::ranges::find(CategoryTable::rows, type, &Category::type);
  return row == std::end(CategoryTable::rows) ? nullptr : row;
}

}  // namespace tarnby
