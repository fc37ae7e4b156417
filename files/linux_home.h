#pragma once

#include <string>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// Where the folders of a Linux home lie that its owner may have moved.
struct LinuxHome {
  Url home;
  /// Base folders (freedesktop.org, XDG base directories). One that is nowhere is where it is by default.
  /// What is kept in a moved one is kept in the default place, too.
  Url cache = {};
  Url config = {};
  Url data = {};
  Url state = {};
  /// What its owner calls their own, such as the folder for downloads, whatever its name.
  std::vector<Url> own = {};
};

/// Entries of one folder that are never removed whole.
struct KeptNames {
  Url folder;
  std::vector<std::string> names;
};

/// What such a home cannot do without, and whatever holds that.
std::vector<KeptNames> never_whole_in(const LinuxHome& home);

/// Folders and files with what opens other doors (keys, passwords, tokens) or exists nowhere else. Nothing in them is
/// ever removed.
std::vector<Url> never_touched_in(const LinuxHome& home);

/// True of an entry that is never removed for its name or that of a folder above it, at whatever depth in the home.
/// What the owner has thrown into the Trash goes all the same.
bool is_kept_by_name(const LinuxHome& home, const Url& entry);

}  // namespace tarnby
