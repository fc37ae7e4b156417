#pragma once

#include <span>
#include <string_view>

#include "cli/context.h"
#include "engine/cleaner.h"

namespace tarnby::cli {

/// Prints these groups of a smart scan, in the fixed order of the groups, with their rows and sizes. In a window, of a
/// long group only the beginning.
void print_smart_scan(Context& context, const Cleaner& cleaner, std::span<const std::string_view> groups);

/// The types of all groups, in their fixed order.
std::vector<std::string_view> all_groups();

}  // namespace tarnby::cli
