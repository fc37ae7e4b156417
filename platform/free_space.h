#pragma once

#include <cstdint>
#include <optional>

#include "platform/granted_folders.h"
#include "platform/url.h"

namespace tarnby {

/// Bytes that this user may still write to the disk that holds the folder, as the system tells (statvfs(3)); none when
/// it cannot be told. What was removed may come back to it later: other programs may hold a file open, and some disks
/// take their time. Any thread may call.
std::optional<std::int64_t> free_bytes(const GrantedFolders& granted, const Url& folder);

}  // namespace tarnby
