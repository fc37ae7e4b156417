#pragma once

#include <optional>
#include <shared_mutex>
#include <span>
#include <string>
#include <vector>

#include "files/descriptor.h"
#include "files/directory.h"
#include "files/linux_home.h"
#include "files/url.h"

namespace tarnby {

/// The kind of a granted folder. It decides which entries in it are never removed whole.
enum class Grant { home, applications, disk };

/// A folder, and the names of those of its entries that are never removed whole. It is recognised by its path and by
/// its identity, so that the protection also holds on another path to it.
struct ProtectedFolder {
  Url url;
  /// None when the folder does not exist.
  std::optional<Identity> identity;
  std::vector<std::string> names;
};

/// What a removal must not take, by whatever path it comes to it.
struct KeptIdentities {
  /// In order.
  std::vector<Identity> whole;
  /// Of these nothing at all goes. Each of them is in the other list, too.
  std::vector<Identity> with_all_below;
  /// False when a disk failed, so that something that is kept may be missing here.
  bool are_all = true;

  bool holds(const Identity& identity) const;
  /// True for an open folder that is, or lies in, one of which nothing goes.
  bool is_below(int folder) const;
};

/// The folders to which the user has given this program access, and the only way from a location to an open handle.
///
/// A location below a grant is opened from the handle that was opened when the grant was given. A link in any component
/// makes this fail. Outside the grants, links are followed in every component but the last, as for a path that a person
/// types. Functions that open return an empty Descriptor on failure and leave the reason in errno(3). Any thread may
/// call.
class GrantedFolders {
 public:
  /// Grants access to `folder`, which must be a real path (no link in it). Its handle stays open as long as this object
  /// lives. Earlier grants are kept, also those of the same kind. When the path names another folder by now than it did
  /// for an earlier grant, lookups below that path use the newer grant; the test
  /// GrantedFolders.stay_the_folder_that_was_granted_until_it_is_granted_anew pins this. False, and no grant, when it
  /// is no folder or cannot be opened.
  bool add(Grant kind, const Url& folder);

  /// A new handle of each granted folder, for telling the kernel where this program may change something (see
  /// confinement.h).
  std::vector<Descriptor> handles() const;

  /// True when the location lies strictly below a granted folder by its path; the disk is not asked.
  bool holds(const Url& url) const;

  /// A path handle of the folder: for looking up entries in it by name, not for listing them. Empty when a component is
  /// missing, a link, or "..".
  Descriptor open_path_handle(const Url& folder) const;
  /// A path handle of the folder that holds the entry. Outside the grants this folder, too, may be named by a link.
  Descriptor open_parent(const Url& entry) const;
  /// A handle for listing the folder's entries, under the rules of open_path_handle.
  Descriptor open_folder(const Url& folder) const;

  /// The entries that are never removed whole, as they are at this moment: granted folders, folders that hold one, and
  /// the folders that a home or a disk cannot do without.
  std::vector<ProtectedFolder> protected_folders() const;

  /// From now on a granted home is guarded as one of the Linux kind, too: what never_whole_in and never_touched_in name
  /// is refused by name, and by identity wherever it is reached and wherever it is moved from now on. What was said of
  /// the same home before is replaced.
  void guard_linux_home(LinuxHome home);
  /// True of an entry that is kept for its name in such a home. The disk is not asked.
  bool keeps_by_name(const Url& entry) const;
  /// What is kept in such homes, as it is at this moment and as it was when the guard was set.
  KeptIdentities kept_identities() const;

  /// True for a granted folder and for each folder above one, by whatever path it was reached. The disk is not asked.
  bool is_or_holds_grant(const Identity& identity) const;

 private:
  struct Given {
    Grant kind;
    Url url;
    Descriptor handle;
    /// The identity of the granted folder, then those of the folders that hold it, from the nearest up to "/".
    std::vector<Identity> line;
  };

  /// The innermost grant that is or holds the location; null when none does. Under the mutex.
  const Given* nearest(const Url& url) const;
  /// Whether a link as the last component is followed outside the grants; below them it never is.
  enum class LastLink { refuse, follow };
  Descriptor open_path_handle_locked(const Url& folder, LastLink last_link) const;

  mutable std::shared_mutex mutex_;
  std::vector<Given> given_;
  KeptIdentities kept_identities_locked() const;

  std::vector<LinuxHome> linux_homes_;
  KeptIdentities kept_before_;  // when the guards were set
};

/// Opens the folders that hold entries, one entry after another. The last folder stays open, so that neighbours cost
/// one opening together. For one thread.
class ParentCursor {
 public:
  explicit ParentCursor(const GrantedFolders& granted) : granted_(granted) {}

  /// A handle of the folder that holds the entry, as GrantedFolders::open_parent gives it; valid until the next call.
  /// -1 when there is none, and errno(3) says why.
  int parent_of(const Url& url);

 private:
  const GrantedFolders& granted_;
  Url parent_;
  Descriptor handle_;
  int error_ = 0;
};

}  // namespace tarnby
