#include <algorithm>

#include "engine/cleaner.h"
#include "engine/home_offers.h"
#include "files/bytes.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

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

void Cleaner::smart_clean_with_complete_handler(const std::function<void()>& handler) {
  {
    const Measurer::SizeMemory memory(platform_.measurer);
    look_for_places();
    if (!offers_) plan_smart_scan();
    for (const Category& category : smart_categories()) problems_.set(category.type, {});
    smart_outline_items.clear();
    smart_menu_items.clear();
    total_smart_size = 0;
    for (const Category& category : smart_categories()) {
      if (!category.smart.notification.empty()) post(category.smart.notification);
      if (platform_.files.stopped_looking()) break;  // nobody waits for the rest
      const LookWatch watch;
      offers_ ? scan_offers(category) : (this->*category.smart.scan)();
      tell_problem(category.type, watch.missed());
    }
    note_smart_amount();
    offers_ = nullptr;
  }
  search_is_complete = true;
  handler();
}

void Cleaner::note_smart_amount() {
  smart_amount = nullptr;
  if (platform_.files.stopped_looking()) return;
  std::vector<CleanerEntry> listed;
  for (const Category& category : smart_categories()) {
    const auto& item = this->*category.item;
    if (item) listed.insert(listed.end(), item->items.begin(), item->items.end());
  }
  // Rows of a Linux home count blocks, so what two of them share does, too.
  const auto blocks_of = [&](std::span<const Url> urls) { return frees_of(platform_.files, urls); };
  smart_amount = offers_ ? std::make_shared<const ChosenAmount>(listed, blocks_of)
                         : std::make_shared<const ChosenAmount>(listed, platform_.measurer);
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
  const Category& category = *category_row(type);
  const SmartGroup& group = category.smart;
  item->size = size;
  item->type = type;
  this->*category.item = std::move(item);
  this->*group.total = size;
  const auto row = SmartOutlineItem::init_with_label(category.label, size, std::string(type),
                                                     Image::named(std::string(group.picture)));
  this->*group.outline = row;
  if (!group.header.empty()) smart_menu_items.emplace_back(std::string(group.header));
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
    this->*row.item = client;
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
