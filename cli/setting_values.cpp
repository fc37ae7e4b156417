#include "cli/setting_values.h"

#include <charconv>
#include <optional>

#include "cli/context.h"
#include "text/whole_number.h"

namespace tarnby::cli {

namespace {

/// true and false as 1 and 0, or a whole number.
std::optional<std::int64_t> typed_number(std::string_view typed) {
  if (typed == "true") return 1;
  if (typed == "false") return 0;
  return whole_number<std::int64_t>(typed);
}

}  // namespace

const SettingRow& known_setting(std::string_view key) {
  if (const SettingRow* row = setting_row(key)) return *row;
  throw CommandError(wrong_usage,
                     "there is no setting named \"" + one_line(key) + "\"; tarnby-cleaner-cli settings lists them");
}

PropertyList setting_value(std::string_view key, const std::string& typed) {
  const SettingRow& row = known_setting(key);
  if (row.type == SettingType::data || row.type == SettingType::date) {
    throw CommandError(wrong_usage, "\"" + std::string(key) +
                                        "\" takes no typed value; a folder is given with: tarnby-cleaner-cli grant " +
                                        std::string(key) + " DIR");
  }
  if (row.type == SettingType::location) {
    const Url place = typed_path(typed);
    if (place.empty()) throw CommandError(wrong_usage, "\"" + std::string(key) + "\" takes a path");
    return place.path();
  }
  const auto number = typed_number(typed);
  if (!number) {
    throw CommandError(wrong_usage, "\"" + std::string(key) + "\" takes true, false or a whole number, not \"" +
                                        one_line(typed) + "\"");
  }
  if (row.type == SettingType::boolean) return *number != 0;
  return *number;
}

std::string not_saved_text(const Session& session) {
  if (session.settings_folder.empty()) {
    return " could not be saved: no settings folder is known; set HOME or XDG_CONFIG_HOME";
  }
  return " could not be saved in \"" + one_line(session.settings_folder.path()) +
         "\"; check that it can be written and that the disk is not full";
}

}  // namespace tarnby::cli
