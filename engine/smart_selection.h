#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "engine/cleaner_item.h"
#include "files/url.h"

namespace tarnby {

class Cleaner;

/// The locations that removing one row of a smart scan takes, in the row's order. They live as long as the row.
std::span<const Url> locations_of(const CleanerEntry& entry);

/// Bytes of one row of a smart scan.
std::int64_t size_of(const CleanerEntry& entry);

/// What is handed to the engine for removal.
struct SmartSelection {
  std::vector<Url> files;
  /// The rows that they belong to, for `Cleaner::smart_amount`.
  std::vector<CleanerEntry> entries;
  /// The sizes of the groups that something was chosen from, as the engine counts them.
  std::int64_t bytes = 0;
};

/// Everything in the groups of these types after a smart scan, in the fixed order of the groups whatever order is asked
/// for. A group without rows adds nothing.
SmartSelection select_groups(const Cleaner& cleaner, std::span<const std::string_view> types);

}  // namespace tarnby
