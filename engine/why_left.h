#pragma once

#include <span>
#include <vector>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// Why a removal left an entry where it is.
enum class LeftReason {
  outside_grants,
  never_whole,
  not_attempted,
  stopped_within,
  changed_kind,
  other_disk,
  no_permission,
  guarded,
  read_only_disk,
  in_use,
  added_to,
  failing_disk,
  full_disk,
  too_many_open,
  no_memory,
  refused,
  came_back,
  owner_runs,
  owner_unknown,
  other_stays,
};

/// The reason that one result of FileManager::remove gives for an entry that is still there.
/// @param refused whether it is never removed whole (see FileManager::refuses_to_remove).
LeftReason why_left(const Removal& removal, bool refused);

/// The reason in English words that follow the entry's path and a colon: "it is in use". The window's tables of texts
/// have each of them.
const char* left_reason_text(LeftReason reason);

/// An entry that is still there.
struct LeftEntry {
  Url url;
  LeftReason reason = LeftReason::refused;
};

/// What is still there of a list after its removal, each location once, in the list's order. What is gone is not among
/// them, even when another program took it. Looks at the disk; any thread may call.
/// @param removals one for each location.
std::vector<LeftEntry> left_of(const FileManager& files, std::span<const Url> urls, std::span<const Removal> removals);

/// What a removal of this list is known to leave before it begins: those of the list that are refused, and what is
/// mounted at or inside the others. Each location once, in the list's order. More may stay: what else may stand in the
/// way shows when it is tried. Costs a look at each location and one at the mount table; any thread may call.
std::vector<LeftEntry> known_to_stay(const FileManager& files, std::span<const Url> urls);

}  // namespace tarnby
