#pragma once

#include <string_view>

#include "text/localization.h"

namespace tarnby {

/// The window in one of its languages ("de").
Localization in_language(std::string_view language);

/// A language nobody speaks: every text that the tables have, half as long again, in letters that are still to be read
/// but are not English, and in brackets. What is cut, or does not go through the tables, shows.
Localization in_pseudo_language();

/// A text in that language.
std::string pseudo_text(std::string_view english);

}  // namespace tarnby
