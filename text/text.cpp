#include "text/text.h"

#include <cstring>
#include <iterator>

#include "files/url.h"
#include "text/text_parts.h"

namespace tarnby {

namespace {

constexpr bool is_ascii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

/// Appends the ASCII that `text` begins with, in lower case, and gives its length.
std::size_t append_folded_ascii(std::string& out, std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), is_ascii);
  std::transform(text.begin(), end, std::back_inserter(out), ascii_lower);
  return static_cast<std::size_t>(end - text.begin());
}

/// A byte that is no UTF-8 becomes a code "above U+10FFFF" of its own. No valid text holds one, and it begins with a
/// lead byte as every sequence does, so a search by bytes can neither mistake it nor land inside another sequence.
void append_stray_byte(std::string& out, char byte) {
  const auto value = static_cast<unsigned char>(byte);
  out += "\xF4\x90";
  out += static_cast<char>(0x80 | (value >> 6));
  out += static_cast<char>(0x80 | (value & 0x3F));
}

/// One bit for each pair of neighbouring bytes, several pairs sharing a bit. A text that lacks a bit of another cannot
/// contain it, and most texts that are searched lack one.
std::uint64_t pairs_in(std::string_view bytes) {
  std::uint64_t pairs = 0;
  for (std::size_t at = 1; at < bytes.size(); ++at) {
    const auto first = static_cast<unsigned char>(bytes[at - 1]);
    const auto second = static_cast<unsigned char>(bytes[at]);
    const std::uint32_t mixed = (std::uint32_t{first} << 8U | second) * 0x9E3779B1U;
    pairs |= std::uint64_t{1} << (mixed >> 26U);
  }
  return pairs;
}

struct Unit {
  const char* amount;
  std::uint64_t size;
  int decimals;
};

constexpr Unit units[] = {
    {english("%@ KB"), 1'000, 0},
    {english("%@ MB"), 1'000'000, 1},
    {english("%@ GB"), 1'000'000'000, 2},
    {english("%@ TB"), 1'000'000'000'000, 2},
    {english("%@ PB"), 1'000'000'000'000'000, 2},
    {english("%@ EB"), 1'000'000'000'000'000'000, 2},
};

constexpr std::uint64_t power_of_ten(int exponent) {
  return exponent == 0 ? 1 : 10 * power_of_ten(exponent - 1);
}

std::string in_symbols(std::string_view number, const NumberSymbols& symbols) {
  std::string text;
  for (const char c : number) text += c == '.' ? symbols.decimal_point : symbols.digits.at(std::size_t(c - '0'));
  return text;
}

/// `value` is in steps of 10^-decimals.
std::string decimal_number(std::uint64_t value, int decimals) {
  const std::uint64_t one = power_of_ten(decimals);
  std::string text = std::to_string(value / one);
  if (value % one == 0) return text;
  const std::string fraction = std::to_string(one + value % one);  // the leading 1 keeps the zeros behind the point
  text += '.';
  text.append(fraction, 1, fraction.find_last_not_of('0'));
  return text;
}

std::string write_magnitude(std::uint64_t bytes, const NumberSymbols& symbols, const Localization& localization) {
  if (bytes == 0) return localization.text("Zero KB");
  if (bytes < 1000) {
    const std::string number[] = {in_symbols(std::to_string(bytes), symbols)};
    return localization.plural(static_cast<std::int64_t>(bytes), "%@ byte", "%@ bytes", number);
  }
  for (const Unit& unit : units) {
    const std::uint64_t step = unit.size / power_of_ten(unit.decimals);
    const std::uint64_t steps = bytes / step + (bytes % step * 2 >= step ? 1 : 0);
    // What rounds to 1000 of a unit is shown as 1 of the next; there is none above the last.
    if (steps >= 1000 * power_of_ten(unit.decimals) && &unit != std::end(units) - 1) continue;
    const std::string number[] = {in_symbols(decimal_number(steps, unit.decimals), symbols)};
    return localization.text(unit.amount, number);
  }
  return {};
}

}  // namespace

Utf8Sequence first_sequence(std::string_view bytes) {
  const auto byte = [bytes](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {1, true};
  if (lead < 0xC2 || lead > 0xF4) return {1, false};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The second byte alone tells overlong forms, surrogates and what lies above U+10FFFF.
  unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  for (std::size_t index = 1; index < length; ++index) {
    if (index == bytes.size() || byte(index) < low || byte(index) > high) return {index, false};
    low = 0x80;
    high = 0xBF;
  }
  return {length, true};
}

std::size_t well_formed_prefix(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    const Utf8Sequence next = first_sequence(bytes.substr(length));
    if (!next.well_formed) break;
    length += next.length;
  }
  return length;
}

FoldedText::FoldedText(std::string_view text) {
  folded_.reserve(text.size());
  while (true) {
    // ASCII never combines with what stands around it, so it can be folded apart, and most paths hold nothing else.
    text.remove_prefix(append_folded_ascii(folded_, text));
    if (text.empty()) break;
    const auto end = std::find_if(text.begin(), text.end(), is_ascii);
    const auto run = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    const std::size_t sound = well_formed_prefix(run);
    if (sound > 0) {
      append_folded(folded_, run.substr(0, sound));
      text.remove_prefix(sound);
    } else {
      append_stray_byte(folded_, run.front());
      text.remove_prefix(1);
    }
  }
  pairs_ = pairs_in(folded_);
}

bool FoldedText::contains(const FoldedText& part) const {
  if (part.folded_.empty() || (part.pairs_ & ~pairs_) != 0) return false;
  return memmem(folded_.data(), folded_.size(), part.folded_.data(), part.folded_.size()) != nullptr;
}

bool contains_folded(std::string_view text, std::string_view part) {
  return FoldedText(text).contains(FoldedText(part));
}

std::string to_valid_utf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (true) {
    const std::size_t sound = well_formed_prefix(bytes);
    text += bytes.substr(0, sound);
    bytes.remove_prefix(sound);
    if (bytes.empty()) return text;
    text += "\uFFFD";
    bytes.remove_prefix(first_sequence(bytes).length);
  }
}

std::string write_byte_count(std::int64_t bytes, const NumberSymbols& symbols, const Localization& localization) {
  if (bytes >= 0) return write_magnitude(static_cast<std::uint64_t>(bytes), symbols, localization);
  std::string text = "-";
  return text.append(write_magnitude(0 - static_cast<std::uint64_t>(bytes), symbols, localization));
}

}  // namespace tarnby
