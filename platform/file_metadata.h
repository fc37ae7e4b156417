#pragma once

#include <chrono>
#include <optional>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// A point in time, in whole seconds.
using Moment = std::chrono::sys_seconds;

/// What a metadata index would tell of an application. Each call looks anew; what cannot be found out is none. Any
/// thread may call. Without such an index, the file system's own times stand in:
/// inode(7).
class FileMetadata {
 public:
  virtual ~FileMetadata() = default;

  /// When the application was last used; none when it seems never to have been. On Linux the access time of its main
  /// executable, when that is later than the executable's modification time.
  virtual std::optional<Moment> last_used_date(const Url& application) const = 0;

  /// When its content last changed; none when there is no such folder. On Linux the bundle folder's modification time.
  virtual std::optional<Moment> content_change_date(const Url& application) const = 0;

  /// When any entry itself last changed; none when there is no such entry.
  virtual std::optional<Moment> modification_date(const Url& entry) const = 0;
};

/// The number of whole 24-hour periods from one moment to another; below 0 when the first is later.
std::int64_t days_between(Moment from, Moment to);

}  // namespace tarnby
