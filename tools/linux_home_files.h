#pragma once

#include <cstdint>
#include <span>

namespace tarnby {

/// What becomes of a file of a Linux home that is cleaned.
enum class Fate : std::uint8_t {
  /// It is listed, and ticked at first.
  goes,
  /// It is listed, and a person has to tick it.
  asks,
  /// Nothing that can be ticked takes it.
  stays,
};

/// A file that programs leave in a home.
struct LinuxHomeFile {
  /// Below the home folder.
  const char* path;
  Fate fate;
  /// Bytes.
  std::int64_t size = 1'000;
};

/// A home of the Linux kind: the sample home, and what tests clean. A rule that offers something new has a file here,
/// and beside it one that it must spare.
std::span<const LinuxHomeFile> linux_home_files();

}  // namespace tarnby
