#pragma once

#include <cstdint>

#include "platform/app_settings.h"

namespace tarnby {

/// Adds the bytes of one cleaning to the lifetime total "TotallyCleaned" and brings it to the disk. Called once for
/// each cleaning, by whoever shows its result.
/// @param is_saved whether the disk took it; may be null.
/// @return the new total in bytes; it is kept for a later attempt when the disk did not take it.
std::int64_t add_to_lifetime_total(AppSettings& settings, std::int64_t was_cleaned, bool* is_saved = nullptr);

}  // namespace tarnby
