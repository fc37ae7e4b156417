#pragma once

#include <optional>

#include "platform/file_metadata.h"

namespace tarnby {

/// True when an application counts as unused: its content changed thirty or more days ago, and it was opened thirty or
/// more days ago, or never as far as is known. One whose change is not known is never unused.
bool counts_as_unused(std::optional<Moment> used, std::optional<Moment> changed, Moment now);

}  // namespace tarnby
