#pragma once

#include "app/smart/warning_cleanup_view_controller.h"
#include "engine/cleaner.h"

namespace tarnby {

/// What the ticks of both category pages would remove now, as somebody is asked about it. Downloads are never among
/// it: no run removes them.
RemovalQuestion junk_choice(const Cleaner& cleaner);

}  // namespace tarnby
