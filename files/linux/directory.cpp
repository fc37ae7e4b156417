#include "files/directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace tarnby {

namespace {

constexpr std::size_t buffer_size = std::size_t{64} * 1024;
constexpr int folder_flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// The record of getdents64(2), which the C library does not declare under this name.
struct linux_dirent {
  std::uint64_t d_ino;
  std::int64_t d_off;
  std::uint16_t d_reclen;
  std::uint8_t d_type;
  char d_name[1];
};

EntryKind kind_of_type(unsigned char type) {
  switch (type) {
    case DT_REG:
      return EntryKind::file;
    case DT_DIR:
      return EntryKind::folder;
    case DT_LNK:
      return EntryKind::link;
    case DT_UNKNOWN:
      return EntryKind::none;
    default:
      return EntryKind::other;
  }
}

/// True of an open folder that has no name any more.
bool is_removed(int folder) {
  struct stat info = {};
  return uninterrupted([&] { return fstat(folder, &info); }) == 0 && info.st_nlink == 0;
}

bool is_dot_or_dot_dot(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// openat2(2); where there is none, or a sandbox forbids it, ENOSYS or EPERM.
Descriptor open_resolving(int parent, const char* path, int flags, std::uint64_t resolve) {
  struct open_how how = {};
  how.flags = static_cast<std::uint64_t>(flags);
  how.resolve = resolve | RESOLVE_NO_SYMLINKS | RESOLVE_BENEATH;
  const long handle = uninterrupted([&] { return syscall(SYS_openat2, parent, path, &how, sizeof how); });
  return Descriptor(static_cast<int>(handle));
}

/// Empty with EXDEV when the folder is on another file system than its parent, which is all that a device number tells.
Descriptor unless_elsewhere(Descriptor folder, int parent) {
  if (folder && !on_same_device(folder.get(), parent)) {
    folder.reset();
    errno = EXDEV;
  }
  return folder;
}

}  // namespace

DirectoryReader::DirectoryReader() : buffer_(new char[buffer_size]) {}
DirectoryReader::~DirectoryReader() = default;

std::span<const RawEntry> DirectoryReader::read(int folder) {
  entries_.clear();
  error_ = 0;
  while (entries_.empty()) {
    const long got = uninterrupted([&] { return syscall(SYS_getdents64, folder, buffer_.get(), buffer_size); });
    if (got < 0 && !(errno == ENOENT && is_removed(folder))) error_ = EIO;
    if (got <= 0) break;
    likely_more_ = static_cast<std::size_t>(got) > buffer_size / 2;
    for (long at = 0; at < got;) {
      // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel lays the records out in this buffer.
      const auto* record = reinterpret_cast<const linux_dirent*>(buffer_.get() + at);
      at += record->d_reclen;
      const char* name =
          buffer_.get() + (reinterpret_cast<const char*>(record) - buffer_.get()) + offsetof(linux_dirent, d_name);
      if (is_dot_or_dot_dot(name)) continue;
      EntryKind kind = kind_of_type(record->d_type);
      if (kind == EntryKind::none) kind = ask_kind(folder, name);  // some file systems do not tell
      if (kind != EntryKind::none) entries_.push_back({name, kind});
    }
  }
  return entries_;
}

Descriptor open_path_handle_at(int parent, const char* name) {
  return Descriptor(uninterrupted([&] { return openat(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
}

Descriptor open_path_handle_following(int parent, const char* name) {
  return Descriptor(uninterrupted([&] { return openat(parent, name, O_PATH | O_DIRECTORY | O_CLOEXEC); }));
}

Descriptor open_path_handle_beneath(int parent, const char* path) {
  return open_resolving(parent, path, O_PATH | O_DIRECTORY | O_CLOEXEC, 0);
}

Descriptor open_folder_beneath(int parent, const char* path) {
  // Without a trace in the time of access, which only the owner may.
  Descriptor folder = open_resolving(parent, path, folder_flags | O_NOATIME, 0);
  if (folder || errno != EPERM) return folder;
  return open_resolving(parent, path, folder_flags, 0);
}

Descriptor open_folder_on_same_mount(int parent, const char* name) {
  // Without a trace in the time of access, which only the owner may.
  Descriptor folder = open_resolving(parent, name, folder_flags | O_NOATIME, RESOLVE_NO_XDEV);
  if (!folder && errno == EPERM) folder = open_resolving(parent, name, folder_flags, RESOLVE_NO_XDEV);
  if (folder || (errno != ENOSYS && errno != EPERM)) return folder;
  return unless_elsewhere(open_folder_at(parent, name), parent);
}

Descriptor open_path_handle_on_same_mount(int parent, const char* name) {
  Descriptor folder = open_resolving(parent, name, O_PATH | O_DIRECTORY | O_CLOEXEC, RESOLVE_NO_XDEV);
  if (folder || (errno != ENOSYS && errno != EPERM)) return folder;
  return unless_elsewhere(open_path_handle_at(parent, name), parent);
}

bool unlock_folder(int handle) {
  struct stat info = {};
  if (uninterrupted([&] { return fstat(handle, &info); }) != 0) return false;
  if (!S_ISDIR(info.st_mode) || info.st_uid != geteuid()) return false;
  if ((info.st_mode & S_IRWXU) == S_IRWXU) return true;
  const mode_t mode = (info.st_mode & 07777) | S_IRWXU;
  if (uninterrupted([&] { return fchmod(handle, mode); }) == 0) return true;
  // A path handle has no mode of its own to the system, but leads to what it is open to, wherever that is.
  return errno == EBADF && chmod(("/proc/self/fd/" + std::to_string(handle)).c_str(), mode) == 0;
}

unsigned removal_threads_for(int folder) {
  struct statfs info = {};
  if (fstatfs(folder, &info) != 0) return 1;
  switch (static_cast<unsigned long>(info.f_type)) {
    case EXT4_SUPER_MAGIC:
      return 8;  // measured: 0.37 of one thread's time, 0.5 with two threads
    case BTRFS_SUPER_MAGIC:
      return 1;  // measured: two threads are slower than one
    default:
      return 2;
  }
}

ThreadWaits waits_of_this_thread() {
  rusage used = {};
  if (getrusage(RUSAGE_THREAD, &used) != 0) return {};
  return {used.ru_inblock, used.ru_nvcsw};
}

bool rename_to_free_name_at(int folder, const char* from, const char* to) {
  const auto move = [&] { return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE); };
  if (uninterrupted(move) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // A file system without that operation. Others of this program who would take the name wait for a lock.
  const Status taken = status_at(folder, to);
  errno = taken.error == 0 ? EEXIST : taken.error;
  return errno == ENOENT && ::renameat(folder, from, folder, to) == 0;
}

bool rename_to_free_name(const std::string& from, const std::string& to) {
  return rename_to_free_name_at(AT_FDCWD, from.c_str(), to.c_str());
}

}  // namespace tarnby
