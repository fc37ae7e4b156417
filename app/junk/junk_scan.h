#pragma once

#include "app/parts/app_context.h"

namespace tarnby {

/// Begins the junk scan in the background, where it keeps the engine's turn until it is over. Main thread.
void begin_junk_scan(AppContext& context);

}  // namespace tarnby
