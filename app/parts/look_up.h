#pragma once

#include <utility>

#include "platform/queues.h"

namespace tarnby {

/// Runs `look` on that queue and hands its value to `then` on the main queue. `look` owns what it uses, or refers to
/// what outlives the queue.
template <class Look, class Then>
void look_up(BackgroundQueue& queue, MainQueue& main_queue, Look look, Then then) {
  queue.async([&main_queue, look = std::move(look), then = std::move(then)] {
    main_queue.async([then, value = look()] { then(value); });
  });
}

}  // namespace tarnby
