#include "engine/lifetime_total.h"

namespace tarnby {

std::int64_t add_to_lifetime_total(AppSettings& settings, std::int64_t was_cleaned) {
  settings.add_integer("TotallyCleaned", was_cleaned);
  (void)settings.synchronize();  // nothing is lost: the sum stays in the store and goes with the next write
  return settings.integer("TotallyCleaned");
}

}  // namespace tarnby
