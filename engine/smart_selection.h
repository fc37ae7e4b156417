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

/// Bytes of one row of a smart scan: what the disk gives back where the row knows that.
std::int64_t size_of(const CleanerEntry& entry);

/// False while the program that a row belongs to runs: then nobody may tick it.
bool may_go(const CleanerEntry& entry);
/// Whether a row is ticked before a person has said anything. In a home of the macOS kind all rows are.
bool starts_ticked(const CleanerEntry& entry);

/// What is handed to the engine for removal.
struct SmartSelection {
  std::vector<Url> files;
  /// The rows that they belong to, for `Cleaner::smart_amount`.
  std::vector<CleanerEntry> entries;
  /// The sizes of the groups that something was chosen from, as the engine counts them.
  std::int64_t bytes = 0;
};

/// Which rows of a group a selection takes. In a home of the macOS kind there is no difference.
enum class RowsTaken {
  /// Those that are ticked before a person has said anything.
  ticked_at_first,
  /// Those that may lose something, too; never those whose program runs.
  all_that_may_go,
  /// All that are listed.
  listed,
};
bool is_taken(const CleanerEntry& entry, RowsTaken taken);

/// The rows in the groups of these types after a smart scan, in the fixed order of the groups whatever order is asked
/// for. A group without such rows adds nothing.
SmartSelection select_groups(const Cleaner& cleaner, std::span<const std::string_view> types,
                             RowsTaken taken = RowsTaken::ticked_at_first);

}  // namespace tarnby
