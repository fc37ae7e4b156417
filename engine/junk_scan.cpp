#include <algorithm>

#include "engine/cleaner.h"
#include "engine/home_offers.h"
#include "files/bytes.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

// The second scan beside the smart one: whole categories, each with one list of files and one size. It measures every
// folder once, ahead of the moment when its size is asked for, as the smart scan does.
//
// A record of a client is replaced only when the client is there. One left from an earlier scan of either kind stays
// and counts again, see JunkScan.fills_six_categories_and_counts_absent_clients_of_earlier_scans_again.

namespace {

/// Adds the files and the size of a client to those of all clients of its kind.
void add_client(CleanerItem& all, const CleanerItem& client) {
  all.files.insert(all.files.end(), client.files.begin(), client.files.end());
  all.size = add_bytes(all.size, client.size);
}

}  // namespace

void Cleaner::clean_with_complete_handler(const std::function<void()>& handler) {
  look_for_places();
  offers_ ? junk_scan_offers() : junk_scan_places();
  offers_ = nullptr;
  handler();
}

void Cleaner::junk_scan_places() {
  const Measurer::SizeMemory memory(platform_.measurer);
  const Listed caches = listed([&] { return cache_locations(); });
  const Listed logs = listed([&] { return platform_.files.list_urls(url_logs); });
  const Listed trash = listed([&] { return platform_.files.list_urls(url_trash, Hidden::take); });
  platform_.measurer.plan(caches.locations);
  platform_.measurer.plan(logs.locations);
  plan_clients();
  platform_.measurer.plan(trash.locations);
  apps_caches_item = measured_item("Caches", caches);
  apps_logs_item = measured_item("Logs", logs);
  apps_remainders_item = measured_item("Remainders", listed([&] { return remainders_.remianders(); }));
  scan_junk_browsers();
  scan_junk_mails();
  trash_item = measured_item("Trash", trash);
  media_junk_size = add_bytes(trash_item->size, mails_item->size);
  note_junk_amount();
  media_search_coomplete = true;
  search_is_complete = true;
}

/// A large file may lie in what a category lists, or be a package around it.
void Cleaner::note_junk_amount() {
  junk_amount = nullptr;
  if (platform_.files.stopped_looking()) return;
  std::vector<CleanerEntry> listed(largeFiles.begin(), largeFiles.end());
  for (const Category& category : junk_categories()) {
    if (const auto& item = this->*category.item) listed.emplace_back(item);
  }
  junk_amount = std::make_shared<const ChosenAmount>(listed, platform_.measurer);
}

/// What stands in Caches, and the caches folder of each container, whether there is one or not.
std::vector<Url> Cleaner::cache_locations() const {
  std::vector<Url> locations = platform_.files.list_urls(url_caches);
  for (const Entry& entry : platform_.files.list(url_library.appending(macos_home::containers))) {
    if (entry.kind == EntryKind::folder) locations.push_back(entry.url.appending(macos_home::container_caches));
  }
  return locations;
}

template <typename List>
Cleaner::Listed Cleaner::listed(List list) const {
  const LookWatch watch(LookWatch::Tells::here);
  std::vector<Url> locations = list();
  return {std::move(locations), watch.missed()};
}

std::shared_ptr<CleanerItem> Cleaner::measured_item(std::string_view group, Listed listed) {
  const LookWatch watch;
  note_missed(listed.missed);
  auto item = std::make_shared<CleanerItem>();
  if (!platform_.files.stopped_looking()) item->size = overall_size_of_files(listed.locations);
  item->string_size = platform_.text.byte_count(item->size);
  item->files = std::move(listed.locations);
  tell_problem(group, watch.missed());
  return item;
}

/// Replaces the records of the clients that are there, and puts those of all of them together.
std::shared_ptr<CleanerItem> Cleaner::all_clients(std::span<const ClientRow> rows) {
  auto all = std::make_shared<CleanerItem>();
  for (const ClientRow& row : rows) {
    if (const auto client = client_item(row)) this->*row.item = client;
    if (const auto& kept = this->*row.item) add_client(*all, *kept);
  }
  all->string_size = platform_.text.byte_count(all->size);
  return all;
}

void Cleaner::scan_junk_browsers() {
  const LookWatch watch;
  browser_item = all_clients(browser_rows());
  tell_problem("Browsers", watch.missed());
  for (const ClientRow& browser : browser_rows()) app_settings->set_boolean(browser.setting, true);
  (void)app_settings->synchronize();  // what could not be written now goes with the next change that is
  apps_junk_size = 0;
  for (const auto& item : {apps_caches_item, apps_logs_item, apps_remainders_item, browser_item}) {
    apps_junk_size = add_bytes(apps_junk_size, item->size);
  }
  apps_junk_search_complete = true;
}

void Cleaner::scan_junk_mails() {
  const LookWatch watch;
  mails_item = all_clients(mail_rows());
  tell_problem("Mails", watch.missed());
}

}  // namespace tarnby
