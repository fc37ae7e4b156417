#include "files/directory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

// What POSIX gives alike on every system; the rest is beside, in the folder of each.

namespace tarnby {

namespace {

EntryKind kind_of_mode(mode_t mode) {
  if (S_ISREG(mode)) return EntryKind::file;
  if (S_ISDIR(mode)) return EntryKind::folder;
  return S_ISLNK(mode) ? EntryKind::link : EntryKind::other;
}

Status status_from(const struct stat& info) {
  Status status;
  status.kind = kind_of_mode(info.st_mode);
  const bool counts = status.kind == EntryKind::file || status.kind == EntryKind::link;
  status.size = counts ? std::int64_t{info.st_size} : 0;
  status.identity = {info.st_dev, info.st_ino};
  return status;
}

DiskStatus disk_status_from(const struct stat& info) {
  constexpr std::int64_t block = 512;  // whatever st_blksize says
  return {.kind = kind_of_mode(info.st_mode),
          .identity = {info.st_dev, info.st_ino},
          .bytes = std::int64_t{info.st_blocks} * block,
          .names = info.st_nlink,
          .changed = std::int64_t{info.st_mtime},
          .owner = info.st_uid};
}

Status untold(int why) {
  Status status;
  status.error = why;
  return status;
}

/// Opens for reading without a trace in the access time, which only the owner may; others leave one.
Descriptor open_for_reading_at(int parent, const char* name, int flags) {
  const auto open = [&](int more) {
    return uninterrupted([&] { return openat(parent, name, O_RDONLY | O_CLOEXEC | flags | more); });
  };
#ifdef O_NOATIME
  const int handle = open(O_NOATIME);
  if (handle >= 0 || errno != EPERM) return Descriptor(handle);
#endif
  return Descriptor(open(0));
}

}  // namespace

Descriptor open_folder_at(int parent, const char* name) {
  return open_for_reading_at(parent, name, O_DIRECTORY | O_NOFOLLOW);
}

Descriptor open_file_at(int parent, const char* name) {
  return open_for_reading_at(parent, name, O_NONBLOCK | O_NOCTTY | O_NOFOLLOW);
}

Descriptor open_folder_following(int parent, const char* name) {
  return open_for_reading_at(parent, name, O_DIRECTORY);
}

Descriptor open_file_following(int parent, const char* name) {
  return open_for_reading_at(parent, name, O_NONBLOCK | O_NOCTTY);
}

Descriptor open_file_for_writing_at(int parent, const char* name) {
  constexpr int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  return Descriptor(uninterrupted([&] { return openat(parent, name, flags, 0600); }));
}

bool make_folder_at(int parent, const char* name) {
  return uninterrupted([&] { return mkdirat(parent, name, 0700); }) == 0 ||
         (errno == EEXIST && status_at(parent, name).kind == EntryKind::folder);
}

EntryKind DirectoryReader::ask_kind(int folder, const char* name) {
  const Status status = status_at(folder, name);
  if (status.error != 0 && status.error != ENOENT) error_ = status.error;
  return status.kind;
}

Status status_at(int parent, const char* name) {
  struct stat info = {};
  if (uninterrupted([&] { return fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW); }) != 0) return untold(errno);
  return status_from(info);
}

std::int64_t size_at(int parent, const char* name) {
  struct stat info;  // asked for every file there is, so it is not cleared first
  if (uninterrupted([&] { return fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW); }) != 0) return -1;
  return S_ISREG(info.st_mode) || S_ISLNK(info.st_mode) ? std::int64_t{info.st_size} : 0;
}

Status status_of(int handle) {
  struct stat info = {};
  if (uninterrupted([&] { return fstat(handle, &info); }) != 0) return untold(errno);
  return status_from(info);
}

DiskStatus disk_status_at(int parent, const char* name) {
  struct stat info;  // asked for every file there is, so it is not cleared first
  const int failed = uninterrupted([&] { return fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW); });
  return failed == 0 ? disk_status_from(info) : DiskStatus{.error = errno};
}

DiskStatus disk_status_of(int handle) {
  struct stat info;
  const int failed = uninterrupted([&] { return fstat(handle, &info); });
  return failed == 0 ? disk_status_from(info) : DiskStatus{.error = errno};
}

bool on_same_device(int handle, int other) {
  const Status one = status_of(handle);
  const Status two = status_of(other);
  return one.error == 0 && two.error == 0 && one.identity.device == two.identity.device;
}

void raise_handle_limit() {
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
#ifdef OPEN_MAX
  limit.rlim_cur = std::min(limit.rlim_max, rlim_t{OPEN_MAX});  // more is refused, even where no limit is told
#else
  limit.rlim_cur = limit.rlim_max;
#endif
  (void)setrlimit(RLIMIT_NOFILE, &limit);  // the old limit serves too, only slower in very deep trees
}

std::size_t handle_limit() {
  rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return 1024;
  return limit.rlim_cur;
}

std::size_t spare_handles() {
  constexpr std::size_t plenty = 256;
  const std::size_t limit = handle_limit();
  if (limit >= plenty) return limit;
  std::size_t spare = 0;
  for (int handle = 0; handle < static_cast<int>(limit); ++handle) {
    if (fcntl(handle, F_GETFD) < 0) ++spare;
  }
  return spare;
}

}  // namespace tarnby
