#include "app/removal_run.h"

namespace tarnby {

std::vector<RemovalRun::Left> left_of(std::span<const Url> urls, std::span<const Removal> results) {
  std::vector<RemovalRun::Left> left;
  for (std::size_t at = 0; at < results.size(); ++at) {
    if (!results[at].attempted) {
      left.push_back({urls[at], "the removal was stopped before it"});
    } else if (results[at].error) {
      left.push_back({urls[at], results[at].error.message()});
    }
  }
  return left;
}

}  // namespace tarnby
