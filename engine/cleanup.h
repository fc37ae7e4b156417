#pragma once

#include <vector>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

// "Cleanup" is the removal of the categories that the settings switch on, "clean" that of the rows chosen after a smart
// scan, "cleaned" what people read as gone.

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
