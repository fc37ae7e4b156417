#include "platform/app_settings.h"

#include <algorithm>
#include <iterator>

namespace tarnby {

namespace {

using enum SettingType;

constexpr SettingRow rows[] = {
    {"Caches", boolean, true},
    {"Logs", boolean, true},
    {"Remainders", boolean, true},
    {"Browsers", boolean, false},
    {"Mails", boolean, true},
    {"Downloads", boolean, false},
    {"Trash", boolean, true},
    {"LargeFiles", boolean, {}},
    {"GoogleChrome", boolean, {}},
    {"Mozilla", boolean, {}},
    {"Safari", boolean, {}},
    {"home", data, {}},
    {"Applications", data, {}},
    {"PrivacyAccess", boolean, {}},
    {"PrivacyFullDisk", boolean, {}},
    {"appLaunchCount", integer, {}, true},
    {"UOLaunchCount", integer, {}, true},
    {"Uninstaller Orvane", boolean, {}},
    {"UOAppearence", integer, {}},  // the key as users' files have it
    {"RateOnStore", boolean, {}},
    {"TotallyCleaned", integer, {}, true},
    {"Scheduler", boolean, {}},
    {"EnableScheduler", boolean, {}},
    {"SkipWarning", boolean, {}},
    {"CleanupReady", boolean, {}},
    {"include_user_apps", integer, {}},
    {"includeDefaultApps", integer, {}},
    {"includeUtilities", integer, {}},
    {"AllowAny", integer, {}},
    {"macOS", data, {}},
    {"helper_url", location, {}},
    {"application_support_url", location, {}},
};

/// The value as a whole number, when it is one or a flag.
std::optional<std::int64_t> number_of(const std::optional<PropertyList>& value) {
  if (!value) return std::nullopt;
  if (const auto* flag = value->as<bool>()) return *flag ? 1 : 0;
  if (const auto* number = value->as<std::int64_t>()) return *number;
  return std::nullopt;
}

}  // namespace

std::span<const SettingRow> setting_rows() {
  return rows;
}

const SettingRow* setting_row(std::string_view key) {
  const auto* found = std::ranges::find(rows, key, &SettingRow::key);
  return found == std::end(rows) ? nullptr : found;
}

bool AppSettings::boolean(std::string_view key) const {
  if (const auto number = number_of(store_.value(key))) return *number != 0;
  const SettingRow* row = setting_row(key);
  return row != nullptr && row->launch_default.value_or(false);
}

std::int64_t AppSettings::integer(std::string_view key) const {
  const std::int64_t number = number_of(store_.value(key)).value_or(0);
  const SettingRow* row = setting_row(key);
  return row != nullptr && row->is_sum ? std::max<std::int64_t>(0, number) : number;
}

Url AppSettings::location(std::string_view key) const {
  const auto value = store_.value(key);
  const auto* path = value ? value->as<std::string>() : nullptr;
  return path ? Url::file(*path) : Url();
}

void AppSettings::initialize_applications_settings() {
  for (const SettingRow& row : rows) {
    if (row.launch_default) set_boolean(row.key, *row.launch_default);
  }
}

void AppSettings::count_launch() {
  initialize_applications_settings();
  add_integer("appLaunchCount", 1);
  if (!boolean("Uninstaller Orvane")) add_integer("UOLaunchCount", 1);
}

}  // namespace tarnby
