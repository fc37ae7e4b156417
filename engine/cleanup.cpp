#include "engine/cleanup.h"

#include <iterator>

#include "engine/cleaner.h"
#include "files/bytes.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

constexpr CleanupCategory categories[] = {
    {"Caches", "Applications caches", &Cleaner::apps_caches_item},
    {"Logs", "Applications logs", &Cleaner::apps_logs_item},
    {"Remainders", "Applications remainders", &Cleaner::apps_remainders_item},
    {"Browsers", "Browsers", &Cleaner::browser_item},
    {"Mails", "Mail attachments", &Cleaner::mails_item},
    {"Trash", "Trash Bin", &Cleaner::trash_item, true, true},
    {"Downloads", "Downloads", &Cleaner::downloads_item, false},
    {"LargeFiles", "Large files", &Cleaner::large_files_item, true, true},
};

constexpr std::size_t filled_by_junk_scan = 6;

}  // namespace

std::span<const CleanupCategory> cleanup_categories() {
  return categories;
}

std::span<const CleanupCategory> junk_categories() {
  return cleanup_categories().first(filled_by_junk_scan);
}

bool Cleaner::is_switched_on(const CleanupCategory& category) const {
  const auto& item = this->*category.item;
  return item && item->size > 0 && app_settings->boolean(category.setting);
}

std::int64_t Cleaner::beCleaned() const {
  std::int64_t bytes = 0;
  for (const CleanupCategory& category : categories) {
    if (is_switched_on(category)) bytes = add_bytes(bytes, (this->*category.item)->size);
  }
  return bytes;
}

std::vector<Url> Cleaner::cleanup_files() const {
  std::vector<Url> urls;
  for (const CleanupCategory& category : categories) {
    if (!category.is_removed || !is_switched_on(category)) continue;
    const auto& listed = (this->*category.item)->files;
    urls.insert(urls.end(), listed.begin(), listed.end());
  }
  return urls;
}

std::vector<CleanerEntry> Cleaner::cleanup_entries() const {
  std::vector<CleanerEntry> entries;
  for (const CleanupCategory& category : categories) {
    if (category.is_removed && is_switched_on(category)) entries.emplace_back(this->*category.item);
  }
  return entries;
}

std::int64_t Cleaner::cleanup_amount() const {
  return (junk_amount ? *junk_amount : ChosenAmount()).amount(cleanup_entries());
}

void Cleaner::cleanup_with_complete_handler(const std::function<void()>& handler, CleanupReport* report) {
  CleanupReport unread;
  CleanupReport& told = report ? *report : unread;
  remainder_urls.clear();
  for (const CleanupCategory& category : categories) {
    if (category.is_removed && is_switched_on(category)) clean_category(category, told);
  }
  told.left = std::move(remainder_urls);
  remainder_urls.clear();  // empty at the end as at the beginning, and that is meant
  platform_.group_settings.set("Date", platform_.now());
  (void)platform_.group_settings.synchronize();  // what could not be written now goes with the next run's date
  handler();
}

/// Counts the size that was measured, however much of it could be removed.
void Cleaner::clean_category(const CleanupCategory& category, CleanupReport& report) {
  const CleanerItem& item = *(this->*category.item);
  const std::vector<Removal> removals = platform_.files.remove(item.files, report.options);
  for (std::size_t at = 0; at < removals.size(); ++at) {
    const bool failed = removals[at].attempted && removals[at].error;
    if (!category.tells_what_is_left || !failed || !platform_.files.exists(item.files[at])) continue;
    remainder_urls.push_back(item.files[at]);
  }
  report.removals.insert(report.removals.end(), removals.begin(), removals.end());
  wasCleaned = add_bytes(wasCleaned, item.size);
}

}  // namespace tarnby
