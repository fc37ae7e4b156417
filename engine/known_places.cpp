#include "engine/known_places.h"

#include <algorithm>
#include <span>

#include "places/macos_home.h"

namespace tarnby {

namespace {

bool has_one(const FileManager& files, const Url& home, std::span<const std::string_view> places) {
  return std::any_of(places.begin(), places.end(), [&](std::string_view place) {
    const Status status = files.status(home.appending(place));
    return status.kind == EntryKind::folder || look_error(status.error) != LookError::none;
  });
}

}  // namespace

KnownPlaces KnownPlaces::look(const FileManager& files, const Url& home) {
  const LookWatch told_by_others(LookWatch::Tells::here);
  return {has_one(files, home, macos_home::known_library_places), has_one(files, home, macos_home::known_trash_places),
          has_one(files, home, macos_home::known_download_places)};
}

bool KnownPlaces::serves(std::string_view type) const {
  if (type == "installs") return downloads;
  // Where there is a Library, a missing Trash is an empty one.
  return library || (trash && (type == "trash" || type == "Trash"));
}

}  // namespace tarnby
