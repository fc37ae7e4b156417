#pragma once

#include <cstdint>
#include <optional>

#include "platform/granted_folders.h"
#include "platform/url.h"

namespace tarnby {

/// A disk as the system reports it, in bytes.
struct DiskSpace {
  /// What people may still write.
  std::int64_t free = 0;
  std::int64_t whole = 0;
};

/// That of the disk that holds a folder at or below a grant; none when the system does not tell. May wait for a disk
/// that is not at hand. Any thread may call.
std::optional<DiskSpace> disk_space(const GrantedFolders& granted, const Url& folder);

}  // namespace tarnby
