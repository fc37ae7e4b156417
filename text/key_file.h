#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnby {

// Files of "[Group]" and "Key=Value" lines, from strangers
//
// The format of desktop entries (freedesktop.org), sections "Basic format of the file" and "Localized
// values for keys"; profiles.ini of Mozilla's programs, .trashinfo and .flatpak-info are written alike. Lines that
// begin with "#" or ";" are comments. White space around a line, around "=" and a carriage return at the end count for
// nothing, nor does a byte order mark. What is neither a group nor has a "=" is passed over.

/// One line of a key file, as it stands: escapes are not undone, and bytes need not be UTF-8. Valid as long as the
/// bytes that it was read from.
struct KeyFileLine {
  /// Of the last group line before it; empty before the first.
  std::string_view group;
  std::string_view key;
  /// What stands in brackets behind the key ("de_DE" in "Name[de_DE]"); empty when nothing does.
  std::string_view locale;
  std::string_view value;
};

/// Goes through the lines of a key file, without a copy. For one thread.
class KeyFileLines {
 public:
  explicit KeyFileLines(std::string_view bytes);
  /// The next line that has a key; none at the end.
  std::optional<KeyFileLine> next();

 private:
  std::string_view rest_;
  std::string_view group_;
};

/// A value with its escapes undone: \s, \n, \t, \r and \\ (desktop entries, "Possible value types"). Any
/// other backslash stays, with what follows it.
std::string without_key_file_escapes(std::string_view value);

/// How well a locale in brackets ("de_AT.UTF-8") suits a person; 0 is best, none when they do not want it.
/// @param languages the person's, most wanted first, written as "de-AT".
/// @return 2 for each language before, 1 more when only the language suits and not the country. Values without a
///   locale are English, so a language behind English is never wanted.
std::optional<std::size_t> locale_rank(std::string_view locale, std::span<const std::string> languages);

/// A whole key file. Of lines that repeat a group's key the first counts; groups of one name are one group.
class KeyFile {
 public:
  /// None for more than one megabyte, 20,000 lines with a key or 1,000 groups: no program writes so much.
  static std::optional<KeyFile> parse(std::string_view bytes);

  /// The groups that have a key, in the order in which they first occur.
  const std::vector<std::string>& groups() const { return groups_; }
  /// The value without a locale, its escapes undone; none when there is no such key.
  std::optional<std::string> value(std::string_view group, std::string_view key) const;

 private:
  struct Line {
    std::size_t group;
    std::string key;
    std::string value;
  };
  std::size_t group_number(std::string_view name);

  std::vector<std::string> groups_;
  std::vector<Line> lines_;
};

}  // namespace tarnby
