#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

namespace tarnby::test {

/// The seed of a random test: the variable TARNBY_SEED, so that what failed can be run again as it was, else another
/// one each time.
inline std::uint32_t random_seed() {
  const char* given = std::getenv("TARNBY_SEED");  // NOLINT(concurrency-mt-unsafe): no test changes the environment
  return given == nullptr ? std::random_device()() : static_cast<std::uint32_t>(std::stoul(given));
}

/// What a failing random test tells of its seed.
inline std::string how_to_repeat(std::uint32_t seed) {
  return "the same again with TARNBY_SEED=" + std::to_string(seed);
}

}  // namespace tarnby::test
