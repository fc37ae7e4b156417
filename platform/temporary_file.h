#pragma once

#include <sys/types.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "platform/descriptor.h"
#include "platform/url.h"

namespace tarnby {

/// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// The whole new content of a file on its way into the file's place, so that nobody ever sees a part of it. It stands
/// beside that file, under its name with a dot and six characters more, and is removed at the end unless it took the
/// file's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& beside);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// True when all of it has reached the disk.
  bool write(std::string_view bytes, mode_t mode);

  /// Takes the place of what stands under this name, be it a link; false when a folder does. The folder that holds it
  /// is flushed, too.
  bool replace(const std::string& path);

 private:
  std::string name_;
  Descriptor file_;
};

/// Makes a folder, and those that are to hold it, for this user alone. Whether it is there in the end shows when
/// something is put into it.
void make_folders(const Url& folder);

}  // namespace tarnby
