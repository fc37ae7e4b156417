#include "platform/disk_space.h"

#include <sys/statvfs.h>

namespace tarnby {

std::optional<DiskSpace> disk_space(const GrantedFolders& granted, const Url& folder) {
  const Descriptor handle = granted.open_place(folder);
  struct statvfs told = {};
  if (!handle || ::fstatvfs(handle.get(), &told) != 0) return std::nullopt;
  const auto bytes = [&](auto blocks) {
    return static_cast<std::int64_t>(blocks) * static_cast<std::int64_t>(told.f_frsize);
  };
  return DiskSpace{bytes(told.f_bavail), bytes(told.f_blocks)};
}

}  // namespace tarnby
