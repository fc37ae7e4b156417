#include "platform/notification_center.h"

#include <vector>

namespace tarnby {

NotificationCenter::Token NotificationCenter::add_observer(std::string name, Observer observer) {
  const std::lock_guard lock(mutex_);
  subscriptions_.emplace(next_, Subscription{std::move(name), std::move(observer)});
  return next_++;
}

void NotificationCenter::remove_observer(Token token) {
  const std::lock_guard lock(mutex_);
  subscriptions_.erase(token);
}

void NotificationCenter::post(std::string_view name) {
  std::vector<Observer> called;  // outside the lock, so that an observer may use the centre itself
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [token, subscription] : subscriptions_) {
      if (subscription.name == name) called.push_back(subscription.observer);
    }
  }
  for (const Observer& observer : called) observer();
}

}  // namespace tarnby
