#pragma once

#include <string>

#include "platform/bookmarks.h"
#include "platform/platform.h"
#include "platform/url.h"

namespace tarnby {

/// How a grant stands after it was stored or looked up.
struct GrantState {
  /// The real path; nowhere when nothing is stored or the folder is gone.
  Url folder;
  /// The name that such a folder must have; empty when any will do.
  std::string expected_name;
  /// The folder is there and has the expected name, letter for letter.
  bool is_valid = false;
};

/// The rules of folder access: which folder may stand for which grant. The choice is stored before it is checked, so a
/// wrong folder is stored too, and the next check rejects it.
class FolderGrants {
 public:
  explicit FolderGrants(Platform& platform) : platform_(platform) {}

  /// Stores the folder and brings it to the disk; false when it could not be saved. Says nothing of its name.
  bool store(Grant grant, const Url& folder) { return platform_.bookmarks.store(grant, folder); }

  /// The home folder must be named as the account's user, the Applications folder "Applications"; a disk may have any
  /// name.
  GrantState check(Grant grant) const;

 private:
  Platform& platform_;
};

}  // namespace tarnby
