#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "files/descriptor.h"
#include "files/url.h"

namespace tarnby {

/// Makes sure that there is one window for one user's settings: the second program that starts asks the first one to
/// come to the front, and ends. Two programs with different settings folders do not know each other.
class SingleWindow {
 public:
  explicit SingleWindow(const Url& settings_folder);

  /// False when another program was there before; it has been asked to come to the front.
  bool is_first() const { return is_first_; }
  /// What to do when another program starts. Main thread.
  void when_asked_to_front(std::function<void()> come);

 private:
  void answer();

  bool is_first_ = true;
  Descriptor socket_;
  std::function<void()> come_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tarnby
