#include "files/directory.h"

#include <fcntl.h>
#include <sys/attr.h>
#include <sys/stat.h>
#include <sys/vnode.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tarnby {

namespace {

constexpr std::size_t buffer_size = std::size_t{64} * 1024;

#ifdef O_SEARCH
constexpr int place_flags = O_SEARCH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int place_flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

EntryKind kind_of_type(fsobj_type_t type) {
  switch (type) {
    case VREG:
      return EntryKind::file;
    case VDIR:
      return EntryKind::folder;
    case VLNK:
      return EntryKind::link;
    case VNON:
      return EntryKind::none;
    default:
      return EntryKind::other;
  }
}

/// Takes the next field out of a record; fields are packed, at multiples of four bytes.
template <typename Field>
Field take(const char*& at) {
  Field field;
  std::memcpy(&field, at, sizeof field);
  at += sizeof field;
  return field;
}

}  // namespace

DirectoryReader::DirectoryReader() : buffer_(new char[buffer_size]) {}
DirectoryReader::~DirectoryReader() = default;

std::span<const RawEntry> DirectoryReader::read(int folder) {
  entries_.clear();
  error_ = 0;
  attrlist wanted = {};
  wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
  wanted.commonattr = ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_NAME | ATTR_CMN_ERROR | ATTR_CMN_OBJTYPE;
  while (entries_.empty()) {
    const int got = uninterrupted([&] { return getattrlistbulk(folder, &wanted, buffer_.get(), buffer_size, 0); });
    if (got < 0) error_ = EIO;
    if (got <= 0) break;
    const char* record = buffer_.get();
    for (int count = 0; count < got; ++count) {
      const char* field = record;
      const auto length = take<std::uint32_t>(field);
      const auto told = take<attribute_set_t>(field);
      if ((told.commonattr & ATTR_CMN_ERROR) != 0) (void)take<std::uint32_t>(field);
      const char* name = nullptr;
      if ((told.commonattr & ATTR_CMN_NAME) != 0) {
        name = field;
        name += take<attrreference_t>(field).attr_dataoffset;
      }
      EntryKind kind = EntryKind::none;
      if ((told.commonattr & ATTR_CMN_OBJTYPE) != 0) kind = kind_of_type(take<fsobj_type_t>(field));
      if (name && kind == EntryKind::none) kind = ask_kind(folder, name);
      if (name && kind != EntryKind::none) entries_.push_back({name, kind});
      record += length;
    }
    likely_more_ = static_cast<std::size_t>(record - buffer_.get()) > buffer_size / 2;
  }
  return entries_;
}

Descriptor open_path_handle_at(int parent, const char* name) {
  return Descriptor(uninterrupted([&] { return openat(parent, name, place_flags | O_NOFOLLOW); }));
}

Descriptor open_path_handle_following(int parent, const char* name) {
  return Descriptor(uninterrupted([&] { return openat(parent, name, place_flags); }));
}

Descriptor open_path_handle_beneath(int /*parent*/, const char* /*path*/) {
  errno = ENOSYS;
  return {};
}

Descriptor open_folder_beneath(int /*parent*/, const char* /*path*/) {
  errno = ENOSYS;
  return {};
}

Descriptor open_folder_on_same_mount(int parent, const char* name) {
  Descriptor folder = open_folder_at(parent, name);
  if (folder && !on_same_device(folder.get(), parent)) {
    folder.reset();
    errno = EXDEV;
  }
  return folder;
}

Descriptor open_path_handle_on_same_mount(int parent, const char* name) {
  Descriptor folder = open_path_handle_at(parent, name);
  if (folder && !on_same_device(folder.get(), parent)) {
    folder.reset();
    errno = EXDEV;
  }
  return folder;
}

bool unlock_folder(int handle) {
  struct stat info = {};
  if (uninterrupted([&] { return fstat(handle, &info); }) != 0) return false;
  if (!S_ISDIR(info.st_mode) || info.st_uid != geteuid()) return false;
  const mode_t mode = static_cast<mode_t>(info.st_mode & 07777) | S_IRWXU;
  return uninterrupted([&] { return fchmod(handle, mode); }) == 0;
}

ThreadWaits waits_of_this_thread() {
  thread_local long asked = 0;  // the system does not tell: every question counts as a wait
  return {++asked, 0};
}

bool rename_to_free_name_at(int folder, const char* from, const char* to) {
  return uninterrupted([&] { return renameatx_np(folder, from, folder, to, RENAME_EXCL); }) == 0;
}

bool rename_to_free_name(const std::string& from, const std::string& to) {
  return rename_to_free_name_at(AT_FDCWD, from.c_str(), to.c_str());
}

unsigned removal_threads_for(int /*folder*/) {
  return 2;  // not measured on any of this system's disks
}

}  // namespace tarnby
