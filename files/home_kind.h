#pragma once

#include <cstdint>

namespace tarnby {

/// How programs lay out a home folder: with a Library, as on macOS, or with the folders of the XDG base directories, as
/// on Linux.
enum class HomeKind : std::uint8_t { macos, linux };

}  // namespace tarnby
