#pragma once

#include <mutex>
#include <optional>

#include "files/url.h"

namespace tarnby {

class TraversedFolder;

// How a caller learns that a result is incomplete
//
// Listing, walking and measuring report no failure: what cannot be read is empty. A caller that concludes "there is
// nothing here" or "no application owns this" must know whether it was seen at all. So every function that looks notes
// what it missed, and a LookWatch on the same thread collects the notes:
//
//     LookWatch watch;
//       files.list(a)      b may not be read            noted as refused, at a/b
//       measurer.size(c)   no handle left for c/d/e     noted as failed, at c/d/e, when the size is asked for
//     watch.missed()       both
//
// An entry that does not exist is not missed.

/// What an error (errno(3)) means for a look.
enum class LookError {
  /// None, or there is nothing there.
  none,
  /// The look was ended on purpose, see FileManager::stop_looking.
  stopped,
  /// It may not be read.
  refused,
  /// The disk or the system failed: it is unknown what is there.
  failed,
};

/// The meaning of one. 0 is none, and so is an error that says what is there: no such entry, a link or ".." in the
/// path, too long a name.
LookError look_error(int error);

/// What one or several looks missed. Of several locations it keeps the first in the order of a walk, so that two runs
/// over the same disk report the same.
struct Missed {
  bool stopped = false;
  /// Where access was refused.
  std::optional<Url> refused;
  /// Where the disk or the system failed; an empty Url when there was no memory to store the location.
  std::optional<Url> failed;

  bool anything() const { return stopped || refused || failed; }
  /// Adds what an error (errno(3)) at a location means; nothing when it means nothing.
  void note(int error, const Url& location) noexcept;
  /// Adds what another look missed.
  void add(const Missed& other) noexcept;
};

/// Notes on this thread that a location could not be seen, and why (errno(3)).
void note_missed(int error, const Url& location);
/// Notes on this thread what another one has missed for it.
void note_missed(const Missed& missed);

/// Collects what is missed on its thread while it exists. Watches nest: at its end a watch passes its notes to the one
/// around it.
class LookWatch {
 public:
  /// `here` keeps the notes from the watches around this one.
  enum class Tells { everybody, here };

  explicit LookWatch(Tells tells = Tells::everybody);
  ~LookWatch();
  LookWatch(const LookWatch&) = delete;
  LookWatch& operator=(const LookWatch&) = delete;

  /// What was missed so far. On the thread of the watch.
  const Missed& missed() const { return missed_; }

 private:
  friend void note_missed(int error, const Url& location);
  friend void note_missed(const Missed& missed);

  LookWatch* const around_;
  const Tells tells_;
  Missed missed_;
};

/// Collects what the workers of a traversal miss, for the thread that waits for them. Any thread may call.
class MissedByWorkers {
 public:
  /// Notes that a folder, or something in it, could not be read.
  void note(int error, const TraversedFolder& folder) noexcept;
  /// What was missed so far; complete once the traversal has ended.
  Missed missed() const;

 private:
  mutable std::mutex mutex_;
  Missed missed_;
};

}  // namespace tarnby
