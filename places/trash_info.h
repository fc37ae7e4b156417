#pragma once

#include <optional>
#include <string_view>

#include "files/url.h"
#include "platform/file_metadata.h"

namespace tarnby {

/// What a file of the Trash's "info" folder tells of the entry that was thrown away.
struct TrashInfo {
  /// Where it was, as the bytes of its path; nowhere when the file does not say so. For showing: nothing is at that
  /// place any more, or something else.
  Url original;
  /// When it was thrown away; none when the file does not say so.
  std::optional<Moment> deleted;
};

/// Reads a .trashinfo file (freedesktop.org, Trash 1.0, "Contents of a trash directory"). Its path is
/// percent-encoded, its date the local time of this machine. Of keys that are repeated the first counts; what is wrong
/// in one leaves the other.
TrashInfo read_trash_info(std::string_view bytes);

}  // namespace tarnby
