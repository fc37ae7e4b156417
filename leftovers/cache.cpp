#include "leftovers/cache.h"

#include "files/bytes.h"
#include "inventory/application_search.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

/// One folder that may be an application's cache.
struct Cache::Candidate {
  Url url;
  /// The name as the user sees it, of the cache folder or of the container.
  std::string name;
  /// What shows its icon when no application is known.
  Url shown;
  /// Containers are named by identifier only, so labels are deliberately not tried for them.
  bool may_be_label;
};

Cache& Cache::sharedCache() {
  static Cache cache(Platform::shared(), Application::sharedApplication());
  return cache;
}

Cache::Cache(Platform& platform, const Application& inventory)
    : appDelegate(platform.application_delegate),
      app_settings(&platform.app_settings),
      defaultManager(&platform.files),
      url_applications(platform.bookmarks.resolve_and_access(Grant::applications)),
      url_home(platform.bookmarks.resolve_and_access(Grant::home)),
      url_library(url_home.appending(macos_home::library)),
      inventory_(inventory),
      measurer_(platform.measurer),
      text_(platform.text) {}

ApplicationItems Cache::installed_applications() {
  KnownApplications known;
  // Caches are found without them, and go by another name at most.
  const LookWatch folders(LookWatch::Tells::here);
  applications_urls = applications_of_the_user(*defaultManager, url_applications, url_home);
  known.folders = folders.missed();

  ApplicationItems items;
  ApplicationMap by_bundle;
  ApplicationMap by_name;
  for (const Url& url : applications_urls) {
    if (defaultManager->stopped_looking()) known.folders.stopped = true;
    if (known.folders.stopped) break;
    const LookWatch bundle;
    auto item = inventory_.application(url);
    known.note_bundle(url, bundle.missed());
    if (!item->bundle) continue;
    by_bundle[*item->bundle] = item;
    by_name[item->label] = item;
    items.push_back(std::move(item));
  }
  known_applications_ = std::move(known);
  bundles = std::move(by_bundle);
  names = std::move(by_name);
  return items;
}

std::vector<Cache::Candidate> Cache::candidates() const {
  std::vector<Candidate> found;
  for (const Entry& entry : defaultManager->list(url_library.appending(macos_home::caches))) {
    if (entry.kind != EntryKind::folder) continue;
    found.push_back({entry.url, defaultManager->display_name(entry), entry.url, true});
  }
  for (const Entry& entry : defaultManager->list(url_library.appending(macos_home::containers))) {
    if (entry.kind != EntryKind::folder) continue;
    found.push_back(
        {entry.url.appending(macos_home::container_caches), defaultManager->display_name(entry), entry.url, false});
  }
  return found;
}

void Cache::plan_sizes() {
  std::vector<Url> urls;
  for (Candidate& candidate : candidates()) urls.push_back(std::move(candidate.url));
  measurer_.plan(urls);
}

std::shared_ptr<CacheItem> Cache::item_for(const Candidate& candidate) const {
  if (const auto known = bundles.find(candidate.name); known != bundles.end()) {
    return CacheItem::withApplicationItem(*known->second);
  }
  if (const auto known = names.find(candidate.name); candidate.may_be_label && known != names.end()) {
    return CacheItem::withApplicationItem(*known->second);
  }
  auto item = std::make_shared<CacheItem>();
  item->label = candidate.name;
  item->image = Image::icon_of(candidate.shown);
  return item;
}

std::pair<CacheItems, std::int64_t> Cache::search() {
  installed_applications();
  CacheItems items;
  std::int64_t total = 0;
  const std::vector<Candidate> found = candidates();
  std::vector<std::int64_t> sizes(found.size());
  // The last first, to which the workers come last: that is one wait instead of one a folder.
  for (std::size_t at = found.size(); at-- > 0 && !defaultManager->stopped_looking();) {
    sizes[at] = overall_size_of_direcory(found[at].url);
  }
  for (std::size_t at = 0; at < found.size() && !defaultManager->stopped_looking(); ++at) {
    total = add_bytes(total, sizes[at]);
    if (sizes[at] <= 0) continue;
    auto item = item_for(found[at]);
    item->url = found[at].url;
    item->size = sizes[at];
    items.push_back(std::move(item));
  }
  text_.sort_by_label(items, [](const auto& item) -> const std::string& { return item->label; });
  cacheItems = items;
  return {std::move(items), total};
}

CacheItems Cache::smart_caches() {
  totalCacheSize = 0;
  auto [items, total] = search();
  totalCacheSize = total;
  return items;
}

void Cache::caches(const std::function<void(bool)>& handler) {
  search();
  handler(true);
}

std::int64_t Cache::overall_size_of_direcory(const Url& folder) {
  return measurer_.overall_size_of_direcory(folder);
}

std::int64_t Cache::overall_size_of_files(std::span<const Url> urls) {
  return measurer_.overall_size_of_files(urls);
}

}  // namespace tarnby
