#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/localization.h"

// What the text functions of every system share, and what each system adds to them. Nobody outside text/ needs it.

namespace tarnby {

/// The beginning of a text: one well-formed UTF-8 sequence, or the longest piece that could have become one.
struct Utf8Sequence {
  std::size_t length;
  bool well_formed;
};

/// The sequence that `bytes`, which must not be empty, begins with.
Utf8Sequence first_sequence(std::string_view bytes);

/// The length of the well-formed UTF-8 that `bytes` begin with.
std::size_t well_formed_prefix(std::string_view bytes);

/// Appends well-formed, non-ASCII UTF-8, decomposed canonically, without nonspacing marks, and case-folded. Given by
/// the system.
void append_folded(std::string& out, std::string_view utf8);

/// How a locale writes numbers.
struct NumberSymbols {
  std::array<std::string, 10> digits = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
  std::string decimal_point = ".";
};

/// The text of Text::byte_count with the given symbols and names of units.
std::string write_byte_count(std::int64_t bytes, const NumberSymbols& symbols, const Localization& localization);

}  // namespace tarnby
