#pragma once

class QApplication;

namespace tarnby {

/// Gives everything that is not drawn by our own widgets (menus, choosers, tool tips) the window's colours, and takes
/// over from the desktop what concerns drawing: whether things may move.
void take_desktop_look(QApplication& application);

}  // namespace tarnby
