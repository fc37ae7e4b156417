#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "files/descriptor.h"
#include "files/url.h"

namespace tarnby {

/// The whole new content of a file on its way into the file's place, so that no reader ever sees a part of it. It
/// stands beside that file, under its name with ".unfinished-" and six characters more, and is removed at the end
/// unless it took the file's place. It is locked as long (flock(2)).
class TemporaryFile {
 public:
  /// Makes it, empty. When that fails there is no file, and `write` returns false.
  /// @param beside the absolute path of the file whose place it is to take.
  explicit TemporaryFile(const std::string& beside);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Writes the content, with the permissions of `mode`. True when all of it has reached the disk.
  bool write(std::string_view bytes, mode_t mode);

  /// Takes the place of what stands under this name, also of a link; false when a folder stands there. The folder that
  /// holds it is flushed, too.
  bool replace(const std::string& path);
  /// The same where nothing is to be replaced: false when something stands there.
  bool move_to_free_name(const std::string& path);

 private:
  bool has_moved(const std::string& path);

  std::string name_;
  Descriptor file_;
};

/// Removes what a crash has left of temporary files beside this file: those that are older than a day and that no
/// process holds.
void remove_old_temporary_files(const std::string& beside);

/// Makes a folder, and those that are to hold it, for this user alone. Whether it is there in the end shows when
/// something is put into it.
void make_folders(const Url& folder);

}  // namespace tarnby
