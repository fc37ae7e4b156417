#include "files/small_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "files/descriptor.h"
#include "files/directory.h"

namespace tarnby {

namespace {

SmallFileLook look_of(int error) {
  return error == ENOENT || error == ENOTDIR ? SmallFileLook::absent : SmallFileLook::unreadable;
}

/// Asked before opening: even to open a FIFO for a moment would wake whoever waits at its other end.
SmallFileLook plain_file_at(int parent, const char* name, int flags) {
  struct stat info = {};
  if (uninterrupted([&] { return fstatat(parent, name, &info, flags); }) != 0) return look_of(errno);
  return S_ISREG(info.st_mode) ? SmallFileLook::read : SmallFileLook::absent;
}

Descriptor open_following_at(int parent, const char* name) {
  constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const auto open = [&](int more) { return uninterrupted([&] { return openat(parent, name, flags | more); }); };
#ifdef O_NOATIME
  const int handle = open(O_NOATIME);
  if (handle >= 0 || errno != EPERM) return Descriptor(handle);
#endif
  return Descriptor(open(0));
}

SmallFileLook read_to_end(int handle, std::size_t most, std::string& bytes) {
  std::array<char, 16384> piece;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled before it is read
  for (;;) {
    const ssize_t got = uninterrupted([&] { return ::read(handle, piece.data(), piece.size()); });
    if (got == 0) return SmallFileLook::read;
    if (got < 0 || static_cast<std::size_t>(got) > most - bytes.size()) return SmallFileLook::unreadable;
    bytes.append(piece.data(), static_cast<std::size_t>(got));
  }
}

}  // namespace

SmallFileLook read_small_file_at(int parent, const char* name, LastLink link, std::size_t most, std::string& bytes) {
  bytes.clear();
  const bool follows = link == LastLink::followed;
  const SmallFileLook standing = plain_file_at(parent, name, follows ? 0 : AT_SYMLINK_NOFOLLOW);
  if (standing != SmallFileLook::read) return standing;
  const Descriptor handle = follows ? open_following_at(parent, name) : open_file_at(parent, name);
  if (!handle) return look_of(errno);
  // Another entry may have taken its place meanwhile.
  if (status_of(handle.get()).kind != EntryKind::file) return SmallFileLook::absent;
  const SmallFileLook look = read_to_end(handle.get(), most, bytes);
  if (look != SmallFileLook::read) bytes.clear();
  return look;
}

}  // namespace tarnby
