#pragma once

#include <cstdint>

namespace tarnby {

/// How programs lay out a home folder: with a Library, as on macOS, or with the folders of the XDG base directories, as
/// on Linux. (Some tools still take "linux" alone for a macro.)
enum class HomeKind : std::uint8_t { macos, linux_desktop };

}  // namespace tarnby
