#pragma once

class QApplication;

/// What is asked of a freedesktop.org desktop over its session bus when the program starts. Main thread.
namespace tarnby {

/// Asks the desktop's portal whether things may move. It answers later; where there is none, nothing happens. Not
/// needed for the first picture.
void ask_portal_for_stillness(QApplication& application);

}  // namespace tarnby
