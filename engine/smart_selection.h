#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "engine/cleaner.h"

namespace tarnby {

/// The locations that removing one row of a smart scan takes, in the row's order.
std::vector<Url> locations_of(const CleanerEntry& entry);

/// Bytes of one row of a smart scan.
std::int64_t size_of(const CleanerEntry& entry);

/// What is handed to the engine for removal.
struct SmartSelection {
  std::vector<Url> files;
  /// The sizes of the groups that something was chosen from.
  std::int64_t bytes = 0;
};

/// Everything in the groups of these types after a smart scan, in the fixed order of the groups whatever order is asked
/// for. A group without rows adds nothing.
SmartSelection select_groups(const Cleaner& cleaner, std::span<const std::string_view> types);

}  // namespace tarnby
