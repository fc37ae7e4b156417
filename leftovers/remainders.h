#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "leftovers/cache.h"
#include "leftovers/remainder_item.h"

namespace tarnby {

class AppSettings;
class ApplicationDelegate;
class FileManager;
class Platform;

// How leftovers are found
//
// Caches, containers, saved state, scripts and preferences are named by bundle identifiers. A name of at least three
// parts that no installed application owns is an orphan:
//
//     owned      com.example.editor
//     Caches     com.example.editor    com.gone.tool         candidates: the first is owned, the second an orphan
//     Preferences com.gone.tool.plist                        files of com.gone.tool: both entries that contain it
//
// An entry belongs to an orphan when its path contains the identifier, so com.gone.toolkit goes to com.gone.tool too.
//
// When the search for applications failed somewhere, or an application that it found could not be read, that one may
// own anything: then nothing is a leftover.

/// Finds the files of removed applications. Synchronous, on the caller's thread; no failure is reported; one search at
/// a time.
class Remainders {
 public:
  /// The one of this process. Any thread may call.
  static Remainders& sharedRemainder();

  /// Resolves the stored grants and begins to access them; without them every search finds nothing.
  Remainders(Platform& platform, const Cache& cache);

  // The fields. They hold the results of the last run until the next.
  ApplicationDelegate* appDelegate;
  AppSettings* app_settings;
  FileManager* defaultManager;
  Url url_applications;
  Url url_home;
  Url url_library;
  /// The application bundles that the last search went by.
  std::vector<Url> installedApplications;
  /// Result of `unused_apps`.
  std::vector<Url> unusedApps;
  std::vector<Url> unusedApplications;
  RemainderItems remaindersItems;
  /// Bytes. Never reset: each `smart_remianders` adds its sum to that of the searches before it. People read the sum of
  /// the listed entries instead.
  std::int64_t totalRemaidersSize = 0;

  /// Every leftover file or folder, orphan by orphan. Looks for applications itself, at the top of Documents and
  /// Desktop only; sets `installedApplications`.
  std::vector<Url> remianders();

  /// The leftovers with content, one item per removed application, sorted by label. Goes by the applications of the
  /// last cache search.
  RemainderItems smart_remianders();

  /// How well the last search of either kind knew the applications.
  const KnownApplications& known_applications() const { return known_applications_; }

  /// The name shown for an identifier of at least two parts: "com.example.photoEditor" gives "PhotoEditor by Example".
  std::string setLabel(std::string_view identifier) const;

  /// Fills `unusedApps`: those of `installedApplications` that changed and were used 30 or more days ago.
  void unused_apps();

  /// The localisation folders of `installedApplications` that the user's languages do not need, in discovery order; a
  /// remainder search must have run before. Apple's applications are left out, but for its office suite. A folder that
  /// two of the tests meet is listed twice.
  std::vector<Url> language_packages() const;

  // As those of Measurer.

  std::int64_t overall_size_of_direcory(const Url& folder);
  std::int64_t overall_size_of_files(std::span<const Url> urls);

 private:
  struct Orphan;
  std::vector<Url> find_applications();
  std::vector<Orphan> orphans(const std::unordered_set<std::string>& owned) const;
  bool is_unused(const Url& application) const;

  KnownApplications known_applications_;
  const Cache& cache_;
  Platform& platform_;
};

}  // namespace tarnby
