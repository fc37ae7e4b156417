#include "pictures/confinement.h"

#include <sandbox.h>

namespace tarnby {

bool confine_to_pipes() {
  char* why_not = nullptr;
  const bool confined = sandbox_init(kSBXProfilePureComputation, SANDBOX_NAMED, &why_not) == 0;
  if (why_not != nullptr) sandbox_free_error(why_not);
  return confined;
}

}  // namespace tarnby
