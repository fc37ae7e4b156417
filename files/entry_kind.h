#pragma once

#include <cstdint>

namespace tarnby {

/// What an entry is, links not followed. `none`: there is no such entry, or its kind is not known yet.
enum class EntryKind : std::uint8_t { none, file, folder, link, other };

}  // namespace tarnby
