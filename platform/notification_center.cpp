#include "platform/notification_center.h"

#include <vector>

namespace tarnby {

NotificationCenter::Token NotificationCenter::add_observer(std::string name, Observer observer) {
  return add_number_observer(std::move(name), [observer = std::move(observer)](std::int64_t) { observer(); });
}

NotificationCenter::Token NotificationCenter::add_number_observer(std::string name, NumberObserver observer) {
  const std::lock_guard lock(mutex_);
  subscriptions_.emplace(next_, Subscription{std::move(name), std::move(observer)});
  return next_++;
}

void NotificationCenter::remove_observer(Token token) {
  decltype(subscriptions_)::node_type removed;  // goes outside the lock, since what it holds may use the centre
  const std::lock_guard lock(mutex_);
  removed = subscriptions_.extract(token);
}

void NotificationCenter::post(std::string_view name, std::int64_t number) {
  std::vector<Token> called;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [token, subscription] : subscriptions_) {
      if (subscription.name == name) called.push_back(token);
    }
  }
  for (const Token token : called) {
    if (const NumberObserver observer = observer_of(token)) observer(number);
  }
}

/// None once it has been removed, which an observer called before it may have done.
NotificationCenter::NumberObserver NotificationCenter::observer_of(Token token) {
  const std::lock_guard lock(mutex_);
  const auto subscription = subscriptions_.find(token);
  return subscription == subscriptions_.end() ? NumberObserver() : subscription->second.observer;
}

}  // namespace tarnby
