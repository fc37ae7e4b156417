#include "files/mount_points.h"

#include <sys/mount.h>

namespace tarnby {

std::vector<Url> mount_points() {
  const int count = getfsstat(nullptr, 0, MNT_NOWAIT);
  std::vector<struct statfs> table(count > 0 ? static_cast<std::size_t>(count) : 0);
  const int got = getfsstat(table.data(), static_cast<int>(table.size() * sizeof(struct statfs)), MNT_NOWAIT);
  table.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  std::vector<Url> points;
  for (const struct statfs& row : table) points.push_back(Url::file(row.f_mntonname));
  return points;
}

}  // namespace tarnby
