#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnby::cli {

// Names of files hold what their makers liked. What is shown of them must not break a line, drive the terminal, or turn
// the order of what is read.

/// The text as it may be shown in one line: valid UTF-8, with escapes for characters that have effects. A backslash is
/// escaped, too, so that no name can look like another one.
std::string one_line(std::string_view text);

/// The bytes of a well-formed UTF-8 character by its first.
std::size_t length_of_character(unsigned char first);

/// The code point of one well-formed UTF-8 character.
char32_t code_point(std::string_view character);

/// True for controls, for what ends a line, and for what turns the direction of reading.
bool has_effects(char32_t point);

/// "\\u202e".
std::string number_escape(char32_t point);

}  // namespace tarnby::cli
