#pragma once

#include <atomic>

#include "files/file_manager.h"

namespace tarnby::cli {

// Ctrl-C, a hang-up and a request to end (signal(7)). While nothing is being removed they end the program at once: a
// scan changes nothing, so nothing has to be put right. During a removal the first asks it to stop after the entry in
// hand, a second to end where it stands. When it is over they end the program at once again, and no longer say that
// nothing was removed.

/// Takes the signals over; once, before anything else runs. A signal that the caller had ignored (nohup(1)) stays so.
void watch_for_interrupts();

/// From its making to its end the signals ask for a stop instead of ending the program.
class StopOnInterrupt {
 public:
  StopOnInterrupt();
  ~StopOnInterrupt();
  StopOnInterrupt(const StopOnInterrupt&) = delete;
  StopOnInterrupt& operator=(const StopOnInterrupt&) = delete;

  /// Becomes true when a stop was asked for.
  const std::atomic<bool>& asked() const;
  /// For a removal that the signals stop.
  RemovalOptions options() const;
};

}  // namespace tarnby::cli
