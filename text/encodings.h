#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnby {

/// The text as UTF-8, a byte order mark kept. None when the encoding, an IANA name, is unknown or empty, or some bytes
/// mean nothing in it. Given by the system.
std::optional<std::string> to_utf8(std::string_view bytes, const std::string& encoding);

}  // namespace tarnby
