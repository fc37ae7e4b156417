#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "inventory/application.h"
#include "leftovers/cache_item.h"
#include "leftovers/known_applications.h"

namespace tarnby {

class AppSettings;
class ApplicationDelegate;
class FileManager;
class Measurer;
class Platform;
class Text;

/// Finds the cache folders of the user's account and ties them to installed applications. Synchronous, on the caller's
/// thread; no failure is reported; one search at a time.
class Cache {
 public:
  using ApplicationMap = std::unordered_map<std::string, std::shared_ptr<ApplicationItem>>;

  /// The one of this process. Any thread may call.
  static Cache& sharedCache();

  /// Resolves the stored grants and begins to access them; without them every search finds nothing.
  Cache(Platform& platform, const Application& inventory);

  // The fields. They hold the results of the last run until the next.
  ApplicationDelegate* appDelegate;
  AppSettings* app_settings;
  FileManager* defaultManager;
  Url url_applications;
  Url url_home;
  Url url_library;
  /// Every bundle that `installed_applications` found, in discovery order.
  std::vector<Url> applications_urls;
  /// By identifier; of several with the same one, the last found.
  ApplicationMap bundles;
  /// By label; of several with the same one, the last found.
  ApplicationMap names;
  CacheItems cacheItems;
  /// Bytes found by the last `smart_caches`.
  std::int64_t totalCacheSize = 0;

  /// The applications on the disk that have an identifier, in discovery order; replaces `applications_urls`, `bundles`
  /// and `names`.
  ApplicationItems installed_applications();

  /// The cache folders with content, sorted by label; replaces `cacheItems` and `totalCacheSize`.
  CacheItems smart_caches();

  /// The same search without touching `totalCacheSize`; calls the handler with true on this thread.
  void caches(const std::function<void(bool)>& handler);

  /// How well the last `installed_applications` knows them.
  const KnownApplications& known_applications() const { return known_applications_; }

  /// Begins to measure what `smart_caches` will ask for, when a Measurer::SizeMemory exists; returns at once.
  void plan_sizes();

  // As those of Measurer.

  std::int64_t overall_size_of_direcory(const Url& folder);
  std::int64_t overall_size_of_files(std::span<const Url> urls);

 private:
  struct Candidate;

  std::vector<Candidate> candidates() const;
  std::shared_ptr<CacheItem> item_for(const Candidate& candidate) const;
  std::pair<CacheItems, std::int64_t> search();

  const Application& inventory_;
  Measurer& measurer_;
  const Text& text_;
  KnownApplications known_applications_;
};

}  // namespace tarnby
