#include <algorithm>
#include <iterator>

#include "engine/cleaner.h"
#include "files/bytes.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

constexpr SmartCategory categories[] = {
    {"caches", english("Applications caches"), "Smart cache", &Cleaner::apps_caches_item, &Cleaner::totalCacheSize,
     &Cleaner::outlineCacheItem, english("Apps Junk")},
    {"logs", english("Applications logs"), "Smart logs", &Cleaner::apps_logs_item, &Cleaner::totalLogsSize,
     &Cleaner::outlineLogsItem, ""},
    {"remainders", english("Applications remainders"), "Smart remainders", &Cleaner::apps_remainders_item,
     &Cleaner::totalRemaindersSize, &Cleaner::outlineRemaindersItem, ""},
    {"browsers", english("Browsers"), "Smart browsers", &Cleaner::browser_item, &Cleaner::totalBrowserSize,
     &Cleaner::outlineBrowsersItem, english("Apps Data")},
    {"mails", english("Mail attachments"), "Smart mails", &Cleaner::mails_item, &Cleaner::totalMailsSize,
     &Cleaner::outlineMailsItem, ""},
    {"installs", english("Installation files"), "Smart installs", &Cleaner::install_files_item,
     &Cleaner::totalInstallSize, &Cleaner::outlineInstallsItem, english("Files")},
    {"trash", english("Trash Bin"), "Smart trash", &Cleaner::trash_item, &Cleaner::totalTrashSize,
     &Cleaner::outlineTrashItem, ""},
};

/// Extensions count exactly as written.
bool is_installer(const Url& url, const macos_home::InstallerPlace& place) {
  const auto extension = url.path_extension();
  return extension == "dmg" || extension == "pkg" || extension == "ipa" || (place.takes_apk && extension == "apk");
}

std::shared_ptr<LargeFile> plain_record(const Url& url, std::int64_t size) {
  return LargeFile::init_with_file_url(url, std::string(url.last_path_component()), size, "");
}

/// Some clients keep their files in folders that are named by others, and may have none of them.
bool has_location(const FileManager& files, const CleanerItem& client) {
  return client.size > 0 || std::ranges::any_of(client.files, [&](const Url& url) { return files.exists(url); });
}

template <typename Records>
std::vector<CleanerEntry> entries_of(const Records& records) {
  return {records.begin(), records.end()};
}

}  // namespace

std::span<const SmartCategory> smart_categories() {
  return categories;
}

void Cleaner::smart_clean_with_complete_handler(const std::function<void()>& handler) {
  {
    const Measurer::SizeMemory memory(platform_.measurer);
    look_for_places();
    plan_smart_scan();
    for (const SmartCategory& category : categories) problems_.set(category.type, {});
    smart_outline_items.clear();
    smart_menu_items.clear();
    total_smart_size = 0;
    struct Step {
      std::string_view type;
      void (Cleaner::*scan)();
      std::string_view next;
    };
    constexpr Step steps[] = {
        {"caches", &Cleaner::scan_caches, "smart_scan_logs"},
        {"logs", &Cleaner::scan_logs, "smart_scan_remainders"},
        {"remainders", &Cleaner::scan_remainders, "smart_scan_browsers"},
        {"browsers", &Cleaner::scan_browsers, "smart_scan_mails"},
        {"mails", &Cleaner::scan_mails, "smart_scan_installs"},
        {"installs", &Cleaner::scan_installs, "smart_scan_trash"},
        {"trash", &Cleaner::scan_trash, {}},
    };
    for (const auto& [type, scan, next] : steps) {
      if (platform_.files.stopped_looking()) break;  // nobody waits for the rest
      const LookWatch watch;
      (this->*scan)();
      tell_problem(type, watch.missed());
      if (!next.empty()) post(next);
    }
    note_smart_amount();
  }
  search_is_complete = true;
  handler();
}

void Cleaner::note_smart_amount() {
  smart_amount = nullptr;
  if (platform_.files.stopped_looking()) return;
  std::vector<CleanerEntry> listed;
  for (const SmartCategory& category : categories) {
    const auto& item = this->*category.item;
    if (item) listed.insert(listed.end(), item->items.begin(), item->items.end());
  }
  smart_amount = std::make_shared<const ChosenAmount>(listed, platform_.measurer);
}

/// Lets the workers measure while this thread still looks for applications, in the order in which sizes are asked for.
void Cleaner::plan_smart_scan() {
  cache_.plan_sizes();
  platform_.measurer.plan_entries(url_logs, Hidden::skip);
  plan_clients();
  platform_.measurer.plan_entries(url_trash, Hidden::take);
}

