#include "platform/free_space.h"

#include <sys/statvfs.h>

namespace tarnby {

std::optional<std::int64_t> free_bytes(const GrantedFolders& granted, const Url& folder) {
  const Descriptor place = granted.open_place(folder);
  struct statvfs disk = {};
  if (!place || uninterrupted([&] { return fstatvfs(place.get(), &disk); }) != 0) return {};
  const std::uint64_t unit = disk.f_frsize != 0 ? disk.f_frsize : disk.f_bsize;
  std::int64_t bytes = 0;
  if (__builtin_mul_overflow(static_cast<std::uint64_t>(disk.f_bavail), unit, &bytes)) return {};
  return bytes;
}

}  // namespace tarnby
