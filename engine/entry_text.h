#pragma once

#include <string>
#include <string_view>

#include "engine/cleaner_item.h"
#include "files/url.h"

namespace tarnby {

/// How people call a client that the engine knows by its type: "Google Chrome" for "chrome".
std::string client_name(std::string_view type);

/// The path as it is shown to people: "~/Library/Caches" below the home folder.
std::string short_path(const Url& url, const Url& home);

/// What people call a row of a smart scan: an application's name, a file's, that of a browser or mail program. The
/// bytes of file names are as the file system has them.
std::string label_of(const CleanerEntry& entry);

/// Roughly where the first location of a row lies: "~/Library/Caches", "~/Library/Containers/…". Tells rows of the same
/// label apart. Empty for a row without locations.
std::string place_of(const CleanerEntry& entry, const Url& home);

}  // namespace tarnby
