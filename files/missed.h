#pragma once

#include <mutex>
#include <optional>

#include "files/url.h"

namespace tarnby {

class TraversedFolder;

// How it is known that a look told less than there is
//
// Looks report no failure: what cannot be read is empty. But whoever says "there is nothing here" or "this belongs to
// nobody" must know whether it was seen at all. So whatever looks notes what it missed, and a watch on the same thread
// hears of it:
//
//     LookWatch watch;
//       files.list(a)      b may not be read            noted as refused, at a/b
//       measurer.size(c)   no handle left for c/d/e     noted as failed, at c/d/e, when the size is asked for
//     watch.missed()       both
//
// What is not there was not missed.

/// What an error (errno(3)) means for a look.
enum class LookError {
  /// None, or there is nothing there.
  none,
  /// The look was ended by whoever began it.
  stopped,
  /// It may not be read.
  refused,
  /// The disk or the system failed: nobody knows what is there.
  failed,
};

LookError look_error(int error);

/// What one or several looks missed. Of the places where something failed it keeps the first in the order of a walk,
/// so that two runs tell the same.
struct Missed {
  bool stopped = false;
  /// Where access was refused.
  std::optional<Url> refused;
  /// Where the disk or the system failed; nowhere when there was not even the memory to tell.
  std::optional<Url> failed;

  bool anything() const { return stopped || refused || failed; }
  void note(int error, const Url& location) noexcept;
  void add(const Missed& other) noexcept;
};

/// Notes on this thread that a location could not be seen, and why (errno(3)).
void note_missed(int error, const Url& location);
void note_missed(const Missed& missed);

/// Hears what the looks of its thread miss while it lives. They nest: what one hears, those around it hear at its end.
class LookWatch {
 public:
  /// `here` when what is missed matters to nobody around.
  enum class Tells { everybody, here };

  explicit LookWatch(Tells tells = Tells::everybody);
  ~LookWatch();
  LookWatch(const LookWatch&) = delete;
  LookWatch& operator=(const LookWatch&) = delete;

  const Missed& missed() const { return missed_; }

 private:
  friend void note_missed(int error, const Url& location);
  friend void note_missed(const Missed& missed);

  LookWatch* const around_;
  const Tells tells_;
  Missed missed_;
};

/// What the workers of a traversal miss, for the thread that waits for them. Any thread may call.
class MissedByWorkers {
 public:
  /// What could not be read of a folder.
  void note(int error, const TraversedFolder& folder) noexcept;
  Missed missed() const;

 private:
  mutable std::mutex mutex_;
  Missed missed_;
};

}  // namespace tarnby
