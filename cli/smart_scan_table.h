#pragma once

#include "cli/context.h"
#include "engine/cleaner.h"

namespace tarnby::cli {

/// Prints the seven groups with their rows and sizes. In a window, of a long group only the beginning.
void print_smart_scan(Context& context, const Cleaner& cleaner);

}  // namespace tarnby::cli
