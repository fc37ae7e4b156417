#include "cli/characters.h"

#include <cstdio>

#include "text/text.h"

namespace tarnby::cli {

namespace {

std::string escape(const char* form, char32_t point) {
  char text[16];
  const int length = std::snprintf(text, sizeof text, form, static_cast<unsigned>(point));
  return {text, static_cast<std::size_t>(length)};
}

/// What stands in one line for a character: nearly always itself.
std::string shown(char32_t point, std::string_view character) {
  if (point == '\n') return "\\n";
  if (point == '\\') return "\\\\";
  if (!has_effects(point)) return std::string(character);
  return point < 0x100 ? escape("\\x%02x", point) : number_escape(point);
}

}  // namespace

std::size_t length_of_character(unsigned char first) {
  return first < 0x80 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
}

char32_t code_point(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first;
  char32_t point = first & (0xffU >> (character.size() + 1));
  for (const char c : character.substr(1)) point = point << 6U | (static_cast<unsigned char>(c) & 0x3fU);
  return point;
}

bool has_effects(char32_t point) {
  const bool is_control = point < 0x20 || (point >= 0x7f && point < 0xa0);
  const bool ends_line = point == 0x2028 || point == 0x2029;
  const bool is_mark = point == 0x061c || point == 0x200e || point == 0x200f;
  const bool embeds = (point >= 0x202a && point <= 0x202e) || (point >= 0x2066 && point <= 0x2069);
  return is_control || ends_line || is_mark || embeds;
}

std::string number_escape(char32_t point) {
  return escape("\\u%04x", point);
}

std::string one_line(std::string_view text) {
  const std::string valid = to_valid_utf8(text);
  std::string line;
  for (std::size_t at = 0; at < valid.size();) {
    const std::size_t length = length_of_character(static_cast<unsigned char>(valid[at]));
    const std::string_view character = std::string_view(valid).substr(at, length);
    line += shown(code_point(character), character);
    at += length;
  }
  return line;
}

}  // namespace tarnby::cli
