#include "tests/support/snapshot.h"

#include <sys/stat.h>

#include <filesystem>

namespace tarnby::test {

namespace fs = std::filesystem;

Snapshot snapshot_of(const std::string& folder) {
  Snapshot snapshot;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    struct stat info = {};
    (void)lstat(entry.path().c_str(), &info);
    std::string told = "mode " + std::to_string(info.st_mode) + ", " + std::to_string(info.st_size) + " bytes";
    if (S_ISLNK(info.st_mode)) told += ", to " + fs::read_symlink(entry.path()).string();
    told += ", changed " + std::to_string(info.st_mtim.tv_sec) + "." + std::to_string(info.st_mtim.tv_nsec);
    snapshot.emplace(entry.path().string(), told);
  }
  return snapshot;
}

Snapshot after_losing(Snapshot after, const std::set<std::string>& removed) {
  for (const std::string& entry : removed) {
    const auto folder = after.find(fs::path(entry).parent_path().string());
    if (folder != after.end()) folder->second = "folder";
  }
  return after;
}

Snapshot without(Snapshot before, const std::set<std::string>& removed) {
  for (const std::string& entry : removed) {
    std::erase_if(before, [&](const auto& held) { return held.first == entry || held.first.starts_with(entry + "/"); });
  }
  return after_losing(std::move(before), removed);
}

}  // namespace tarnby::test
