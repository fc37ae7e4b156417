#include "cli/byte_size.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace tarnby::cli {

namespace {

struct UnitRow {
  std::string_view name;
  std::int64_t bytes;
};

constexpr UnitRow units[] = {{"", 1},
                             {"b", 1},
                             {"kb", 1'000},
                             {"mb", 1'000'000},
                             {"gb", 1'000'000'000},
                             {"tb", 1'000'000'000'000},
                             {"pb", 1'000'000'000'000'000}};

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Takes the digits away that the text begins with.
std::string_view read_digits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), is_digit);
  const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

std::optional<std::int64_t> bytes_of_unit(std::string_view name) {
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  for (const UnitRow& unit : units) {
    if (unit.name == lower) return unit.bytes;
  }
  return {};
}

}  // namespace

std::optional<std::int64_t> byte_size(std::string_view typed) {
  const std::string_view whole = read_digits(typed);
  std::string_view fraction;
  if (typed.starts_with('.')) {
    typed.remove_prefix(1);
    fraction = read_digits(typed);
    if (fraction.empty()) return {};
  }
  if (typed.starts_with(' ')) typed.remove_prefix(1);
  const auto unit = bytes_of_unit(typed);
  std::int64_t bytes = 0;
  const auto [end, error] = std::from_chars(whole.data(), whole.data() + whole.size(), bytes);
  if (whole.empty() || error != std::errc() || !unit || __builtin_mul_overflow(bytes, *unit, &bytes)) return {};
  std::int64_t part = 0;  // fewer bytes than one unit
  std::int64_t step = *unit;
  for (const char digit : fraction) part += (digit - '0') * (step /= 10);
  if (__builtin_add_overflow(bytes, part, &bytes)) return {};
  return bytes;
}

}  // namespace tarnby::cli
