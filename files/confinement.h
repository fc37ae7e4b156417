#pragma once

#include <vector>

#include "files/descriptor.h"

namespace tarnby {

// Rights that the kernel takes away for good. What this program never does it is unable to do then, also where a fault
// of ours, or somebody who makes use of one, would have it done.

/// What a thread may go on changing. Folders are meant as they are open, wherever they are moved to.
struct MayChange {
  /// Below these, entries may be removed; nothing may be made or written.
  std::vector<Descriptor> removing;
  /// Below these, folders and files may be made, files written, renamed within their folder, and removed.
  std::vector<Descriptor> writing;
};

/// Takes the right to remove, make and write anything else from the calling thread and from all that it starts from now
/// on. Reading is as before, and so is what is open already; threads that run already keep their rights. False where
/// the kernel has no such thing (on Linux see landlock(7)) or refuses it: then all is as before.
bool give_up_changing(const MayChange& but);

/// Likewise the right to make sockets that are not local (unix(7), seccomp(2)).
bool give_up_network();

}  // namespace tarnby
