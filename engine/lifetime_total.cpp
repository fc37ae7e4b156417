#include "engine/lifetime_total.h"

namespace tarnby {

std::int64_t add_to_lifetime_total(AppSettings& settings, std::int64_t was_cleaned, bool* is_saved) {
  settings.add_integer("TotallyCleaned", was_cleaned);
  const bool is_written = settings.synchronize();  // if not, the sum stays in the store and goes with the next write
  if (is_saved != nullptr) *is_saved = is_written;
  return settings.integer("TotallyCleaned");
}

}  // namespace tarnby
