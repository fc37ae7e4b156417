#pragma once

namespace tarnby {

/// Gives everything that is not drawn by our own widgets (menus, choosers, tool tips) the window's colours, and takes
/// over from the desktop's files whether things may move.
void apply_desktop_look();

}  // namespace tarnby
