#include "engine/smart_selection.h"

#include <algorithm>

#include "engine/cleaner.h"
#include "files/bytes.h"

namespace tarnby {

namespace {

struct Locations {
  using Urls = std::span<const Url>;
  Urls operator()(const std::shared_ptr<CacheItem>& item) const { return {&item->url, 1}; }
  Urls operator()(const std::shared_ptr<LargeFile>& file) const { return {&file->url_file, 1}; }
  Urls operator()(const std::shared_ptr<RemainderItem>& item) const { return item->files; }
  Urls operator()(const std::shared_ptr<CleanerItem>& item) const { return item->files; }
  Urls operator()(const std::shared_ptr<OfferedItem>& item) const { return item->offer.locations; }
};

}  // namespace

std::span<const Url> locations_of(const CleanerEntry& entry) {
  return std::visit(Locations{}, entry);
}

std::int64_t size_of(const CleanerEntry& entry) {
  if (const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry)) return (*offered)->frees;
  return std::visit([](const auto& item) { return item->size; }, entry);
}

bool may_go(const CleanerEntry& entry) {
  const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry);
  return offered == nullptr || (*offered)->may_go();
}

bool starts_ticked(const CleanerEntry& entry) {
  const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry);
  return offered == nullptr || (*offered)->starts_ticked();
}

bool is_taken(const CleanerEntry& entry, RowsTaken taken) {
  if (taken == RowsTaken::listed) return true;
  return taken == RowsTaken::all_that_may_go ? may_go(entry) : starts_ticked(entry);
}

SmartSelection select_groups(const Cleaner& cleaner, std::span<const std::string_view> types, RowsTaken taken) {
  SmartSelection selection;
  for (const Category& category : smart_categories()) {
    if (std::find(types.begin(), types.end(), category.type) == types.end()) continue;
    const auto& item = cleaner.*category.item;
    if (!item || item->items.empty()) continue;
    // The engine's own total of a group also holds what earlier scans found; it is what a removal counts.
    std::int64_t bytes = cleaner.*category.smart.total;
    for (const CleanerEntry& entry : item->items) {
      if (!is_taken(entry, taken)) {
        bytes -= size_of(entry);
        continue;
      }
      selection.entries.push_back(entry);
      const auto locations = locations_of(entry);
      selection.files.insert(selection.files.end(), locations.begin(), locations.end());
    }
    selection.bytes = add_bytes(selection.bytes, bytes);
  }
  return selection;
}

}  // namespace tarnby
