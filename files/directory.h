#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/descriptor.h"
#include "files/entry_kind.h"
#include "files/terminated_name.h"

namespace tarnby {

/// Recognises an entry, whatever its path: its file system and its number there (inode(7)).
struct Identity {
  dev_t device = 0;
  ino_t number = 0;
  friend bool operator==(const Identity&, const Identity&) = default;
  friend bool operator<(const Identity& a, const Identity& b) {
    return a.device != b.device ? a.device < b.device : a.number < b.number;
  }
};

/// What the system tells about one entry.
struct Status {
  EntryKind kind = EntryKind::none;
  /// Logical length in bytes of a file or of a link's own text; 0 for everything else.
  std::int64_t size = 0;
  Identity identity;
  /// Why the other fields are empty (errno(3)); 0 when they are filled.
  int error = 0;
};

/// What one entry takes on the disk.
struct DiskStatus {
  EntryKind kind = EntryKind::none;
  Identity identity = {};
  /// Of the blocks that were written for it.
  std::int64_t bytes = 0;
  /// How many names it has.
  std::uint64_t names = 0;
  /// When its content was changed: seconds since 1970.
  std::int64_t changed = 0;
  uid_t owner = 0;
  /// Why the other fields are empty (errno(3)); 0 when they are filled.
  int error = 0;
};

/// One entry as a folder lists it. `name` is valid until the reader's next `read`.
struct RawEntry {
  TerminatedName name;
  EntryKind kind;
};

/// Reads the entries of open folders, batch by batch, without "." and "..". For one thread at a time.
class DirectoryReader {
 public:
  DirectoryReader();
  ~DirectoryReader();
  DirectoryReader(const DirectoryReader&) = delete;
  DirectoryReader& operator=(const DirectoryReader&) = delete;

  /// The next entries of the folder, in the order in which the file system lists them. Empty at the end, and when the
  /// folder cannot be read (getdents64(2)), see `error`. Each has a kind; an entry whose kind cannot be found out is
  /// left out.
  std::span<const RawEntry> read(int folder);

  /// Why the last `read` is incomplete (errno(3)), else 0. Every failure to read on is EIO: a folder that could be
  /// opened may be read, so it is no lack of permission.
  int error() const { return error_; }

  /// True when the last batch filled the buffer so far that another one is likely to follow.
  bool likely_more() const { return likely_more_; }

 private:
  /// The kind of an entry, for file systems that do not list it with the name.
  EntryKind ask_kind(int folder, const char* name);

  std::unique_ptr<char[]> buffer_;
  std::vector<RawEntry> entries_;
  int error_ = 0;
  bool likely_more_ = false;
};

// What follows works on open folders; a name is one component in the folder that `parent` is open to. Any thread may
// call.

/// A path handle of a folder: for looking up entries below it, not for listing it. A link of that name is not followed.
/// Empty when it cannot be opened; errno(3) says why.
Descriptor open_path_handle_at(int parent, const char* name);

/// The same, following a link of that name: only for what lies above a granted folder.
Descriptor open_path_handle_following(int parent, const char* name);

/// A handle for listing a folder; a link of that name is not followed. Where the system permits it, listing does not
/// change the access times of the folder and of the files in it. Empty when it cannot be opened; errno(3) says why.
Descriptor open_folder_at(int parent, const char* name);

/// open_path_handle_at and open_folder_at for a path of several names, with one system call. No link in the path is
/// followed, and nothing outside `parent` is reached. Empty with ENOSYS where the system has no such call.
Descriptor open_path_handle_beneath(int parent, const char* path);
Descriptor open_folder_beneath(int parent, const char* path);

/// As open_folder_at, without a change of access times either, and refused when another file system or a bind mount
/// begins there (openat2(2)).
Descriptor open_folder_on_same_mount(int parent, const char* name);

/// A handle for reading a plain file. Links are not followed; a FIFO or a device never makes it wait.
Descriptor open_file_at(int parent, const char* name);

/// The same, every link on the way followed: only for what the system and its package formats list, never for what is
/// to be removed.
Descriptor open_folder_following(int parent, const char* name);
Descriptor open_file_following(int parent, const char* name);

/// A handle for writing a plain file, likewise. When there is none it is made, readable for this user only.
Descriptor open_file_for_writing_at(int parent, const char* name);

/// Makes a folder for this user alone; false when something stands there that is no folder, or it cannot be made.
bool make_folder_at(int parent, const char* name);

/// As open_path_handle_at, and refused when another file system or a bind mount begins there.
Descriptor open_path_handle_on_same_mount(int parent, const char* name);

/// Gives the owner of an open folder, of which `handle` may be a path handle, all rights in it; other rights in its
/// mode stay. True when the owner has them afterwards. False, and nothing is changed, when that is another user.
bool unlock_folder(int handle);

/// What an open folder holds under a name; a link itself, not what it points to. When there is nothing, or it cannot be
/// found out, `error` says which.
Status status_at(int parent, const char* name);

/// What an entry takes on the disk; a link itself, not what it points to.
DiskStatus disk_status_at(int parent, const char* name);
DiskStatus disk_status_of(int handle);

/// The length in bytes of a file or of a link's own text; 0 for other entries. -1 when that cannot be found out, also
/// because there is no such entry; errno(3) says why.
std::int64_t size_at(int parent, const char* name);

/// What an open handle is open to.
Status status_of(int handle);

/// True when both handles are known to be open to entries of one file system; false, too, when that is unknown.
bool on_same_device(int handle, int other);

/// Renames an entry of an open folder without replacing another: false with EEXIST when the new name is taken. False
/// with another errno(3) when it cannot be renamed.
bool rename_to_free_name_at(int folder, const char* from, const char* to);
/// The same for an entry named by its path.
bool rename_to_free_name(const std::string& from, const std::string& to);

/// How many removals at once are fastest on the file system that holds this folder, at least 1; measured, see where it
/// is defined.
unsigned removal_threads_for(int folder);

/// How often the calling thread has had to wait since it began: for a disk, and for anything at all. Two results tell
/// by their difference whether a call waited; nothing else follows from the numbers.
struct ThreadWaits {
  long for_disk = 0;
  long for_anything = 0;
};
ThreadWaits waits_of_this_thread();

/// Lets this process hold as many open handles as the system allows (setrlimit(2)); once, at the start of a program.
void raise_handle_limit();

/// How many handles this process may hold open.
std::size_t handle_limit();

/// How many more it may open now; counted only when the limit is low, else the limit itself.
std::size_t spare_handles();

}  // namespace tarnby
