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
};

}  // namespace

std::span<const Url> locations_of(const CleanerEntry& entry) {
  return std::visit(Locations{}, entry);
}

std::int64_t size_of(const CleanerEntry& entry) {
  return std::visit([](const auto& item) { return item->size; }, entry);
}

SmartSelection select_groups(const Cleaner& cleaner, std::span<const std::string_view> types) {
  SmartSelection selection;
  for (const Category& category : smart_categories()) {
    if (std::find(types.begin(), types.end(), category.type) == types.end()) continue;
    const auto& item = cleaner.*category.item;
    if (!item || item->items.empty()) continue;
    selection.entries.insert(selection.entries.end(), item->items.begin(), item->items.end());
    for (const CleanerEntry& entry : item->items) {
      const auto locations = locations_of(entry);
      selection.files.insert(selection.files.end(), locations.begin(), locations.end());
    }
    selection.bytes = add_bytes(selection.bytes, cleaner.*category.smart.total);
  }
  return selection;
}

}  // namespace tarnby
