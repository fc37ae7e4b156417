#include <algorithm>
#include <array>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/setting_values.h"
#include "leftovers/folder_grants.h"

namespace tarnby::cli {

namespace {

constexpr std::array grants = {Grant::home, Grant::applications, Grant::disk};

void save(Context& context) {
  if (context.platform.app_settings.synchronize()) return;
  const Url folder = context.platform.session.settings_folder;
  throw CommandError(no_access,
                     "the settings could not be saved" +
                         (folder.empty() ? ": no settings folder is known; set HOME or XDG_CONFIG_HOME"
                                         : " in " + one_line(folder.path()) +
                                               "; check that it can be written and that the disk is not full"));
}

/// The value as the program reads it, so that a key never written shows what it stands for.
Json effective_value(const AppSettings& settings, const SettingRow& row) {
  if (row.type == SettingType::boolean) return settings.boolean(row.key);
  if (row.type == SettingType::integer) return settings.integer(row.key);
  const auto value = settings.store().value(row.key);
  return value ? json_setting(*value) : Json();
}

void print_settings(Context& context, std::span<const SettingRow> rows) {
  Json values = Json::object();
  for (const SettingRow& row : rows) {
    values[std::string(row.key)] = effective_value(context.platform.app_settings, row);
  }
  if (context.asked.json) {
    context.out << values.dump() << '\n';
    return;
  }
  for (const auto& [key, value] : values.items()) {
    context.out << key << " = " << (value.is_string() ? one_line(value.get<std::string>()) : value.dump()) << '\n';
  }
}

}  // namespace

ExitStatus run_grant(Context& context) {
  const std::string& name = context.asked.arguments[0];
  const std::string& typed = context.asked.arguments[1];
  const auto* grant = std::find_if(grants.begin(), grants.end(), [&](Grant each) { return grant_key(each) == name; });
  if (grant == grants.end()) {
    throw CommandError(wrong_usage,
                       "there is no grant \"" + one_line(name) + "\"; grants are home, Applications and macOS");
  }
  const Url folder = real_folder(typed_path(typed));
  if (folder.empty()) {
    throw CommandError(no_access, one_line(typed) + " is missing or not a folder; nothing was stored");
  }
  FolderGrants access(context.platform);
  access.store(*grant, folder);
  save(context);
  const GrantState state = access.check(*grant);
  if (context.asked.json) {
    const Json result = {{"key", name}, {"path", json_text(state.folder.path())}, {"valid", state.is_valid}};
    context.out << result.dump() << '\n';
  } else if (state.is_valid) {
    context.out << "Granted: " << name << " is " << one_line(state.folder.path()) << '\n';
  } else {
    context.out << "Stored, but not valid: " << one_line(state.folder.path()) << " is not named \""
                << one_line(state.expected_name) << "\"\n";
  }
  return done;
}

ExitStatus run_settings(Context& context) {
  const auto& arguments = context.asked.arguments;
  if (arguments.empty()) {
    print_settings(context, setting_rows());
    return done;
  }
  const SettingRow& row = known_setting(arguments[0]);
  if (arguments.size() > 1) {
    context.platform.app_settings.store().set(row.key, setting_value(row.key, arguments[1]));
    save(context);
  }
  print_settings(context, {&row, 1});
  return done;
}

}  // namespace tarnby::cli
