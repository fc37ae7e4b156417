#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "engine/offered_item.h"
#include "files/home_kind.h"
#include "places/desktop_entries.h"
#include "places/linux_places.h"
#include "platform/running_programs.h"

namespace tarnby {

class Platform;

/// What a home of the Linux kind offers, as one scan sees it: the applications that are installed and the programs that
/// run are looked at once, when it is made. For the thread of the scan.
class HomeOffers {
 public:
  /// @param home the granted home folder.
  HomeOffers(Platform& platform, const Url& home);
  HomeOffers(const HomeOffers&) = delete;
  HomeOffers& operator=(const HomeOffers&) = delete;

  /// The rows of a category by its type in the smart scan, measured, the largest first; of the same size as the tables
  /// have them. None for a category that such a home does not have.
  OfferedItems rows(std::string_view type);

  const LinuxPlaces& home() const { return home_; }

 private:
  Platform& platform_;
  const UserFolders folders_;
  const RegistryPlaces registry_;
  const DesktopEntries applications_;
  const RunningPrograms programs_;
  const LinuxPlaces home_;
};

/// The bytes that the disk gives back for each location alone, in the order of the list.
std::vector<std::int64_t> frees_of(FileManager& files, std::span<const Url> urls);

}  // namespace tarnby
