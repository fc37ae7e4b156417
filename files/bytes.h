#pragma once

#include <cstdint>
#include <limits>

namespace tarnby {

/// The sum of two byte counts; the greatest count when it would not fit, since sparse files may claim any length.
constexpr std::int64_t add_bytes(std::int64_t a, std::int64_t b) {
  std::int64_t sum = 0;
  return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<std::int64_t>::max() : sum;
}

}  // namespace tarnby
