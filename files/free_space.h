#pragma once

#include <cstdint>
#include <optional>

#include "files/granted_folders.h"
#include "files/url.h"

namespace tarnby {

/// A disk as the system tells of it (statvfs(3)), in bytes.
struct DiskSpace {
  /// What this user may still write. What was removed may come back to it later: other programs may hold a file open,
  /// and some disks take their time.
  std::int64_t free = 0;
  std::int64_t whole = 0;
};

/// That of the disk that holds the folder; none when it cannot be told. Any thread may call.
std::optional<DiskSpace> disk_space(const GrantedFolders& granted, const Url& folder);

/// DiskSpace::free of that disk, likewise.
std::optional<std::int64_t> free_bytes(const GrantedFolders& granted, const Url& folder);

}  // namespace tarnby
