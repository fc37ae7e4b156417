#pragma once

#include <string_view>

#include "files/granted_folders.h"
#include "files/url.h"
#include "platform/settings_store.h"

namespace tarnby {

/// The settings key under which a grant is stored: "home", "Applications", "macOS".
std::string_view grant_key(Grant grant);

/// The grants of folders, kept in the settings. Where the system confines no program, a grant is the folder's path, as
/// data. Any thread may call.
class Bookmarks {
 public:
  Bookmarks(SettingsStore& settings, GrantedFolders& granted) : settings_(settings), granted_(granted) {}

  /// Stores a grant for a folder and brings it to the disk at once; false when it did not get there.
  bool store(Grant grant, const Url& folder);

  /// The real path of the stored folder; nowhere when nothing is stored or the folder is gone.
  /// @param is_stale if not null, set to whether the system wants the user to be asked again some day.
  Url resolve(Grant grant, bool* is_stale = nullptr) const;

  /// As resolve, and from now on the folder's entries may be read and removed. Access is never stopped.
  Url resolve_and_access(Grant grant);

 private:
  SettingsStore& settings_;
  GrantedFolders& granted_;
};

/// The real path of an existing folder (realpath(3)); nowhere when there is none.
Url real_folder(const Url& folder);

/// True when this user (the effective one) owns the folder; false, too, when that is unknown.
bool belongs_to_this_user(const Url& folder);

/// The data that stands for a grant of this folder in the settings.
PropertyList bookmark_data(const Url& folder);

/// The folder that such data stands for; nowhere when it cannot be found any more. Where the system confines programs,
/// the folder is open to this one from then on.
/// @param is_stale set when the system wants the user to be asked again some day.
Url bookmarked_folder(const PropertyList::Data& data, bool& is_stale);

}  // namespace tarnby
