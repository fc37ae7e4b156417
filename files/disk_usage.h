#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// What some entries take on the disk, a folder with all that is below it.
struct DiskUsage {
  /// Bytes of their blocks, of the folders' own as well. What has several names counts once, a sparse file what is
  /// written of it.
  std::int64_t size = 0;
  /// Bytes that the disk gives back when they are removed: all but what has a name elsewhere, too.
  std::int64_t frees = 0;
  /// When the newest of the files and links was changed, or, where there is none, the newest of the folders; seconds
  /// since 1970. 0 when there is nothing.
  std::int64_t newest = 0;
  /// Names of all that is no folder.
  std::int64_t files = 0;
  /// Something is mounted at or below one of them. Neither that nor what is in it is counted.
  bool has_mounts = false;

  friend bool operator==(const DiskUsage&, const DiskUsage&) = default;
};

/// Measures several rows of entries at once, each on its own: what two rows have in common counts in both, what an
/// entry has in common with another one of its row counts once. Links are not followed, what does not exist counts 0. A
/// folder of this user's own that is closed even to him counts as empty. What else is missed, or left out after
/// FileManager::stop_looking, is noted on the calling thread (see note_missed).
///
/// Waits until all is measured. Memory grows with the folders at hand, and with the names of files that have several.
/// Any thread may call.
std::vector<DiskUsage> disk_usage(FileManager& files, std::span<const std::vector<Url>> rows);

}  // namespace tarnby
