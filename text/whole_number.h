#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace tarnby {

/// The number that a text writes: digits of the base and, where Number has a sign, "-" before them. None when the text
/// has anything else in it, white space included, or when the number does not fit.
template <typename Number>
std::optional<Number> whole_number(std::string_view text, int base = 10) {
  Number value{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, base);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return value;
}

}  // namespace tarnby
