#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/file_manager.h"
#include "platform/url.h"

namespace tarnby {

/// How the last removal of this process stands. Written and read on the main thread; every change is told by the
/// notification `removal_changed`.
struct RemovalRun {
  static constexpr const char* removal_changed = "removal_changed";

  struct Left {
    Url url;
    /// Why it is still there, in English words that the tables of texts have.
    std::string reason;
  };

  bool running = false;
  /// What could not be removed, in the order in which it was listed.
  std::vector<Left> left;
};

/// What is still there of a list after its removal; one result for each location.
std::vector<RemovalRun::Left> left_of(std::span<const Url> urls, std::span<const Removal> results);

}  // namespace tarnby
