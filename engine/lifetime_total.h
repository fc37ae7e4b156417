#pragma once

#include <cstdint>

#include "platform/app_settings.h"

namespace tarnby {

/// Adds the bytes of one removal to the lifetime total "TotallyCleaned" and brings it to the disk; may wait a few
/// seconds for another program that holds the settings. For the terminal, once a run: the window adds the same way but
/// has the disk written in the background.
/// @param is_saved whether the disk took it; may be null.
/// @return the new total in bytes; it is kept for a later attempt when the disk did not take it.
std::int64_t add_to_lifetime_total(AppSettings& settings, std::int64_t was_cleaned, bool* is_saved = nullptr);

}  // namespace tarnby
