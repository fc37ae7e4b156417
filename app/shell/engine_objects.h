#pragma once

#include <list>

#include "engine/cleaner.h"

namespace tarnby {

/// The engine's objects as the window uses them. They take the grants when they are made, so they are made when they
/// are first asked for, and again after the grants were changed. Main thread.
class EngineObjects {
 public:
  explicit EngineObjects(Platform& platform) : platform_(platform) {}

  Cleaner& cleaner() {
    if (!current_) current_ = &made_.emplace_back(platform_);
    return current_->cleaner;
  }
  /// Whoever asks next gets new objects. Those before stay for whoever still holds them.
  void renew_grants() { current_ = nullptr; }

 private:
  struct Objects {
    explicit Objects(Platform& platform)
        : inventory(platform),
          cache(platform, inventory),
          remainders(platform, cache),
          cleaner(platform, cache, remainders) {}

    Application inventory;
    Cache cache;
    Remainders remainders;
    Cleaner cleaner;
  };

  Platform& platform_;
  std::list<Objects> made_;
  Objects* current_ = nullptr;
};

}  // namespace tarnby
