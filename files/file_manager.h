#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/directory.h"
#include "files/granted_folders.h"
#include "files/missed.h"
#include "files/removal.h"
#include "files/url.h"

namespace tarnby {

class ConfinedThreads;
class Traversal;

/// One entry that a listing or a walk found. Its kind is that of a link itself, not of what it points to.
struct Entry {
  Url url;
  EntryKind kind = EntryKind::none;

  friend bool operator==(const Entry&, const Entry&) = default;
};

/// Whether a listing or a walk takes entries whose name begins with a dot; a walk that skips them does not enter them.
enum class Hidden { skip, take };
/// True when the name begins with a dot.
inline bool is_hidden(std::string_view name) {
  return name.starts_with('.');
}

/// Whether a walk looks inside packages (bundles).
enum class Packages { skip, enter };

/// Called on worker threads for each entry a walk meets: true keeps it.
using WantEntry = std::function<bool(std::string_view name, EntryKind kind)>;

/// True when the name ends in ".app" and has more before it. Says nothing of what stands under the name.
bool is_application_name(std::string_view name);

/// True when a folder of this name is a package, by its extension, whatever its case.
bool is_package_name(std::string_view name);

/// Whether the content of a plain file may be read. What is no plain file is absent.
enum class Readability { absent, unreadable, readable };

/// True when an error (errno(3)) says nothing about what is there, unlike "there is none" and "you may not".
bool is_failure(int error);

/// Listing, walking, looking and removing. Links are never followed below the place where an operation starts, and that
/// place is not followed either. No operation throws or reports a failure on the way: what cannot be read is empty, and
/// a LookWatch hears of it. Any thread may call.
class FileManager {
 public:
  /// @param workers how many folders are read or removed at once; 0 chooses for this machine and its disks.
  /// @param handles how many folders may be kept open, see Traversal.
  explicit FileManager(unsigned workers = 0, std::size_t handles = 0);
  /// Cancels what its workers do and waits for it to end.
  ~FileManager();
  FileManager(const FileManager&) = delete;
  FileManager& operator=(const FileManager&) = delete;

  /// The folders that the user opened; removal knows no others.
  GrantedFolders& granted() { return granted_; }
  const GrantedFolders& granted() const { return granted_; }

  /// Whether the threads that call operations must be able to do more than those that this object makes.
  enum class Callers { keep_their_rights, give_theirs_up };

  /// From now on the kernel, where it can, keeps the threads that this object makes from changing what they should not:
  /// those that look from changing anything, those that remove from all but removing below the granted folders, or
  /// below the part of a deep tree that they are in. Where callers keep their rights, a removal runs on a thread of its
  /// own. Before any other operation, on a thread that may still remove and may give that up afterwards.
  void confine_threads(Callers callers);

  /// The workers, for jobs that no operation here does.
  Traversal& traversal() { return *traversal_; }

  /// Ends every listing, walk and measurement that runs, and each one begun from now on, at once and with what it has,
  /// until `look_again`; removals go on. For when nobody waits for the result any more.
  void stop_looking();
  void look_again();
  /// True between the two: what looks at one thing after the other may as well end. What it has is not all there is, so
  /// nothing may be concluded from what is missing in it.
  bool stopped_looking() const;

  /// The immediate entries of a folder in byte order of their names; empty when it is no folder or cannot be read.
  std::vector<Entry> list(const Url& folder, Hidden hidden = Hidden::skip) const;
  /// The same, their locations only.
  std::vector<Url> list_urls(const Url& folder, Hidden hidden = Hidden::skip) const;

  /// The entries below a folder that `want` keeps, in pre-order, each folder's entries in byte order of their names.
  /// Memory follows what is kept. The folder itself is not among them.
  std::vector<Url> walk(const Url& folder, Hidden hidden, Packages packages, const WantEntry& want);

  /// What stands at a location; when that cannot be found out, its `error` says why, and a LookWatch hears of it.
  Status status(const Url& url) const;
  /// The same for many; neighbours in one folder cost one look each.
  std::vector<Status> statuses(std::span<const Url> urls) const;
  /// False, too, when it cannot be found out; a LookWatch hears of that.
  bool exists(const Url& url) const { return status(url).kind != EntryKind::none; }
  bool is_folder(const Url& url) const { return status(url).kind == EntryKind::folder; }

  /// A folder with the extension "app".
  bool is_application(const Url& url) const;
  /// The name as the user sees it: the last component, without the extension when it is an application.
  std::string display_name(const Entry& entry) const;
  std::string display_name(const Url& url) const;

  /// What a link says, as it says it, whether or not something is there; empty when there is no link.
  std::string link_text(const Url& link) const;

  /// The whole content of a plain file; none when it is anything else, cannot be read, or is larger than `most` bytes.
  std::optional<std::string> read(const Url& file, std::size_t most) const;

  /// Whether a plain file is there and its content may be read; asked without reading more than its first byte.
  Readability readability(const Url& file) const;

  /// Makes these bytes the content of a plain file, which is made when there is none; its folder must be there. It is
  /// written in place, so that others who have it open keep it, and may see a part. False, and nothing written, when
  /// anything but a plain file stands there; false, too, when not all bytes got there.
  bool write(const Url& file, std::string_view bytes) const;
  /// True when a folder is there afterwards; the one that is to hold it must be there before.
  bool make_folder(const Url& folder) const;

  /// Removes each entry and everything below it, for good; returns one result each. They are begun in order, but for
  /// those that wait for another one (RemovalOptions::after), and some folders may be in hand at the same time.
  ///
  /// What stands under the name by then goes, with all that is below it by then; but what a listing found (see
  /// Url::listed_as) and has become an entry of another kind since is not what anybody agreed to: it fails with ESTALE.
  /// A link goes itself, never what it points to. Goes on after a failure and takes everything that can be taken. What
  /// lies outside the granted folders fails and is not touched, and so does what is never removed whole. Another file
  /// system or a bind mount inside an entry is not entered. Large trees are taken by several workers.
  std::vector<Removal> remove(std::span<const Url> urls, const RemovalOptions& options = {});

  /// For each entry, true when `remove` would refuse it: outside the granted folders, or never removed whole.
  std::vector<bool> refuses_to_remove(std::span<const Url> urls) const;

 private:
  const unsigned workers_;
  const std::size_t handles_;
  std::unique_ptr<ConfinedThreads> confined_threads_;  // null when threads keep their rights
  Callers callers_ = Callers::keep_their_rights;
  GrantedFolders granted_;
  const std::unique_ptr<Traversal> traversal_;
};

}  // namespace tarnby
