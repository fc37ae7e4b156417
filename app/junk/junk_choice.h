#pragma once

#include <cstdint>
#include <span>

#include "app/junk/junk_rows.h"
#include "app/smart/warning_cleanup_view_controller.h"

namespace tarnby {

class Cleaner;

/// What the ticks of both category pages would remove now, as somebody is asked about it. Downloads are never among
/// it: no run removes them.
RemovalQuestion junk_choice(const Cleaner& cleaner);

/// Bytes of what is ticked in these rows, each location counted once.
std::int64_t ticked_bytes(const Cleaner& cleaner, std::span<const JunkRow> rows);

}  // namespace tarnby
