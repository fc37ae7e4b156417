#include "ui/motion.h"

namespace tarnby::motion {
namespace {
bool is_reduced = false;
}

bool reduced() {
  return is_reduced;
}

void set_reduced(bool reduced) {
  is_reduced = reduced;
}

}  // namespace tarnby::motion
