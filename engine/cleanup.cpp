#include "engine/cleanup.h"

#include "engine/cleaner.h"
#include "files/bytes.h"
#include "platform/platform.h"

namespace tarnby {

bool Cleaner::is_switched_on(const Category& category) const {
  const auto& item = this->*category.item;
  return item && item->size > 0 && app_settings->boolean(category.setting);
}

std::int64_t Cleaner::beCleaned() const {
  std::int64_t bytes = 0;
  for (const Category& category : cleanup_categories()) {
    if (is_switched_on(category)) bytes = add_bytes(bytes, (this->*category.item)->size);
  }
  return bytes;
}

std::vector<Url> Cleaner::cleanup_files() const {
  std::vector<Url> urls;
  for (const Category& category : cleanup_categories()) {
    if (!category.is_removed || !is_switched_on(category)) continue;
    const auto& listed = (this->*category.item)->files;
    urls.insert(urls.end(), listed.begin(), listed.end());
  }
  return urls;
}

std::vector<CleanerEntry> Cleaner::cleanup_entries() const {
  std::vector<CleanerEntry> entries;
  for (const Category& category : cleanup_categories()) {
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
  for (const Category& category : cleanup_categories()) {
    if (category.is_removed && is_switched_on(category)) remove_category(category, told);
  }
  told.left = std::move(remainder_urls);
  remainder_urls.clear();  // the next run and a hand-off to the helper begin with an empty list
  platform_.group_settings.set("Date", platform_.now());
  (void)platform_.group_settings.synchronize();  // what could not be written now goes with the next run's date
  handler();
}

/// Counts the size that was measured, however much of it could be removed.
void Cleaner::remove_category(const Category& category, CleanupReport& report) {
  const CleanerItem& item = *(this->*category.item);
  const std::vector<Removal> removals = platform_.files.remove(item.files, guarded(item.files, report.options));
  for (std::size_t at = 0; at < removals.size(); ++at) {
    const bool failed = removals[at].attempted && removals[at].error;
    if (!category.tells_what_is_left || !failed || !platform_.files.exists(item.files[at])) continue;
    remainder_urls.push_back(item.files[at]);
  }
  report.removals.insert(report.removals.end(), removals.begin(), removals.end());
  wasCleaned = add_bytes(wasCleaned, item.size);
}

}  // namespace tarnby
