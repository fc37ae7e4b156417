#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// Marks a text in a table of the program that is translated where it is shown, so that a test can find it in the
/// sources. Returns it unchanged.
constexpr const char* english(const char* text) {
  return text;
}

/// The texts that people read, in their language. The key of a text is its English; a text that no table has is shown
/// in English. Immutable; any thread may use it.
class Localization {
 public:
  /// A text by its English. The forms of a plural are filed under its key, a bar, and the form's category: "%@
  /// bytes|one".
  using Table = std::map<std::string, std::string, std::less<>>;

  /// English.
  Localization() = default;
  /// @param language decides which form of a plural a number takes: "fr", "zh-Hans".
  explicit Localization(Table table, std::string language = {});

  /// The texts of the first of these languages ("de-AT") that is English or has a table, LANGUAGE.plist, in `folder`. A
  /// table that is missing or cannot be read is passed over; without any the texts are English.
  static Localization for_languages(std::span<const std::string> preferred, const Url& folder);

  /// What a table holds: a property list, a dictionary of texts, or of dictionaries of the forms of a plural by their
  /// category; "other" stands in for each that is missing. None for anything but a dictionary;
  /// entries of other kinds are left out.
  static std::optional<Table> read_table(std::string_view bytes);

  /// "de"; empty for English.
  const std::string& language() const { return language_; }
  /// As it was read; empty for English.
  const Table& table() const { return table_; }

  /// The text in this language, or `english` itself when the table lacks it: the result lives as long as both.
  const std::string& text(const std::string& english) const;

  /// The text with its "%@" replaced, in order, by the values. A translation that needs another order writes "%1$@",
  /// "%2$@". What has no value stays.
  std::string text(const std::string& english, std::span<const std::string> values) const;

  /// The same, in the form that the language takes for that number. The key is `english_other`.
  std::string plural(std::int64_t count, const std::string& english_one, const std::string& english_other,
                     std::span<const std::string> values) const;

 private:
  Table table_;
  std::string language_;
};

/// The category of a whole number in a language, by the rules of CLDR for cardinals: "zero", "one", "two", "few",
/// "many" or "other". Each system has its own source of them.
std::string_view plural_category(std::string_view language, std::int64_t count);

/// The names of the tables that serve a preferred language ("de-AT": de-AT, de), best first. Chinese goes by script:
/// simplified in China and Singapore and where nothing is said, never for those who write the traditional one. None for
/// what is no language, which thus never becomes part of a path.
std::vector<std::string> tables_for_language(std::string_view language);

}  // namespace tarnby
