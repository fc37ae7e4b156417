#include "platform/file_metadata.h"

namespace tarnby {

std::int64_t days_between(Moment from, Moment to) {
  return std::chrono::floor<std::chrono::days>(to - from).count();
}

}  // namespace tarnby
