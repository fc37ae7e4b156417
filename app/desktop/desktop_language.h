#pragma once

#include <QApplication>

#include "text/localization.h"

namespace tarnby {

/// Lets the toolkit follow the language of the window: its own texts, such as those of the folder chooser, where the
/// desktop has them in that language, and the side on which lines begin.
void apply_desktop_language(QApplication& application, const Localization& localization);

}  // namespace tarnby
