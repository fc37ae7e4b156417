#pragma once

class QApplication;

namespace tarnby {

/// Gives everything that is not drawn by our own widgets (menus, choosers, tool tips) the window's colours, and takes
/// over from the desktop's files whether things may move.
void take_desktop_look();

/// Connects to the desktop's bus, which the menu bar and the accessibility need in any case.
void connect_to_desktop();

/// Asks the desktop's portal the same, which answers later; where there is none, nothing happens. Not needed for the
/// first picture.
void ask_portal_for_stillness(QApplication& application);

}  // namespace tarnby
