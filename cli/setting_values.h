#pragma once

#include <string>
#include <string_view>

#include "platform/app_settings.h"
#include "platform/session.h"
#include "text/property_list.h"

namespace tarnby::cli {

/// The row of a setting; throws CommandError when there is none of that name.
const SettingRow& known_setting(std::string_view key);

/// A typed value (true, false or a whole number) as the kind that the setting has; throws CommandError when it does not
/// fit, and for settings that no value can be typed for.
PropertyList setting_value(std::string_view key, const std::string& typed);

/// The end of a sentence on what did not reach the settings, with where that was and what to do.
std::string not_saved_text(const Session& session);

}  // namespace tarnby::cli
