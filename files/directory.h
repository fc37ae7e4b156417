#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/descriptor.h"
#include "files/entry_kind.h"

namespace tarnby {

/// What makes an entry the same one as before: its file system and its number there (inode(7)).
struct Identity {
  dev_t device = 0;
  ino_t number = 0;
  friend bool operator==(const Identity&, const Identity&) = default;
};

/// What the system tells about one entry.
struct Status {
  EntryKind kind = EntryKind::none;
  /// Logical length in bytes of a file or of a link's own text; 0 for everything else.
  std::int64_t size = 0;
  Identity identity;
  /// Why nothing is told (errno(3)); 0 when something is.
  int error = 0;
};

/// One entry as a folder gives it. `name` is followed by a NUL and lives until the reader reads again.
struct RawEntry {
  std::string_view name;
  EntryKind kind;
};

/// Reads the entries of open folders, batch by batch, without "." and "..". For one thread at a time.
class DirectoryReader {
 public:
  DirectoryReader();
  ~DirectoryReader();
  DirectoryReader(const DirectoryReader&) = delete;
  DirectoryReader& operator=(const DirectoryReader&) = delete;

  /// The next entries of the folder, in the order in which the file system gives them. Empty at the end, and when it
  /// cannot be read (getdents64(2)), see `error`. Their kinds are all told; an entry whose kind nobody tells is
  /// missing.
  std::span<const RawEntry> read(int folder);

  /// Why something is missing in what the last call gave (errno(3)), else 0. EIO when it could not read on, whatever
  /// the system said: an open folder may be read.
  int error() const { return error_; }

  /// True when the last batch filled the buffer well enough that another one is likely to follow.
  bool likely_more() const { return likely_more_; }

 private:
  /// What stands under a name, where the file system does not tell it with the name.
  EntryKind ask_kind(int folder, const char* name);

  std::unique_ptr<char[]> buffer_;
  std::vector<RawEntry> entries_;
  int error_ = 0;
  bool likely_more_ = false;
};

/// A handle for looking up entries below a folder, not for reading it. A link in its place is not followed. Empty when
/// it cannot be opened; errno(3) tells why.
Descriptor open_path_handle_at(int parent, const char* name);

/// The same, through a link if one stands there: only for what lies above a granted folder.
Descriptor open_path_handle_following(int parent, const char* name);

/// A handle for reading a folder's entries; a link in its place is not followed. Where the system permits it, reading
/// leaves the access time alone, here and in files.
Descriptor open_folder_at(int parent, const char* name);

/// open_path_handle_at and open_folder_at for a path of several names, in one step: a link anywhere in it is not
/// followed, and nothing that is not below `parent` is reached. Empty with ENOSYS where the system has no such step.
Descriptor open_path_handle_beneath(int parent, const char* path);
Descriptor open_folder_beneath(int parent, const char* path);

/// As open_folder_at, and refused when another file system or a bind mount begins there (openat2(2)).
Descriptor open_folder_on_same_mount(int parent, const char* name);

/// A handle for reading a plain file. Links are not followed; a FIFO or a device never makes it wait.
Descriptor open_file_at(int parent, const char* name);

/// A handle for writing a plain file, which is made, for this user alone, when there is none. Likewise.
Descriptor open_file_for_writing_at(int parent, const char* name);

/// Makes a folder for this user alone; false when something stands there that is no folder, or it cannot be made.
bool make_folder_at(int parent, const char* name);

/// What stands under a name in an open folder.
Status status_at(int parent, const char* name);

/// The length in bytes of the file or link that stands there; 0 for anything else. -1 when that cannot be told, be it
/// that nothing is there; errno(3) tells why.
std::int64_t size_at(int parent, const char* name);

/// What an open handle stands for.
Status status_of(int handle);

/// True when both are known to lie in one file system.
bool on_same_device(int handle, int other);

/// Renames an entry and never replaces another; false with EEXIST when there is something under the new name.
bool rename_to_free_name(const std::string& from, const std::string& to);

/// How many removals at once serve the file system best that holds this folder.
unsigned removal_threads_for(int folder);

/// How often the calling thread has had to wait since it began: until a disk was read, and until anything happened.
struct ThreadWaits {
  long for_disk = 0;
  long for_anything = 0;
};
ThreadWaits waits_of_this_thread();

/// Lets this process hold as many open handles as the system allows (setrlimit(2)); once, at the start of a program.
void raise_handle_limit();

/// How many handles this process may hold open.
std::size_t handle_limit();

/// How many more it may open now. Counted only where the limit is low enough to matter.
std::size_t spare_handles();

}  // namespace tarnby
