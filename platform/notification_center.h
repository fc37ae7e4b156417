#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace tarnby {

/// Named notifications. Observers are called synchronously, on the thread that posts, in the order in which they
/// subscribed; one may subscribe and unsubscribe while it is being called. Any thread may call.
class NotificationCenter {
 public:
  using Observer = std::function<void()>;
  using NumberObserver = std::function<void(std::int64_t number)>;
  using Token = std::uint64_t;

  /// Calls `observer` for each notification of that name from now on.
  Token add_observer(std::string name, Observer observer);
  /// The same for an observer who wants the number that came with it.
  Token add_number_observer(std::string name, NumberObserver observer);
  /// The observer is not called any more once this has returned, unless another thread is posting at this moment.
  void remove_observer(Token token);

  /// Calls the observers of that name and returns when the last one has. Those who subscribe meanwhile are not called.
  /// @param number for number observers; the others do not see it.
  void post(std::string_view name, std::int64_t number = 0);

 private:
  struct Subscription {
    std::string name;
    NumberObserver observer;
  };

  NumberObserver observer_of(Token token);

  std::mutex mutex_;
  Token next_ = 1;
  std::map<Token, Subscription> subscriptions_;
};

}  // namespace tarnby
