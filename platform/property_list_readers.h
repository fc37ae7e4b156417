#pragma once

// The two readers behind parse_property_list, and the limits they share.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list.h"

namespace tarnby::property_list {

/// Arrays and dictionaries within one another. Real lists stay below ten.
constexpr int max_nesting = 64;
/// Values of a list; one that a binary list refers to twice is two.
constexpr std::size_t max_nodes = 100'000;
/// Length of a list, and of all texts and data in a binary one together, which may refer to one text many times.
constexpr std::size_t max_file_bytes = std::size_t{256} << 20U;
constexpr std::size_t max_copied_bytes = std::size_t{64} << 20U;

/// Reads the document of a list, UTF-8 whatever it declares itself to be in.
std::optional<PropertyList> read_xml(std::string_view utf8);

std::optional<PropertyList> read_binary(std::string_view bytes);

}  // namespace tarnby::property_list
