#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// One profile of a program made by Mozilla, or of one built on theirs.
struct MozillaProfile {
  Url folder;
  /// What its owner calls it; empty when only an installation names it.
  std::string name;
  /// True when an installation starts with it. `Default=1` of a profile says no such thing: it stands beside one that
  /// is not used.
  bool is_used = false;
};

/// The profiles that a program lists in profiles.ini and installs.ini (either may be empty), in the order in which they
/// are listed, each folder once. Both lie in `base`, such as "~/.mozilla/firefox".
///
/// Only folders below `base` are taken: what the lists name elsewhere, by an absolute path or by "..", is nobody's to
/// touch because a list says so. The folders need not exist.
std::vector<MozillaProfile> mozilla_profiles(const Url& base, std::string_view profiles_ini,
                                             std::string_view installs_ini);

}  // namespace tarnby
