#include "app/junk/also_listed.h"

#include <algorithm>
#include <string_view>

#include "engine/smart_selection.h"
#include "text/localization.h"

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

struct Source {
  const char* label;
  std::shared_ptr<CleanerItem> Cleaner::*item;
};

/// Of the browsers their own records: what all of them come to changes with the browsers that are chosen.
constexpr Source sources[] = {
    {english("Applications caches"), &Cleaner::apps_caches_item},
    {english("Applications logs"), &Cleaner::apps_logs_item},
    {english("Applications remainders"), &Cleaner::apps_remainders_item},
    {english("Browsers"), &Cleaner::browser_chrome_item},
    {english("Browsers"), &Cleaner::browser_mozilla_item},
    {english("Browsers"), &Cleaner::browser_safari_item},
    {english("Mail attachments"), &Cleaner::mails_item},
    {english("Trash Bin"), &Cleaner::trash_item},
    {english("Installation files"), &Cleaner::install_files_item},
};

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
  for (const Source& source : sources) {
    const auto& item = cleaner.*source.item;
    if (!item) continue;
    for (const Url& location : locations_in(*item)) tell(location, source.label);
  }
  tell(cleaner.url_downloads, english("Downloads"));
  return told;
}

}  // namespace tarnby
