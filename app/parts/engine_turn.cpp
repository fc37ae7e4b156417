#include "app/parts/engine_turn.h"

#include "platform/notification_center.h"
#include "platform/queues.h"

namespace tarnby {

EngineTurn::Held EngineTurn::take() {
  if (!is_free()) return {};
  const auto give_back = [this](const void*) {
    main_queue_.async([&center = notifications_] { center.post(turn_is_free); });
  };
  Held turn(this, give_back);  // of no object of its own: it counts its copies
  held_ = turn;
  return turn;
}

}  // namespace tarnby
