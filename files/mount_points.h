#pragma once

#include <vector>

#include "files/url.h"

namespace tarnby {

/// Where file systems are mounted, folders and files bound to other places included, as far as the system tells this
/// process: those of its own mount table, at this moment. Costs one look at that table. Any thread may call.
std::vector<Url> mount_points();

}  // namespace tarnby
