#pragma once

#include <cstddef>
#include <string>

namespace tarnby {

/// What came of reading a small file.
enum class SmallFileLook {
  read,
  /// There is none, or what stands there is no plain file; it is not opened then.
  absent,
  /// It is there and could not be read whole, or holds more bytes than were allowed.
  unreadable,
};

/// Whether a link of the name itself is followed: only for what the system or another program lists by links.
enum class LastLink { refused, followed };

/// Makes `bytes` the whole content of a plain file below an open folder; at most `most` bytes. `name` may be a path of
/// several names; links before its last one are followed. Reading leaves no time of access where the system permits
/// it. Files of proc(5), which have no length, are read to their end. Any thread may call.
SmallFileLook read_small_file_at(int parent, const char* name, LastLink link, std::size_t most, std::string& bytes);

/// The same for what a listing has just found to be a plain file, which is asked no second time; no link is followed.
SmallFileLook read_listed_file_at(int parent, const char* name, std::size_t most, std::string& bytes);

}  // namespace tarnby
