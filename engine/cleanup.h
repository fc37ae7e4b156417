#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "engine/cleaner_item.h"
#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

class Cleaner;

/// A category of the removal run.
struct CleanupCategory {
  /// The setting that switches it, which is also its name.
  std::string_view setting;
  std::string_view label;
  std::shared_ptr<CleanerItem> Cleaner::*item;
  /// Downloads count towards what would be cleaned, but no run removes them, and that is meant.
  bool is_removed = true;
  /// What the run had to leave is told to whoever can go on with it.
  bool tells_what_is_left = false;
};

/// All of them, in the order in which they are counted and removed.
std::span<const CleanupCategory> cleanup_categories();

/// Those that a junk scan fills: the first six.
std::span<const CleanupCategory> junk_categories();

/// What a removal run did, for those who show more than its handler can tell them.
struct CleanupReport {
  /// How the run is watched and ended; set before it. The sizes of all categories are counted by the engine also when
  /// it was stopped; what really went is in `removals`.
  RemovalOptions options;
  /// What became of each location of `Cleaner::cleanup_files`, in that order.
  std::vector<Removal> removals;
  /// The locations in the Trash and among the large files that could not be removed and are still there.
  std::vector<Url> left;
};

}  // namespace tarnby
