#pragma once

#include <vector>

#include "engine/why_left.h"

namespace tarnby {

/// How the last removal of this process stands. Written and read on the main thread; every change is told by the
/// notification `removal_changed`.
struct RemovalRun {
  static constexpr const char* removal_changed = "removal_changed";

  bool running = false;
  /// What could not be removed, in the order in which it was listed.
  std::vector<LeftEntry> left;
};

}  // namespace tarnby
