#pragma once

#include <string>
#include <string_view>

namespace tarnby {

/// A name for a folder while it is being emptied: hidden, and unlike any other.
std::string new_removal_remnant_name();

/// True for such a name: what bears it is what an interrupted removal has left of a folder.
bool is_removal_remnant(std::string_view name);

}  // namespace tarnby
