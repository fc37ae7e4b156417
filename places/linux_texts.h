#pragma once

#include "text/localization.h"

// Why something in a home of the Linux kind is offered, and what happens once it is gone. "%@" is what the offer is
// about: the owner's name, or a folder's. A text that several categories use stands here.

namespace tarnby::linux_texts {

inline constexpr const char* cache = english("%@ keeps copies here to be faster.");
inline constexpr const char* cache_after =
    english("They are made or loaded again when %@ needs them; it may start a little slower once.");
inline constexpr const char* loaded_again = english("It is loaded again over the network when it is needed.");
inline constexpr const char* made_again = english("It is made again by itself within seconds.");

}  // namespace tarnby::linux_texts
