#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnby::cli {

/// The bytes that a person means by "500MB", "1.5 gb", "20 KB" or "12000000": decimal units, whatever their case, parts
/// of a byte left out. None when it is no such size, or more than a file can have.
std::optional<std::int64_t> byte_size(std::string_view typed);

}  // namespace tarnby::cli
