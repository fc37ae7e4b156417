#include "tools/sample_tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>

#include "files/descriptor.h"
#include "tools/linux_home_files.h"

namespace tarnby {

namespace fs = std::filesystem;

namespace {

void must(bool worked, const fs::path& path) {
  if (!worked) throw std::system_error(errno, std::generic_category(), path.string());
}

constexpr int days_ago = 40;

}  // namespace

void SampleTree::file(const Path& path, std::string_view content, std::int64_t size, Room room) {
  fs::create_directories(path.parent_path());
  const Descriptor opened(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
  must(bool(opened), path);
  must(write(opened.get(), content.data(), content.size()) == static_cast<ssize_t>(content.size()), path);
  if (room == Room::taken) {
    errno = posix_fallocate(opened.get(), 0, size);  // it answers the error, and sets none
    must(errno == 0, path);
  } else {
    must(ftruncate(opened.get(), size) == 0, path);
  }
  ++entries_;
  bytes_ += size;
}

void SampleTree::link(const Path& path, std::string_view target) {
  fs::create_directories(path.parent_path());
  fs::create_symlink(target, path);
  ++entries_;
}

void SampleTree::date(const Path& path, int opened_days_ago, int changed_days_ago) const {
  const auto moment = [this](int days) {
    return timespec{now_ - std::chrono::seconds(std::chrono::days(days)).count(), 0};
  };
  const timespec times[] = {moment(opened_days_ago), moment(changed_days_ago)};
  must(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0, path);
}

void add_linux_home(SampleTree& tree) {
  for (const LinuxHomeFile& row : linux_home_files()) {
    const fs::path path = tree.home() / row.path;
    tree.file(path, {}, row.size, SampleTree::Room::taken);
    tree.date(path, days_ago, days_ago);
  }
  fs::create_directories(tree.home() / ".config/Signal/Local Storage");
  tree.content(tree.home() / ".local/share/Trash/info/letter.odt.trashinfo",
               "[Trash Info]\nPath=/home/sample/Documents/letter.odt\nDeletionDate=2026-10-02T09:41:00\n");
  tree.file(tree.home() / ".local/share/Trash/files/letter.odt", {}, 120'000, SampleTree::Room::taken);
}

}  // namespace tarnby
