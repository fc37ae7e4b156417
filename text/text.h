#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/localization.h"

namespace tarnby {

/// A text made ready for containment tests: decomposed canonically, stripped of nonspacing marks and case-folded (full
/// Unicode folding, the same in every language). Bytes that are not UTF-8 are kept so that they match only themselves.
/// Fold once, search often.
class FoldedText {
 public:
  FoldedText() = default;
  explicit FoldedText(std::string_view text);

  /// True when nothing is left of the text once it is stripped.
  bool empty() const { return folded_.empty(); }
  /// As it is compared.
  std::string_view bytes() const { return folded_; }

  /// True when the code points of `part` occur in this text in a row. A part that is empty, or empty once stripped, is
  /// never contained.
  bool contains(const FoldedText& part) const;

  friend bool operator==(const FoldedText&, const FoldedText&) = default;

 private:
  std::string folded_;
  std::uint64_t pairs_ = 0;
};

/// FoldedText::contains for two texts that are compared once.
bool contains_folded(std::string_view text, std::string_view part);

/// The text as UTF-8, each ill-formed sequence replaced by U+FFFD.
std::string to_valid_utf8(std::string_view bytes);

/// Upper case of the first code point, which may become two ("ßa" gives "SSa"), the rest as it is (root locale). A text
/// that does not begin with UTF-8 stays unchanged.
std::string upper_first(std::string_view text);

/// Lower case of the whole text (root locale, full mapping). Bytes that are not UTF-8 stay as they are.
std::string lower_case(std::string_view text);

/// How many letters a text has (Unicode general category L). Bytes that are not UTF-8 are none.
std::size_t letters_in(std::string_view text);

/// How many columns a text takes in a terminal: two for wide characters, none for marks (UAX #11).
std::size_t display_columns(std::string_view text);

/// Comparison and number form of one user's locale. Immutable; any thread may use it. Cheap to make: what a locale
/// needs is read when it is first used.
class Text {
 public:
  /// Locale names as in the environment ("de_DE.UTF-8", "C", ""). C, POSIX, empty and unknown names give the root
  /// collation and the number form "1.5".
  /// @param localization where the names of units are taken from; English without it.
  Text(std::string_view collation_locale, std::string_view number_locale, Localization localization = {});
  ~Text();
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  /// Below, equal to or above 0: localised comparison in which letter case is ignored and accents count. Bytes that are
  /// not UTF-8 compare as U+FFFD.
  int compare(std::string_view a, std::string_view b) const;

  /// The indices of the texts in the order of `compare`; equal ones keep the order they had.
  std::vector<std::size_t> order_of(const std::vector<std::string>& texts) const;

  /// A byte count for people, decimal units: "Zero KB", "1 byte", "999 bytes", "12 KB", "1.5 MB", "2.25 GB". Halves
  /// round up, and what would round to 1000 of a unit is 1 of the next. The number is the locale's, the unit a
  /// localised text.
  std::string byte_count(std::int64_t bytes) const;

  /// Sorts by the text that `label(item)` gives, ascending; equal ones keep the order they had.
  template <typename Item, typename Label>
  void sort_by_label(std::vector<Item>& items, Label label) const {
    std::vector<std::string> labels;
    labels.reserve(items.size());
    for (const Item& item : items) labels.emplace_back(label(item));
    std::vector<Item> sorted;
    sorted.reserve(items.size());
    for (const std::size_t position : order_of(labels)) sorted.push_back(std::move(items[position]));
    items = std::move(sorted);
  }

 private:
  struct Locale;
  std::unique_ptr<Locale> locale_;
  Localization localization_;
};

}  // namespace tarnby
