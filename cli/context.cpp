#include "cli/context.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "cli/command_table.h"
#include "cli/confinement.h"
#include "cli/setting_values.h"
#include "places/home_kind.h"
#include "platform/platform.h"
#include "platform/system_services.h"

namespace tarnby::cli {

namespace {

/// A folder option, the grant it stands for, and how people call the folder.
struct FolderRow {
  Grant grant;
  std::optional<std::string> Invocation::*given;
  std::string_view option;
  std::string_view called;
};

constexpr std::array folder_rows = {
    FolderRow{Grant::home, &Invocation::home, "--home", "home folder"},
    FolderRow{Grant::applications, &Invocation::applications, "--applications", "Applications folder"},
    FolderRow{Grant::disk, &Invocation::disk, "--disk", "startup disk"},
};

void set_folders(const Invocation& asked, RunSettings& settings) {
  for (const FolderRow& row : folder_rows) {
    const auto& given = asked.*row.given;
    if (given) settings.set_for_this_run(grant_key(row.grant), bookmark_data(typed_path(*given)));
  }
  if (asked.disk) settings.set_for_this_run("AllowAny", 1);
}

std::string_view key_of(std::string_view key_and_value) {
  return key_and_value.substr(0, key_and_value.find('='));
}

void set_settings(const Invocation& asked, RunSettings& settings) {
  for (const std::string& given : asked.settings) {
    const std::string_view key = key_of(given);
    if (key.size() == given.size()) {
      throw CommandError(wrong_usage, "--set takes KEY=VALUE, not \"" + one_line(given) + "\"");
    }
    settings.set_for_this_run(key, setting_value(key, given.substr(key.size() + 1)));
  }
}

std::optional<HomeKind> named_layout(const Invocation& asked) {
  if (!asked.layout) return {};
  for (const HomeKind kind : {HomeKind::macos, HomeKind::linux_desktop}) {
    if (*asked.layout == layout_name(kind)) return kind;
  }
  throw CommandError(wrong_usage, "--layout takes macos or linux, not \"" + one_line(*asked.layout) + "\"");
}

std::string no_grant_text(const FolderRow& row) {
  const std::string key(grant_key(row.grant));
  return "access to the " + std::string(row.called) + " (\"" + key +
         "\") was not given; run: tarnby-cleaner-cli grant " + key + " DIR, or use " + std::string(row.option) + " DIR";
}

void need_folder(Context& context, const FolderRow& row) {
  const auto value = context.settings().store().value(grant_key(row.grant));
  const auto* data = value ? value->as<PropertyList::Data>() : nullptr;
  if (!data) throw CommandError(no_access, no_grant_text(row));
  const std::string named = "the " + std::string(row.called) + " (\"" + std::string(grant_key(row.grant)) + "\") \"" +
                            one_line(data->bytes) + "\"";
  const Url folder = context.bookmarks().resolve_and_access(row.grant);
  if (folder.empty()) {
    throw CommandError(no_access, named + " is missing or not a folder; give an existing one with " +
                                      std::string(row.option) + " DIR or tarnby-cleaner-cli grant");
  }
  if (!context.files().granted().open_folder(folder)) {
    const std::string why = std::error_code(errno, std::generic_category()).message();
    throw CommandError(no_access,
                       named + " cannot be read: " + why + "; give this account access to it or name another");
  }
}

}  // namespace

std::string_view layout_name(HomeKind kind) {
  return kind == HomeKind::linux_desktop ? "linux" : "macos";
}

AppSettings& Context::settings() const {
  return platform.app_settings;
}

FileManager& Context::files() const {
  return platform.files;
}

Measurer& Context::measurer() const {
  return platform.measurer;
}

Bookmarks& Context::bookmarks() const {
  return platform.bookmarks;
}

NotificationCenter& Context::notifications() const {
  return platform.notifications;
}

const Session& Context::session() const {
  return platform.session;
}

const Text& Context::text() const {
  return platform.text;
}

HomeKind Context::layout() const {
  return platform.home_kind ? *platform.home_kind : kind_of_home(platform.files, bookmarks().resolve(Grant::home));
}

RunPlatform platform_for(const Invocation& asked, MainQueue& main_queue) {
  Session session = current_session();
  if (asked.languages) session.preferred_languages = languages_from_list(*asked.languages, ',');
  auto settings = std::make_unique<RunSettings>(open_standard_settings(session));
  if (asked.dry_run || asked.command->effect == Effect::looks) settings->keep_in_memory();
  set_folders(asked, *settings);
  set_settings(asked, *settings);
  RunSettings& of_this_run = *settings;
  auto platform = std::make_unique<Platform>(std::move(session), std::move(settings), main_queue);
  platform->home_kind = named_layout(asked);
  return {std::move(platform), of_this_run};
}

void need_folders(Context& context) {
  need_home(context);
  need_folder(context, folder_rows[1]);
  if (context.asked.disk) need_folder(context, folder_rows[2]);
  confine_to_grants(context);
}

void need_scan_folders(Context& context) {
  need_home(context);
  if (context.layout() == HomeKind::macos) need_folder(context, folder_rows[1]);
  if (context.asked.disk) need_folder(context, folder_rows[2]);
  confine_to_grants(context);
}

void need_home(Context& context) {
  need_folder(context, folder_rows[0]);
}

bool given_for_this_run(const Invocation& asked, std::string_view key) {
  const auto is_folder = [&](const FolderRow& row) { return grant_key(row.grant) == key && asked.*row.given; };
  const auto is_set = [&](const std::string& given) { return key_of(given) == key; };
  return std::any_of(folder_rows.begin(), folder_rows.end(), is_folder) ||
         std::any_of(asked.settings.begin(), asked.settings.end(), is_set) || (key == "AllowAny" && asked.disk);
}

Url typed_path(const std::string& text) {
  if (text.starts_with('/')) return Url::file(text);
  const std::unique_ptr<char, decltype(&std::free)> here(getcwd(nullptr, 0), &std::free);
  return here && !text.empty() ? Url::file(std::string(here.get()) + "/" + text) : Url();
}

}  // namespace tarnby::cli
