#include "platform/session.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "platform/session_parts.h"

namespace tarnby {

namespace {

/// A variable's value; empty when it is unset, which locale(7) treats alike.
std::string variable(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nothing in this program sets variables
  return value == nullptr ? std::string{} : value;
}

std::string first_set(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    if (std::string value = variable(name); !value.empty()) return value;
  }
  return {};
}

/// A relative or empty path names no place of the user's: it must not become the root or the working folder.
Url folder_or(const std::string& path, const Url& otherwise) {
  const Url folder = Url::file(path);
  return folder.is_file_url() ? folder : otherwise;
}

std::vector<std::string> preferred_languages() {
  const std::string deciding = first_set({"LC_ALL", "LC_MESSAGES", "LANG"});
  const bool plain_c = !deciding.empty() && languages_from_list(deciding, ':').empty();
  std::vector<std::string> languages;
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    // A user who asks for C wants untranslated texts, whatever LANGUAGE says; gettext reads it so, too.
    if (plain_c && std::string_view(name) == "LANGUAGE") continue;
    for (std::string& language : languages_from_list(variable(name), ':')) {
      if (std::find(languages.begin(), languages.end(), language) == languages.end()) {
        languages.push_back(std::move(language));
      }
    }
  }
  return languages;
}

/// The absolute folders of a list such as PATH; a relative one names no place of the user's.
std::vector<Url> folders_of(std::string_view list, std::string_view beneath = {}) {
  std::vector<Url> folders;
  while (!list.empty()) {
    const auto end = std::min(list.find(':'), list.size());
    const Url folder = Url::file(list.substr(0, end));
    if (folder.is_file_url()) folders.push_back(beneath.empty() ? folder : folder.appending(beneath));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return folders;
}

std::vector<Url> system_autostart_folders() {
  const std::string named = variable("XDG_CONFIG_DIRS");
  return folders_of(named.empty() ? "/etc/xdg" : std::string_view(named), "autostart");
}

}  // namespace

Session current_session() {
  const Account account = account_of_this_user();
  Session session;
  session.user_name = account.name.empty() ? first_set({"USER", "LOGNAME"}) : account.name;
  session.home_folder = folder_or(variable("HOME"), Url::file(account.home));
  session.account_home = Url::file(account.home);
  const Url settings = folder_or(variable("XDG_CONFIG_HOME"), session.home_folder.appending(".config"));
  session.settings_folder = settings.appending("tarnby-cleaner");
  session.autostart_folder = settings.appending("autostart");
  session.system_autostart_folders = system_autostart_folders();
  session.program_folders = folders_of(variable("PATH"));
  session.runtime_folder = Url::file(variable("XDG_RUNTIME_DIR"));
  session.base_folders = {variable("XDG_CACHE_HOME"), variable("XDG_CONFIG_HOME"), variable("XDG_DATA_HOME"),
                          variable("XDG_STATE_HOME")};
  session.preferred_languages = preferred_languages();
  session.collation_locale = first_set({"LC_ALL", "LC_COLLATE", "LANG"});
  session.number_locale = first_set({"LC_ALL", "LC_NUMERIC", "LANG"});
  return session;
}

}  // namespace tarnby
