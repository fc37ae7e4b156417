#include "platform/bookmarks.h"

#include <sys/stat.h>

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

bool Bookmarks::store(Grant grant, const Url& folder) {
  settings_.set(grant_key(grant), bookmark_data(folder));
  return settings_.synchronize();
}

Url Bookmarks::resolve(Grant grant) const {
  const auto value = settings_.value(grant_key(grant));
  const auto* data = value ? value->as<PropertyList::Data>() : nullptr;
  return data ? real_folder(bookmarked_folder(*data)) : Url();
}

Url Bookmarks::resolve_and_access(Grant grant) {
  Url folder = resolve(grant);
  if (folder.empty() || !granted_.add(grant, folder)) return {};
  return folder;
}

}  // namespace tarnby
