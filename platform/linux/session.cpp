#include "platform/session.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string_view>

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

struct Account {
  std::string name;
  std::string home;
};

Account account_of_this_user() {
  passwd entry = {};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE)
    buffer.resize(buffer.size() * 2);
  if (found == nullptr) return {};
  const auto text = [](const char* value) { return value == nullptr ? std::string{} : std::string(value); };
  return {text(entry.pw_name), text(entry.pw_dir)};
}

/// A relative or empty path names no place of the user's: it must not become the root or the working folder.
Url folder_or(const std::string& path, const Url& otherwise) {
  const Url folder = Url::file(path);
  return folder.is_file_url() ? folder : otherwise;
}

constexpr char to_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

constexpr char to_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c & ~0x20) : c;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// "de_DE.UTF-8@euro" as "de-DE"; empty for C and POSIX.
std::string language_tag(std::string_view locale_name) {
  locale_name = trimmed(locale_name.substr(0, locale_name.find_first_of(".@")));
  if (locale_name == "C" || locale_name == "POSIX") return {};
  std::string tag(locale_name);
  std::replace(tag.begin(), tag.end(), '_', '-');
  const auto language_end = std::find(tag.begin(), tag.end(), '-');
  std::transform(tag.begin(), language_end, tag.begin(), to_lower);
  if (tag.end() - language_end == 3) std::transform(language_end, tag.end(), language_end, to_upper);
  return tag;
}

std::vector<std::string> preferred_languages() {
  const std::string deciding = first_set({"LC_ALL", "LC_MESSAGES", "LANG"});
  const bool plain_c = !deciding.empty() && language_tag(deciding).empty();
  std::vector<std::string> languages;
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    // Who asks for C wants untranslated texts, whatever LANGUAGE says; gettext reads it so, too.
    if (plain_c && std::string_view(name) == "LANGUAGE") continue;
    for (std::string& language : languages_from_list(variable(name), ':')) {
      if (std::find(languages.begin(), languages.end(), language) == languages.end()) {
        languages.push_back(std::move(language));
      }
    }
  }
  return languages;
}

}  // namespace

std::vector<std::string> languages_from_list(std::string_view list, char separator) {
  std::vector<std::string> languages;
  while (!list.empty()) {
    const auto end = std::min(list.find(separator), list.size());
    if (std::string language = language_tag(list.substr(0, end)); !language.empty()) {
      languages.push_back(std::move(language));
    }
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return languages;
}

Session current_session() {
  const Account account = account_of_this_user();
  Session session;
  session.user_name = account.name.empty() ? first_set({"USER", "LOGNAME"}) : account.name;
  session.home_folder = folder_or(variable("HOME"), Url::file(account.home));
  session.settings_folder =
      folder_or(variable("XDG_CONFIG_HOME"), session.home_folder.appending(".config")).appending("tarnby-cleaner");
  session.preferred_languages = preferred_languages();
  session.collation_locale = first_set({"LC_ALL", "LC_COLLATE", "LANG"});
  session.number_locale = first_set({"LC_ALL", "LC_NUMERIC", "LANG"});
  return session;
}

}  // namespace tarnby
