#pragma once

#include <string_view>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// Which of the places that the scans know a home folder has. A folder that has none of them is no such home, and
/// nothing in it can be called clean.
struct KnownPlaces {
  /// A Library with at least one of the folders that every Library gets.
  bool library = true;
  bool trash = true;
  /// One of the folders that installers are looked for in.
  bool downloads = true;

  /// A place that cannot be looked at counts as there: the search that reads it reports what it missed.
  static KnownPlaces look(const FileManager& files, const Url& home);

  /// False for a home in which nothing can be looked for.
  bool any() const { return library || trash || downloads; }
  /// Whether the group of this type, of either scan, has a place to look at.
  bool serves(std::string_view type) const;
};

}  // namespace tarnby
