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

/// @param length of the file; 0 when it is not known.
SmallFileLook read_to_end(int handle, std::size_t length, std::size_t most, std::string& bytes) {
  std::array<char, 16384> piece;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled before it is read
  do {
    const ssize_t got = uninterrupted([&] { return ::read(handle, piece.data(), piece.size()); });
    if (got == 0) break;
    if (got < 0 || static_cast<std::size_t>(got) > most - bytes.size()) return SmallFileLook::unreadable;
    bytes.append(piece.data(), static_cast<std::size_t>(got));
  } while (length == 0 || bytes.size() < length);
  return SmallFileLook::read;
}

SmallFileLook read_open_file(const Descriptor& handle, std::size_t most, std::string& bytes) {
  if (!handle) return look_of(errno);
  const Status status = status_of(handle.get());
  // Another entry may have taken its place meanwhile.
  if (status.kind != EntryKind::file) return SmallFileLook::absent;
  const SmallFileLook look = read_to_end(handle.get(), static_cast<std::size_t>(status.size), most, bytes);
  if (look != SmallFileLook::read) bytes.clear();
  return look;
}

}  // namespace

SmallFileLook read_small_file_at(int parent, const char* name, LastLink link, std::size_t most, std::string& bytes) {
  bytes.clear();
  const bool follows = link == LastLink::followed;
  const SmallFileLook standing = plain_file_at(parent, name, follows ? 0 : AT_SYMLINK_NOFOLLOW);
  if (standing != SmallFileLook::read) return standing;
  return read_open_file(follows ? open_file_following(parent, name) : open_file_at(parent, name), most, bytes);
}

SmallFileLook read_listed_file_at(int parent, const char* name, std::size_t most, std::string& bytes) {
  bytes.clear();
  return read_open_file(open_file_at(parent, name), most, bytes);
}

}  // namespace tarnby
