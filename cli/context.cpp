#include "cli/context.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "cli/setting_values.h"

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

void set_settings(const Invocation& asked, RunSettings& settings) {
  for (const std::string& given : asked.settings) {
    const auto equals = given.find('=');
    if (equals == std::string::npos) {
      throw CommandError(wrong_usage, "--set takes KEY=VALUE, not " + one_line(given));
    }
    const std::string key = given.substr(0, equals);
    settings.set_for_this_run(key, setting_value(key, given.substr(equals + 1)));
  }
}

std::string no_grant_text(const FolderRow& row) {
  const std::string key(grant_key(row.grant));
  return "access to the " + std::string(row.called) + " (\"" + key +
         "\") was not given; run: tarnby-cleaner-cli grant " + key + " DIR, or use " + std::string(row.option) + " DIR";
}

void need_folder(Context& context, const FolderRow& row) {
  const auto value = context.platform.app_settings.store().value(grant_key(row.grant));
  const auto* data = value ? value->as<PropertyList::Data>() : nullptr;
  if (!data) throw CommandError(no_access, no_grant_text(row));
  const std::string named =
      "the " + std::string(row.called) + " (\"" + std::string(grant_key(row.grant)) + "\") " + one_line(data->bytes);
  const Url folder = context.platform.bookmarks.resolve_and_access(row.grant);
  if (folder.empty()) {
    throw CommandError(no_access, named + " is missing or not a folder; give an existing one with " +
                                      std::string(row.option) + " or grant");
  }
  if (!context.platform.files.granted().open_folder(folder)) {
    const std::string why = std::error_code(errno, std::generic_category()).message();
    throw CommandError(no_access, named + " cannot be read: " + why);
  }
}

}  // namespace

std::unique_ptr<Platform> platform_for(const Invocation& asked, MainQueue& main_queue) {
  Session session = current_session();
  if (asked.languages) session.preferred_languages = languages_from_list(*asked.languages, ',');
  auto settings =
      std::make_unique<RunSettings>(open_settings_file(session.settings_folder.appending("settings.plist")));
  if (asked.dry_run) settings->keep_in_memory();
  set_folders(asked, *settings);
  set_settings(asked, *settings);
  return std::make_unique<Platform>(std::move(session), std::move(settings), main_queue);
}

void need_folders(Context& context) {
  need_folder(context, folder_rows[0]);
  need_folder(context, folder_rows[1]);
  if (context.asked.disk) need_folder(context, folder_rows[2]);
}

std::string one_line(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string line;
  for (const char c : to_valid_utf8(text)) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      line += "\\n";
    } else if (byte < 0x20 || byte == 0x7f) {
      line += {'\\', 'x', digits[byte >> 4U], digits[byte & 15U]};
    } else {
      line += c;
    }
  }
  return line;
}

Url typed_path(const std::string& text) {
  if (text.starts_with('/')) return Url::file(text);
  const std::unique_ptr<char, decltype(&std::free)> here(getcwd(nullptr, 0), &std::free);
  return here && !text.empty() ? Url::file(std::string(here.get()) + "/" + text) : Url();
}

}  // namespace tarnby::cli
