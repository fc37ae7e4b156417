#pragma once

#include <vector>

#include "files/descriptor.h"

namespace tarnby {

// Rights that the kernel takes away for good: what this program never has to do it then cannot do, not even when a
// fault in it is exploited.

/// The folders in which a thread keeps the right to change something. Each is the folder that the handle is open to,
/// wherever it is moved.
struct MayChange {
  /// Below these, entries may be removed; nothing may be made or written.
  std::vector<Descriptor> removing = {};
  /// Below these, folders and files may be made, files written, renamed within their folder, and removed.
  std::vector<Descriptor> writing = {};
  /// Where entries may be removed, folders may also be renamed within the folder that holds them, which to the kernel
  /// is to make one.
  bool renaming = false;
  /// The modes of this user's files and folders may be changed (chmod(2)), wherever they are; also where `writing`
  /// names a folder.
  bool unlocking = false;
};

/// Takes the right to remove, make and write anything else from the calling thread and from all threads that it starts
/// from now on. Reading stays allowed, and so does writing to files that are open already. Other threads keep their
/// rights. False, and nothing is changed, when the kernel cannot do this (on Linux see landlock(7)) or refuses.
bool give_up_changing(const MayChange& but);

/// Takes the right to make sockets that are not local (unix(7), seccomp(2)), likewise.
bool give_up_network();

}  // namespace tarnby
