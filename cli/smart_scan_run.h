#pragma once

#include <string>
#include <vector>

#include "cli/context.h"
#include "engine/cleaner.h"

namespace tarnby::cli {

/// Runs the smart scan in the background while this thread shows its progress.
/// @return the names of the notifications in the order in which they were posted.
std::vector<std::string> run_smart_scan(Context& context, Cleaner& cleaner);

}  // namespace tarnby::cli
