#pragma once

#include <string>

#include "files/home_kind.h"
#include "files/url.h"
#include "platform/bookmarks.h"

namespace tarnby {

class Platform;

/// What keeps a folder from standing for a grant.
enum class GrantFault {
  none,
  /// Nothing is stored, or the folder is gone.
  missing,
  /// It is not the folder that this grant stands for.
  other_folder,
  /// It is named as the home folder is, but belongs to another user.
  other_owner,
  /// An Applications folder without a single application: everything installed would look as if it had been removed.
  no_application,
};

/// How a grant stands after it was stored or looked up.
struct GrantState {
  /// The real path; nowhere when nothing is stored or the folder is gone.
  Url folder;
  /// The name that such a folder must have; empty when any will do.
  std::string expected_name;
  GrantFault fault = GrantFault::missing;
  /// The folder exists and is the one that this grant stands for.
  bool is_valid = false;
  /// The system wants the user to be asked again some day; until then the grant serves.
  bool is_stale = false;
};

/// Both grants that the window works with.
struct Access {
  GrantState home;
  GrantState applications;
  /// False in a home of the Linux kind: then the home alone will do.
  bool needs_applications = true;

  /// True when the program may begin: every grant that this home needs is valid.
  bool is_complete() const { return home.is_valid && (applications.is_valid || !needs_applications); }
};

/// The rules of folder access: which folder may stand for which grant. The choice is stored before it is checked, so a
/// wrong folder is stored too, and the next check rejects it. Any thread may call; folders are looked at.
class FolderGrants {
 public:
  explicit FolderGrants(Platform& platform) : platform_(platform) {}

  /// Stores the folder and brings it to the disk; false when it could not be saved. Says nothing of its name.
  bool store(Grant grant, const Url& folder);

  /// The home folder must belong to the user, and be the one that the account names or be named as the user; the
  /// Applications folder must be named "Applications"; a disk may have any name.
  GrantState check(Grant grant) const;

  /// How both stand. Here an Applications folder must hold an application, too.
  Access access() const;

  /// Stores what was picked, and tells how it stands. A grant that was right before is put back when this one is wrong;
  /// a right one is open to the program from then on.
  GrantState take(Grant grant, const Url& picked);

 private:
  GrantState check_whole(Grant grant) const;
  GrantFault fault_of(Grant grant, const GrantState& state) const;
  HomeKind layout_of(const GrantState& home) const;
  bool holds_application(const Url& folder) const;

  Platform& platform_;
};

}  // namespace tarnby
