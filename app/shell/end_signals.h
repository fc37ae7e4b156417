#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "files/descriptor.h"

namespace tarnby {

/// Ends the program in order where it is told to by a signal: when a session ends (SIGTERM, SIGHUP), or Ctrl-C is
/// struck where it was started. The same signal once more ends it at once. One object at a time, on the main thread.
class EndSignals {
 public:
  /// @param end called by the event loop once such a signal has come.
  explicit EndSignals(std::function<void()> end);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  Descriptor heard_;
  Descriptor told_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tarnby