/// Files a finished category under its fields, gives it its group, and puts that into both lists.
void Cleaner::finish_category(std::string_view type, std::shared_ptr<CleanerItem> item, std::int64_t size) {
  const auto& category = *std::find_if(std::begin(categories), std::end(categories),
                                       [&](const SmartCategory& row) { return row.type == type; });
  item->size = size;
  item->type = type;
  this->*category.item = std::move(item);
  this->*category.total = size;
  const auto row = SmartOutlineItem::init_with_label(std::string(category.label), size, std::string(type),
                                                     Image::named(std::string(category.picture)));
  this->*category.outline = row;
  if (!category.header.empty()) smart_menu_items.emplace_back(std::string(category.header));
  smart_menu_items.emplace_back(row);
  smart_outline_items.push_back(row);
  total_smart_size = add_bytes(total_smart_size, size);
}

void Cleaner::post(std::string_view notification) {
  platform_.main_queue.async(
      [&center = platform_.notifications, name = std::string(notification)] { center.post(name); });
}

void Cleaner::scan_caches() {
  auto item = std::make_shared<CleanerItem>();
  item->items = entries_of(cache_.smart_caches());
  finish_category("caches", std::move(item), cache_.totalCacheSize);
}

Cleaner::Found Cleaner::measured_entries(const Url& folder, Hidden hidden) {
  Found found;
  for (const MeasuredEntry& entry : platform_.measurer.entries(folder, hidden)) {
    found.files.push_back(plain_record(entry.url, entry.size));
    found.size = add_bytes(found.size, entry.size);
  }
  return found;
}

void Cleaner::sort_by_name(std::vector<std::shared_ptr<LargeFile>>& records) const {
  if (platform_.files.stopped_looking()) return;  // the longest lists take longer than anybody should wait for nothing
  platform_.text.sort_by_label(records, [](const auto& record) -> const std::string& { return record->name; });
}

void Cleaner::scan_logs() {
  Found logs = measured_entries(url_logs, Hidden::skip);
  sort_by_name(logs.files);
  auto item = std::make_shared<CleanerItem>();
  item->items = entries_of(logs.files);
  finish_category("logs", std::move(item), logs.size);
}

void Cleaner::scan_remainders() {
  auto item = std::make_shared<CleanerItem>();
  item->items = entries_of(remainders_.smart_remianders());
  // The sum of every scan of this process so far: the leftovers' own total is never reset.
  finish_category("remainders", std::move(item), remainders_.totalRemaidersSize);
}

std::shared_ptr<CleanerItem> Cleaner::clients_category(std::span<const ClientRow> rows) {
  auto category = std::make_shared<CleanerItem>();
  for (const ClientRow& row : rows) {
    const auto client = client_item(row);
    if (!client) continue;
    keep_client(row.type, client);
    if (!has_location(platform_.files, *client)) continue;  // a row that removes nothing would be no row
    category->items.emplace_back(client);
    category->size = add_bytes(category->size, client->size);
  }
  return category;
}

void Cleaner::scan_browsers() {
  auto item = clients_category(browser_rows());
  const std::int64_t size = item->size;
  finish_category("browsers", std::move(item), size);
}

void Cleaner::scan_mails() {
  auto item = clients_category(mail_rows());
  const std::int64_t size = item->size;
  finish_category("mails", std::move(item), size);
}

std::vector<Url> Cleaner::install_candidates() const {
  std::vector<Url> found;
  for (const macos_home::InstallerPlace& place : macos_home::installer_places) {
    for (Url& url : platform_.files.list_urls(url_home.appending(place.beneath_home))) {
      if (is_installer(url, place)) found.push_back(std::move(url));
    }
  }
  return found;
}

void Cleaner::scan_installs() {
  const std::vector<Url> candidates = install_candidates();
  const std::vector<Status> statuses = platform_.files.statuses(candidates);
  std::int64_t size = 0;
  installFiles.clear();
  for (std::size_t at = 0; at < candidates.size(); ++at) {
    // Its own size only: an installer that is a folder counts 0.
    installFiles.push_back(plain_record(candidates[at], statuses[at].size));
    size = add_bytes(size, statuses[at].size);
  }
  sort_by_name(installFiles);
  auto item = std::make_shared<CleanerItem>();
  item->items = entries_of(installFiles);
  finish_category("installs", std::move(item), size);
}

void Cleaner::scan_trash() {
  const Found trash = measured_entries(url_trash, Hidden::take);
  auto item = std::make_shared<CleanerItem>();
  item->items = entries_of(trash.files);
  finish_category("trash", std::move(item), trash.size);
}

}  // namespace tarnby
