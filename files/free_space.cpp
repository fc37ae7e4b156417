#include "files/free_space.h"

#include <sys/statvfs.h>

namespace tarnby {

std::optional<DiskSpace> disk_space(const GrantedFolders& granted, const Url& folder) {
  const Descriptor handle = granted.open_path_handle(folder);
  struct statvfs disk = {};
  if (!handle || uninterrupted([&] { return fstatvfs(handle.get(), &disk); }) != 0) return {};
  const std::uint64_t unit = disk.f_frsize != 0 ? disk.f_frsize : disk.f_bsize;
  DiskSpace space;
  const auto told = [&](auto blocks, std::int64_t& bytes) {
    return !__builtin_mul_overflow(static_cast<std::uint64_t>(blocks), unit, &bytes);
  };
  if (!told(disk.f_bavail, space.free) || !told(disk.f_blocks, space.whole)) return {};
  return space;
}

std::optional<std::int64_t> free_bytes(const GrantedFolders& granted, const Url& folder) {
  const auto space = disk_space(granted, folder);
  if (!space) return {};
  return space->free;
}

}  // namespace tarnby
