#pragma once

#include <memory>
#include <vector>

#include "files/url.h"
#include "platform/login_items.h"

namespace tarnby {

/// Login items as autostart entries of the desktop (freedesktop.org's rules for autostart folders). An entry is named
/// after the identifier; the program that it starts is what follows the identifier's last dot, as PATH finds it at
/// login. Where there is no such program the desktop passes the entry over.
///
/// An entry is written whole or not at all, and replaces whatever file or link stands under its name: a desktop cannot
/// have two, and one that is broken starts nothing. To disable, it is removed; where the system has an entry of that
/// name, one that hides it takes its place, since removing alone would let the system's come forth.
///
/// An identifier may have ASCII letters, digits, "-", "_" and dots with something between them; others are refused, for
/// they become a file name and a command.
///
/// @param own the user's entries; made when missing. Nowhere: nothing can be enabled.
/// @param system the folders of entries for all users.
/// @param programs the folders of PATH, in which the program of an identifier is looked for.
std::unique_ptr<LoginItems> autostart_entries(Url own, std::vector<Url> system, std::vector<Url> programs = {});

}  // namespace tarnby
