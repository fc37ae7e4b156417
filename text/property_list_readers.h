#pragma once

// The two readers behind parse_property_list, and the limits they share.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "text/property_list.h"

namespace tarnby::property_list {

/// Arrays and dictionaries within one another. Real lists stay below ten.
constexpr int max_nesting = 64;
/// Values of a list; one that a binary list refers to twice is two.
constexpr std::size_t max_nodes = 100'000;
/// Length of a list: as much as anybody who reads one here takes of a file.
constexpr std::size_t max_file_bytes = std::size_t{64} << 20U;
/// All texts and data of a binary list together: it may refer to one text many times, so its length says nothing.
constexpr std::size_t max_copied_bytes = std::size_t{64} << 20U;
/// One text or key, which is copied, folded and compared many times over. The system takes no longer argument than half
/// of this, and no path longer than a sixty-fourth; what lists hold as texts ends far below either.
constexpr std::size_t max_text_bytes = std::size_t{256} << 10U;
/// A list has one attribute, its version. The XML parser compares those of an element with one another.
constexpr std::size_t max_attributes = 100;
/// A tag, a comment or a declaration, which the XML parser holds as a whole before anybody can refuse it. Licences
/// stand in comments.
constexpr std::size_t max_markup_bytes = std::size_t{256} << 10U;

/// Reads the document of a list, UTF-8 whatever it declares itself to be in.
std::optional<PropertyList> read_xml(std::string_view utf8);

/// Reads a list that begins with "bplist00". Every offset and size in it is checked before it is used.
std::optional<PropertyList> read_binary(std::string_view bytes);

}  // namespace tarnby::property_list
