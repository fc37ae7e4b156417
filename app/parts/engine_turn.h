#pragma once

#include <memory>

namespace tarnby {

class NotificationCenter;
class MainQueue;

/// Whose turn it is to have the engine look. The engine's records are written without locks while screens read them, so
/// there is one scan at a time, whoever asks: from the asking until its work is over and its screen has gone.
class EngineTurn {
 public:
  /// Keeps the turn until the last copy is gone, on whatever thread that is.
  using Held = std::shared_ptr<const void>;
  /// Posted on the main queue when the turn is free again.
  static constexpr const char* turn_is_free = "engine_turn_is_free";

  EngineTurn(NotificationCenter& notifications, MainQueue& main_queue)
      : notifications_(notifications), main_queue_(main_queue) {}

  /// Takes the turn; null while somebody has it. Main thread.
  Held take();
  /// A copy of the turn that is taken, for whoever works on; null when it is free. Main thread.
  Held held() const { return held_.lock(); }
  bool is_free() const { return held_.expired(); }

 private:
  NotificationCenter& notifications_;
  MainQueue& main_queue_;
  std::weak_ptr<const void> held_;
};

}  // namespace tarnby
