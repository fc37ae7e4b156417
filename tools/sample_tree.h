#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string_view>
#include <utility>

namespace tarnby {

/// Writes a sample home below one folder, which it finds empty, and replaces nothing. A path that begins with "~/" is
/// in the home folder, another one beside it. What cannot be made is thrown as a std::system_error.
class SampleTree {
 public:
  using Path = std::filesystem::path;

  SampleTree(Path root, std::string_view user) : root_(std::move(root)), home_(root_ / user) {}

  const Path& home() const { return home_; }
  Path applications() const { return root_ / "Applications"; }
  int entries() const { return entries_; }
  /// Of all files together.
  std::int64_t bytes() const { return bytes_; }

  Path place(std::string_view path) const { return path.starts_with("~/") ? home_ / path.substr(2) : root_ / path; }

  /// Whether a file takes room on the disk, or is a hole behind its content.
  enum class Room { none, taken };
  /// A file with that content, and `size` bytes in all.
  void file(const Path& path, std::string_view content, std::int64_t size, Room room = Room::none);
  void content(const Path& path, std::string_view bytes) { file(path, bytes, static_cast<std::int64_t>(bytes.size())); }
  void link(const Path& path, std::string_view target);

  /// Sets when an entry was last opened and changed.
  void date(const Path& path, int opened_days_ago, int changed_days_ago) const;

 private:
  Path root_;
  Path home_;
  std::time_t now_ = std::time(nullptr);
  int entries_ = 0;
  std::int64_t bytes_ = 0;
};

/// Fills a home of the Linux kind. Its files take room, since that is what such a home is measured by.
void add_linux_home(SampleTree& tree);

}  // namespace tarnby
