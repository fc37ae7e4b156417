#pragma once

#include <optional>
#include <shared_mutex>
#include <span>
#include <string>
#include <vector>

#include "files/descriptor.h"
#include "files/directory.h"
#include "files/url.h"

namespace tarnby {

/// What a granted folder is to the program, which decides what in it is never removed whole.
enum class Grant { home, applications, disk };

/// A folder some of whose entries are never removed whole. It is recognised by its path and by its identity, so that
/// another path to it does not lose the protection.
struct ProtectedFolder {
  Url url;
  /// None when the folder does not exist.
  std::optional<Identity> identity;
  std::vector<std::string> names;
};

/// The folders the user opened to this program, and the only way from a location to an open handle.
///
/// A location below a grant is opened from the handle that was taken when the grant was given, in one step or component
/// by component; a link in any component ends the road. Elsewhere links above the last component are followed, as for a
/// path typed by a person. Any thread may call.
class GrantedFolders {
 public:
  /// Opens `folder`, a real path, and keeps its handle for as long as this object lives. A later grant of the same
  /// kind is added, the earlier one stays; when another folder has come to stand under its path, the later one is meant
  /// from then on. False, and no grant, when it is no folder that can be opened.
  bool add(Grant kind, const Url& folder);

  /// A handle of each granted folder, for giving up the right to change anything else.
  std::vector<Descriptor> handles() const;

  /// True when the location lies strictly below a granted folder.
  bool holds(const Url& url) const;

  /// A handle for looking up entries in the folder; empty when a component is missing, a link, or "..".
  Descriptor open_path_handle(const Url& folder) const;
  /// The same for the folder that holds an entry, whose name is then the last component.
  Descriptor open_parent(const Url& entry) const;
  /// A handle for reading the folder's entries, under the same rules.
  Descriptor open_folder(const Url& folder) const;

  /// The entries that are never removed whole, whoever asks, by the folder they are in: granted folders, folders that
  /// hold one, and the folders that a home or a disk cannot do without. As they stand at this moment.
  std::vector<ProtectedFolder> protected_folders() const;

  /// True when this is a granted folder or one that holds a granted folder, whatever its path.
  bool is_or_holds_grant(const Identity& identity) const;

 private:
  struct Given {
    Grant kind;
    Url url;
    Descriptor handle;
    /// The granted folder's own, then those of the folders that hold it, up to "/".
    std::vector<Identity> line;
  };

  const Given* nearest(const Url& url) const;
  /// What a link as the last component means outside the grants; below them it is always refused.
  enum class LastLink { refuse, follow };
  Descriptor open_path_handle_locked(const Url& folder, LastLink last_link) const;

  mutable std::shared_mutex mutex_;
  std::vector<Given> given_;
};

}  // namespace tarnby
