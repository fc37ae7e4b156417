#include "platform/session.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "platform/session_parts.h"

namespace tarnby {

namespace {

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

}  // namespace

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

}  // namespace tarnby
