#include "platform/bookmarks.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace tarnby {

std::string_view grant_key(Grant grant) {
  switch (grant) {
    case Grant::home:
      return "home";
    case Grant::applications:
      return "Applications";
    case Grant::disk:
      return "macOS";
  }
  return {};
}

Url real_folder(const Url& folder) {
  if (!folder.is_file_url()) return {};
  const std::unique_ptr<char, decltype(&std::free)> path(realpath(folder.path().c_str(), nullptr), &std::free);
  if (!path) return {};
  struct stat info = {};
  if (uninterrupted([&] { return stat(path.get(), &info); }) != 0 || !S_ISDIR(info.st_mode)) return {};
  return Url::file(path.get());
}

bool belongs_to_this_user(const Url& folder) {
  struct stat info = {};
  return uninterrupted([&] { return stat(folder.path().c_str(), &info); }) == 0 && info.st_uid == geteuid();
}

bool Bookmarks::store(Grant grant, const Url& folder) {
  settings_.set(grant_key(grant), bookmark_data(folder));
  return settings_.synchronize();
}

Url Bookmarks::resolve(Grant grant, bool* is_stale) const {
  const auto value = settings_.value(grant_key(grant));
  const auto* data = value ? value->as<PropertyList::Data>() : nullptr;
  bool stale = false;
  Url folder = data ? real_folder(bookmarked_folder(*data, stale)) : Url();
  if (is_stale != nullptr) *is_stale = stale;
  return folder;
}

Url Bookmarks::resolve_and_access(Grant grant) {
  Url folder = resolve(grant);
  if (folder.empty() || !granted_.add(grant, folder)) return {};
  return folder;
}

}  // namespace tarnby
