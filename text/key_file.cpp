#include "text/key_file.h"

#include <algorithm>
#include <utility>

namespace tarnby {

namespace {

constexpr std::size_t most_bytes = std::size_t{1} << 20U;
constexpr std::size_t most_lines = 20'000;
constexpr std::size_t most_groups = 1'000;

constexpr bool is_white(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Looked at for every line of every entry of a menu, so character by character: nearly always there is no white space.
std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_white(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_white(text.back())) text.remove_suffix(1);
  return text;
}

/// Takes the next line off the front, without its end.
std::string_view next_line(std::string_view& rest) {
  const auto end = std::min(rest.find('\n'), rest.size());
  const std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return line;
}

/// "Name[de]" as "Name" and "de".
std::pair<std::string_view, std::string_view> key_and_locale(std::string_view key) {
  const auto bracket = key.ends_with(']') ? key.find('[') : std::string_view::npos;
  if (bracket == std::string_view::npos) return {key, {}};
  return {key.substr(0, bracket), key.substr(bracket + 1, key.size() - bracket - 2)};
}

/// What the letter after a backslash stands for; NUL when it stands for nothing.
char escaped(char letter) {
  constexpr std::pair<char, char> meanings[] = {{'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
  for (const auto& [written, meant] : meanings) {
    if (written == letter) return meant;
  }
  return '\0';
}

/// "de_AT" and "de-AT" are one.
bool is_same_tag(std::string_view locale, std::string_view language) {
  return std::equal(locale.begin(), locale.end(), language.begin(), language.end(),
                    [](char a, char b) { return a == b || (a == '_' && b == '-'); });
}

std::string_view without_country(std::string_view language) {
  return language.substr(0, language.find('-'));
}

}  // namespace

KeyFileLines::KeyFileLines(std::string_view bytes) : rest_(bytes) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (rest_.starts_with(byte_order_mark)) rest_.remove_prefix(byte_order_mark.size());
}

std::optional<KeyFileLine> KeyFileLines::next() {
  while (!rest_.empty()) {
    const std::string_view line = trimmed(next_line(rest_));
    if (line.empty() || line.front() == '#' || line.front() == ';') continue;
    if (line.front() == '[') {
      if (line.ends_with(']')) group_ = line.substr(1, line.size() - 2);
      continue;
    }
    const auto equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0) continue;
    const auto [key, locale] = key_and_locale(trimmed(line.substr(0, equals)));
    return KeyFileLine{group_, key, locale, trimmed(line.substr(equals + 1))};
  }
  return std::nullopt;
}

std::string without_key_file_escapes(std::string_view value) {
  std::string text;
  text.reserve(value.size());
  for (std::size_t at = 0; at < value.size(); ++at) {
    const char meant = value[at] == '\\' && at + 1 < value.size() ? escaped(value[at + 1]) : '\0';
    text += meant == '\0' ? value[at] : meant;
    if (meant != '\0') ++at;
  }
  return text;
}

std::optional<std::size_t> locale_rank(std::string_view locale, std::span<const std::string> languages) {
  // A modifier ("sr@latin") is another script, which nobody asked for; the encoding says nothing of the language.
  if (locale.find('@') != std::string_view::npos) return std::nullopt;
  locale = locale.substr(0, locale.find('.'));
  for (std::size_t at = 0; at < languages.size(); ++at) {
    if (is_same_tag(locale, languages[at])) return 2 * at;
    if (locale == without_country(languages[at])) return 2 * at + 1;
    if (without_country(languages[at]) == "en") return std::nullopt;
  }
  return std::nullopt;
}

std::optional<KeyFile> KeyFile::parse(std::string_view bytes) {
  if (bytes.size() > most_bytes) return std::nullopt;
  KeyFile file;
  KeyFileLines lines(bytes);
  while (const auto line = lines.next()) {
    if (!line->locale.empty()) continue;
    const std::size_t group = file.group_number(line->group);
    if (file.lines_.size() == most_lines || group == most_groups) return std::nullopt;
    file.lines_.push_back({group, std::string(line->key), without_key_file_escapes(line->value)});
  }
  return file;
}

std::size_t KeyFile::group_number(std::string_view name) {
  // A group's lines stand together, so it is nearly always the last one.
  const auto found = std::find(groups_.rbegin(), groups_.rend(), name);
  if (found != groups_.rend()) return static_cast<std::size_t>(groups_.rend() - found) - 1;
  groups_.emplace_back(name);
  return groups_.size() - 1;
}

std::optional<std::string> KeyFile::value(std::string_view group, std::string_view key) const {
  const auto named = std::find(groups_.begin(), groups_.end(), group);
  const auto number = static_cast<std::size_t>(named - groups_.begin());
  const auto found = std::find_if(lines_.begin(), lines_.end(),
                                  [&](const Line& line) { return line.group == number && line.key == key; });
  return found == lines_.end() ? std::nullopt : std::optional(found->value);
}

}  // namespace tarnby
