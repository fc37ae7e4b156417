#include <algorithm>
#include <array>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/setting_values.h"
#include "cli/table.h"
#include "leftovers/folder_grants.h"

namespace tarnby::cli {

namespace {

constexpr std::array grants = {Grant::home, Grant::applications, Grant::disk};

/// What is written here is meant to be kept, so the same setting must not be given for this run only.
void refuse_value_for_this_run(Context& context, std::string_view key) {
  if (!given_for_this_run(context.asked, key)) return;
  throw CommandError(wrong_usage, "\"" + std::string(key) +
                                      "\" cannot be stored and be given for this run only at once; leave the option "
                                      "for this run out");
}

void need_saved(Context& context, bool is_saved) {
  if (!is_saved) throw CommandError(no_access, "the settings" + not_saved_text(context.session()));
}

/// The value as the program reads it, so that a key never written shows what it stands for.
Json effective_value(const AppSettings& settings, const SettingRow& row) {
  if (row.type == SettingType::boolean) return settings.boolean(row.key);
  if (row.type == SettingType::integer) return settings.integer(row.key);
  const auto value = settings.store().value(row.key);
  return value ? json_setting(*value) : Json();
}

std::string readable(const Json& value) {
  if (value.is_null()) return "not given";
  return value.is_string() ? one_line(value.get<std::string>()) : json_text_of(value);
}

void print_settings(Context& context, std::span<const SettingRow> rows) {
  Json values = Json::object();
  for (const SettingRow& row : rows) {
    values[std::string(row.key)] = effective_value(context.settings(), row);
  }
  if (context.asked.json) {
    context.out << json_line(values);
    return;
  }
  Table table({Table::Align::left, Table::Align::left}, 0);
  for (const auto& [key, value] : values.items()) table.line({key, readable(value)});
  table.print(context.out);
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
  refuse_value_for_this_run(context, name);
  const Url folder = real_folder(typed_path(typed));
  if (folder.empty()) {
    throw CommandError(no_access, "\"" + one_line(typed) + "\" is missing or not a folder; nothing was stored");
  }
  FolderGrants access(context.platform);
  need_saved(context, access.store(*grant, folder));
  const GrantState state = access.check(*grant);
  if (context.asked.json) {
    const Json result = {{"key", name}, {"path", json_text(state.folder.path())}, {"valid", state.is_valid}};
    context.out << json_line(result);
  } else if (state.is_valid) {
    context.out << "Granted: " << name << " is " << one_line(state.folder.path()) << '\n';
  } else if (state.fault == GrantFault::other_owner) {
    context.out << "Stored, but not valid: " << one_line(state.folder.path()) << " belongs to another user.\n";
  } else {
    context.out << "Stored, but not valid: " << one_line(state.folder.path()) << " is not named \""
                << one_line(state.expected_name) << "\".\n";
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
    PropertyList value = setting_value(row.key, arguments[1]);
    refuse_value_for_this_run(context, row.key);
    context.settings().store().set(row.key, std::move(value));
    need_saved(context, context.settings().synchronize());
  }
  print_settings(context, {&row, 1});
  return done;
}

}  // namespace tarnby::cli
