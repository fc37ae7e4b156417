#include "app/junk/also_listed.h"

#include <algorithm>
#include <string_view>

#include "engine/categories.h"
#include "engine/cleaner.h"
#include "engine/smart_selection.h"

namespace tarnby {

namespace {

/// Visits a path and every folder around it.
template <class Visit>
void for_each_around(std::string_view path, Visit visit) {
  for (; !path.empty(); path = path.substr(0, path.rfind('/'))) visit(path);
}

/// Finds the files that a location lists.
class Lookup {
 public:
  explicit Lookup(std::span<const std::shared_ptr<LargeFile>> files) {
    for (const auto& file : files) {
      const std::string_view path = file->url_file.path();
      for_each_around(path, [&](std::string_view part) { within_[part].push_back(file.get()); });
      // Nothing is within what is no folder.
      if (file->type == "app" || file->type == "package") folders_.emplace(path, file.get());
    }
  }

  template <class Found>
  void find(const Url& location, Found found) const {
    const auto inside = within_.find(location.path());
    if (inside != within_.end()) std::ranges::for_each(inside->second, found);
    if (folders_.empty()) return;
    for_each_around(location.parent().path(), [&](std::string_view part) {
      const auto folder = folders_.find(part);
      if (folder != folders_.end()) found(folder->second);
    });
  }

 private:
  std::unordered_map<std::string_view, std::vector<const LargeFile*>> within_;
  std::unordered_map<std::string_view, const LargeFile*> folders_;
};

using Item = std::shared_ptr<CleanerItem>;

/// The records that hold what a category lists. Of clients that can be left out their own: what all of them come to
/// changes with those that are chosen.
std::vector<Item> items_of(const Cleaner& cleaner, const Category& category) {
  std::vector<Item> items;
  if (category.clients != nullptr) {
    for (const ClientRow& client : category.clients()) {
      if (!client.setting.empty()) items.push_back(cleaner.*client.item);
    }
  }
  if (items.empty()) items.push_back(cleaner.*category.item);
  return items;
}

/// The scans keep an item's locations in its files, or in those of its entries.
std::vector<Url> locations_in(const CleanerItem& item) {
  std::vector<Url> locations = item.files;
  for (const CleanerEntry& entry : item.items) {
    const auto of_entry = locations_of(entry);
    locations.insert(locations.end(), of_entry.begin(), of_entry.end());
  }
  return locations;
}

}  // namespace

AlsoListed also_listed(const Cleaner& cleaner, std::span<const std::shared_ptr<LargeFile>> files) {
  AlsoListed told;
  const Lookup lookup(files);
  const auto tell = [&](const Url& location, const char* label) {
    lookup.find(location, [&](const LargeFile* file) {
      std::vector<const char*>& labels = told[file];
      if (std::ranges::find(labels, label) == labels.end()) labels.push_back(label);
    });
  };
  for (const Category& category : smart_categories()) {
    for (const Item& item : items_of(cleaner, category)) {
      if (!item) continue;
      for (const Url& location : locations_in(*item)) tell(location, category.label);
    }
  }
  tell(cleaner.url_downloads, category_row("downloads")->label);
  return told;
}

}  // namespace tarnby
