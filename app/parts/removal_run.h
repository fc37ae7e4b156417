#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "engine/why_left.h"
#include "files/file_manager.h"
#include "files/free_space.h"

namespace tarnby {

struct AppContext;

/// What a removal that is over has done.
struct RemovalOutcome {
  /// What is still there, in the order in which it was listed, and how many bytes that is.
  std::vector<LeftEntry> left;
  std::int64_t left_bytes = 0;
  /// Bytes that people read as cleaned.
  std::int64_t cleaned = 0;
  /// The disk of the home folder before the removal and after it; none where the system does not tell.
  std::optional<DiskSpace> space_before, space_after;
};

/// How the last removal of this process stands. Main thread, but for what says otherwise; every change but progress is
/// told by the notification `removal_changed`.
struct RemovalRun {
  static constexpr const char* removal_changed = "removal_changed";

  bool running = false;
  /// What it was told to remove: locations, and their bytes with each of them counted once.
  std::size_t asked_entries = 0;
  std::int64_t asked_bytes = 0;
  /// What it has done so far. Any thread.
  RemovalProgress progress;
  /// Whether somebody has stopped it. Any thread.
  std::atomic<bool> stopped{false};
  /// What it has done, once it is over.
  RemovalOutcome outcome;
  /// False from its beginning until what it has cleaned is in the lifetime total.
  bool counted = true;
  /// True while somebody else may be taking what was left, so that the list has to be looked at again.
  bool left_unsure = false;
  /// What a removal that is over leaves for the main thread, which takes it.
  std::unique_ptr<RemovalOutcome> untaken;

  /// Ends it between two system calls. Any thread.
  void stop() { stopped = true; }
};

/// What a removal is to do.
struct RemovalRequest {
  std::vector<Url> files;
  /// Bytes of them, each location counted once.
  std::int64_t bytes = 0;
  /// Removes them, on a background thread; one result each.
  std::function<std::vector<Removal>(const RemovalOptions& options)> remove;
};

/// Begins a removal in the background; `context.removal` tells how it goes. The engine's `wasCleaned` is what people
/// read as cleaned once it is over.
void start_removal(AppContext& context, RemovalRequest request);

/// Adds what the last removal has cleaned to the lifetime total, and sets the engine's `wasCleaned` to 0, so that
/// nothing is counted twice.
void count_removal(AppContext& context);

/// To be called when the program ends and the background threads have come to theirs: counts a removal that nobody has
/// seen the end of.
void count_unseen_removal(AppContext& context);

/// Looks in the background at what was left, and drops what is gone meanwhile.
void look_again_at_left(AppContext& context);

}  // namespace tarnby
