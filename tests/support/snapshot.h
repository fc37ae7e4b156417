#pragma once

#include <map>
#include <set>
#include <string>

namespace tarnby::test {

/// Everything below a folder by its path: kind, size, modification time, permissions, and where a link points.
using Snapshot = std::map<std::string, std::string>;

Snapshot snapshot_of(const std::string& folder);

/// The snapshot as it must be after these entries were taken away with all below them and nothing else was done.
/// Folders that lost an entry, which changes them, are only told to be there.
Snapshot without(Snapshot before, const std::set<std::string>& removed);
/// The snapshot afterwards, for comparing with `without`.
Snapshot after_losing(Snapshot after, const std::set<std::string>& removed);

}  // namespace tarnby::test
