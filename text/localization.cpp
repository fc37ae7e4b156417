#include "text/localization.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>

#include "text/property_list.h"

namespace tarnby {

namespace {

/// What stands for a value: "%@" for the next one, "%1$@" to "%9$@" for a certain one.
struct Placeholder {
  std::size_t length = 0;  // 0: there is none here
  std::size_t value = 0;
};

Placeholder placeholder_at(std::string_view text, std::size_t at, std::size_t next) {
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("%@")) return {2, next};
  const bool numbered = rest.size() >= 4 && rest[0] == '%' && rest[1] >= '1' && rest[1] <= '9' && rest[2] == '$';
  if (numbered && rest[3] == '@') return {4, static_cast<std::size_t>(rest[1] - '1')};
  return {};
}

std::string fill(const std::string& pattern, std::span<const std::string> values) {
  std::string filled;
  std::size_t next = 0;
  for (std::size_t at = 0; at < pattern.size();) {
    const Placeholder found = placeholder_at(pattern, at, next);
    if (found.length == 0 || found.value >= values.size()) {
      filled += pattern[at++];
      continue;
    }
    filled += values[found.value];
    next = found.value + 1;
    at += found.length;
  }
  return filled;
}

std::string form_key(const std::string& english, std::string_view category) {
  return (english + '|').append(category);
}

constexpr std::streamsize most_bytes = 1 << 20;

/// A table of the program's own, in a folder that nobody has to grant.
std::optional<std::string> read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes(static_cast<std::size_t>(most_bytes), '\0');
  file.read(bytes.data(), most_bytes);
  if (file.gcount() == 0 || file.gcount() == most_bytes) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

std::string_view main_part(std::string_view language) {
  return language.substr(0, language.find('-'));
}

bool is_language(std::string_view text) {
  const auto sound = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), sound);
}

/// Regions and scripts whose Chinese is the traditional one.
constexpr std::string_view traditional[] = {"Hant", "TW", "HK", "MO"};

bool has_part(std::string_view language, std::string_view part) {
  while (true) {
    if (main_part(language) == part) return true;
    const auto end = language.find('-');
    if (end == std::string_view::npos) return false;
    language.remove_prefix(end + 1);
  }
}

std::string chinese_table(std::string_view language) {
  const bool told = has_part(language, "Hans");
  const bool is_traditional = !told && std::any_of(std::begin(traditional), std::end(traditional),
                                                   [&](std::string_view part) { return has_part(language, part); });
  return is_traditional ? "zh-Hant" : "zh-Hans";
}

}  // namespace

Localization::Localization(Table table, std::string language)
    : table_(std::move(table)), language_(std::move(language)) {}

Localization Localization::for_languages(std::span<const std::string> preferred, const Url& folder) {
  for (const std::string& language : preferred) {
    if (main_part(language) == "en") break;  // the keys are its texts
    for (std::string& name : tables_for_language(language)) {
      const auto bytes = read_file(folder.appending(name + ".plist").path());
      auto table = bytes ? read_table(*bytes) : std::nullopt;
      if (table) return Localization(std::move(*table), std::move(name));
    }
  }
  return {};
}

std::optional<Localization::Table> Localization::read_table(std::string_view bytes) {
  const auto list = parse_property_list(bytes);
  const auto* entries = list ? list->as<PropertyList::Dictionary>() : nullptr;
  if (entries == nullptr) return std::nullopt;
  Table table;
  for (const auto& [key, value] : *entries) {
    if (const auto* text = value.as<std::string>()) table[key] = *text;
    const auto* forms = value.as<PropertyList::Dictionary>();
    if (forms == nullptr) continue;
    for (const auto& [category, form] : *forms) {
      if (const auto* text = form.as<std::string>()) table[form_key(key, category)] = *text;
    }
  }
  return table;
}

const std::string& Localization::text(const std::string& english) const {
  const auto found = table_.find(english);
  return found == table_.end() ? english : found->second;
}

std::string Localization::text(const std::string& english, std::span<const std::string> values) const {
  return fill(text(english), values);
}

std::string Localization::plural(std::int64_t count, const std::string& english_one, const std::string& english_other,
                                 std::span<const std::string> values) const {
  for (const std::string_view category : {plural_category(language_, count), std::string_view("other")}) {
    const auto found = table_.find(form_key(english_other, category));
    if (found != table_.end()) return fill(found->second, values);
  }
  return fill(count == 1 ? english_one : english_other, values);
}

std::vector<std::string> tables_for_language(std::string_view language) {
  if (!is_language(language)) return {};
  std::vector<std::string> names = {std::string(language)};
  const auto add = [&](std::string name) {
    if (name != names.back()) names.push_back(std::move(name));
  };
  add(main_part(language) == "zh" ? chinese_table(language) : std::string(main_part(language)));
  return names;
}

}  // namespace tarnby
