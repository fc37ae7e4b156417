#include "files/granted_folders.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <string_view>
#include <utility>

#include "files/missed.h"

namespace tarnby {

namespace {

/// Folders whose loss would harm more than it frees: entries of one folder in a grant of one kind. The folder that
/// holds them is named by its path below the grant.
struct ProtectedRow {
  Grant kind;
  std::string_view parent;
  std::vector<std::string> names;
};

const std::vector<ProtectedRow>& protected_rows() {
  static const std::vector<ProtectedRow> rows = {
      {Grant::home,
       "",
       {"Applications", "Desktop", "Documents", "Downloads", "Library", "Movies", "Music", "Pictures", "Public",
        "Sites", ".Trash"}},
      {Grant::home,
       "Library",
       {"Accounts",
        "Address Book Plug-Ins",
        "Application Scripts",
        "Application Support",
        "Assistants",
        "Caches",
        "Calendars",
        "CloudStorage",
        "ColorPickers",
        "Containers",
        "Cookies",
        "Fonts",
        "Group Containers",
        "Input Methods",
        "Internet Plug-Ins",
        "Keyboard Layouts",
        "Keychains",
        "LaunchAgents",
        "Logs",
        "Mail",
        "Messages",
        "Metadata",
        "Mobile Documents",
        "Photos",
        "PreferencePanes",
        "Preferences",
        "Printers",
        "QuickLook",
        "Reminders",
        "Safari",
        "Saved Application State",
        "Screen Savers",
        "Scripts",
        "Services",
        "Shortcuts",
        "Sounds",
        "Spelling",
        "Spotlight",
        "WebKit"}},
      {Grant::disk, "", {"Applications", "Library", "System", "Users", "private", "var"}},
      {Grant::disk, "Users", {"Shared"}},
      {Grant::disk, "var", {"db", "folders", "run"}},
      {Grant::disk, "private", {"var"}},  // where var is a link to it
      {Grant::disk, "private/var", {"db", "folders", "run"}},
      {Grant::disk,
       "Library",
       {"Application Support", "Caches", "LaunchAgents", "LaunchDaemons", "Logs", "Preferences",
        "PrivilegedHelperTools"}},
  };
  return rows;
}

/// Opens one component of `relative` after the other, the first in `base`. Empty, with errno(3) set, where one cannot
/// be opened or is "..". A Url has no empty components.
template <typename OpenNext>
Descriptor descend(Descriptor base, std::string_view relative, OpenNext open_next) {
  while (!relative.empty() && base) {
    const auto slash = relative.find('/');
    const std::string component(relative.substr(0, slash));
    relative = slash == std::string_view::npos ? std::string_view{} : relative.substr(slash + 1);
    if (component == "..") {
      errno = EINVAL;
      return {};
    }
    base = open_next(base.get(), component.c_str(), relative.empty());
  }
  return base;
}

/// Opens a location below a grant with a single call. A failure other than ENOENT decides nothing: the path may be too
/// long for one call, or the system may not have the call. The caller then goes component by component.
Descriptor in_one_step(Descriptor (*open)(int, const char*), int grant, TerminatedName relative) {
  if (relative.empty()) return open(grant, ".");
  if (relative.find("..") == std::string_view::npos) return open(grant, relative.c_str());
  errno = EINVAL;  // ".." could lead out of the grant
  return {};
}

TerminatedName relative_path(const Url& url, const Url& folder) {
  const std::size_t above = folder.path() == "/" ? 0 : folder.path().size();
  return url.path().c_str() + std::min(above + 1, url.path().size());
}

bool has_dot_dot(const Url& url) {
  const std::string& path = url.path();
  return path.find("/../") != std::string::npos || path.ends_with("/..");
}

/// Opens a folder that is to be granted, by its name in the folder above. The handle of an earlier grant of this path
/// is not used, since it may be open to a folder that has been moved away since.
Descriptor open_for_grant(const GrantedFolders& granted, const Url& folder) {
  const Descriptor above = granted.open_parent(folder);
  const std::string name(folder.path() == "/" ? "." : folder.last_path_component());
  if (above) return open_path_handle_at(above.get(), name.c_str());
  // A confined program may not open the folders above, but may still open this one by its whole path.
  return open_path_handle_at(AT_FDCWD, folder.path().c_str());
}

/// The identities of the folders that hold this one, from the nearest up to "/". Each is looked up from the handle by
/// "..", which leads to the real one even when the folder is moved; by path where that is not permitted. One that
/// neither way leads to is missing in the result.
std::vector<Identity> line_of_folders_above(int handle, const Url& folder) {
  std::vector<Identity> line;
  std::string up = "..";
  for (Url url = folder; url.path() != "/"; up += "/..") {
    url = url.parent();
    Status above = status_at(handle, up.c_str());
    if (above.error != 0) above = status_at(AT_FDCWD, url.path().c_str());
    if (above.kind == EntryKind::folder) line.push_back(above.identity);
  }
  return line;
}

}  // namespace

bool GrantedFolders::add(Grant kind, const Url& folder) {
  if (!folder.is_file_url() || has_dot_dot(folder)) return false;
  Descriptor handle = open_for_grant(*this, folder);
  if (!handle) return false;
  const Status itself = status_of(handle.get());
  if (itself.error != 0) return false;  // without its identity it could not be protected from removal
  std::vector<Identity> line = line_of_folders_above(handle.get(), folder);
  line.insert(line.begin(), itself.identity);
  const std::unique_lock lock(mutex_);
  const bool known = std::any_of(given_.begin(), given_.end(), [&](const Given& given) {
    return given.kind == kind && given.url == folder && given.line == line;
  });
  if (!known) given_.push_back({kind, folder, std::move(handle), std::move(line)});
  return true;
}

std::vector<Descriptor> GrantedFolders::handles() const {
  const std::shared_lock lock(mutex_);
  std::vector<Descriptor> handles;
  for (const Given& given : given_) handles.emplace_back(fcntl(given.handle.get(), F_DUPFD_CLOEXEC, 0));
  return handles;
}

bool GrantedFolders::holds(const Url& url) const {
  if (has_dot_dot(url)) return false;
  const std::shared_lock lock(mutex_);
  return std::any_of(given_.begin(), given_.end(),
                     [&](const Given& given) { return url != given.url && url.is_within(given.url); });
}

const GrantedFolders::Given* GrantedFolders::nearest(const Url& url) const {
  const Given* best = nullptr;
  for (const Given& given : given_) {
    if (!url.is_within(given.url)) continue;
    // Of two grants with the same path the later one wins: it is the folder that the user sees there.
    if (!best || given.url.path().size() >= best->url.path().size()) best = &given;
  }
  return best;
}

Descriptor GrantedFolders::open_path_handle_locked(const Url& folder, LastLink last_link) const {
  if (!folder.is_file_url()) {
    errno = ENOENT;
    return {};
  }
  if (const Given* grant = nearest(folder)) {
    Descriptor handle = in_one_step(open_path_handle_beneath, grant->handle.get(), relative_path(folder, grant->url));
    if (handle || errno == ENOENT) return handle;
    const auto below = [](int parent, const char* name, bool) { return open_path_handle_at(parent, name); };
    return descend(open_path_handle_at(grant->handle.get(), "."), relative_path(folder, grant->url), below);
  }
  const auto elsewhere = [last_link](int parent, const char* name, bool last) {
    return last && last_link == LastLink::refuse ? open_path_handle_at(parent, name)
                                                 : open_path_handle_following(parent, name);
  };
  return descend(open_path_handle_at(AT_FDCWD, "/"), relative_path(folder, Url::file("/")), elsewhere);
}

Descriptor GrantedFolders::open_path_handle(const Url& folder) const {
  const std::shared_lock lock(mutex_);
  return open_path_handle_locked(folder, LastLink::refuse);
}

Descriptor GrantedFolders::open_parent(const Url& entry) const {
  const std::shared_lock lock(mutex_);
  return open_path_handle_locked(entry.parent(), LastLink::follow);
}

Descriptor GrantedFolders::open_folder(const Url& folder) const {
  {
    const std::shared_lock lock(mutex_);
    if (const Given* grant = nearest(folder)) {
      Descriptor handle = in_one_step(open_folder_beneath, grant->handle.get(), relative_path(folder, grant->url));
      if (handle || errno == ENOENT) return handle;
    }
  }
  const Descriptor handle = open_path_handle(folder);
  return handle ? open_folder_at(handle.get(), ".") : Descriptor();
}

bool GrantedFolders::is_or_holds_grant(const Identity& identity) const {
  const std::shared_lock lock(mutex_);
  return std::any_of(given_.begin(), given_.end(), [&](const Given& given) {
    return std::find(given.line.begin(), given.line.end(), identity) != given.line.end();
  });
}

std::vector<ProtectedFolder> GrantedFolders::protected_folders() const {
  const std::shared_lock lock(mutex_);
  std::vector<ProtectedFolder> folders;
  const auto protect = [&](const Url& folder, std::vector<std::string> names) {
    const Descriptor handle = open_path_handle_locked(folder, LastLink::refuse);
    const auto identity = handle ? std::optional(status_of(handle.get()).identity) : std::nullopt;
    folders.push_back({folder, identity, std::move(names)});
  };
  for (const LinuxHome& home : linux_homes_) {
    for (KeptNames& kept : never_whole_in(home)) protect(kept.folder, std::move(kept.names));
  }
  for (const Given& given : given_) {
    for (const ProtectedRow& row : protected_rows()) {
      if (row.kind == given.kind) protect(given.url.appending(row.parent), row.names);
    }
    for (Url url = given.url; url.path() != "/"; url = url.parent()) {
      protect(url.parent(), {std::string(url.last_path_component())});
    }
  }
  return folders;
}

void GrantedFolders::guard_linux_home(LinuxHome home) {
  const std::unique_lock lock(mutex_);
  std::erase_if(linux_homes_, [&](const LinuxHome& known) { return known.home == home.home; });
  linux_homes_.push_back(std::move(home));
  kept_before_ = kept_identities_locked();
}

bool GrantedFolders::keeps_by_name(const Url& entry) const {
  const std::shared_lock lock(mutex_);
  return std::ranges::any_of(linux_homes_, [&](const LinuxHome& home) { return is_kept_by_name(home, entry); });
}

KeptIdentities GrantedFolders::kept_identities() const {
  const std::shared_lock lock(mutex_);
  return kept_identities_locked();
}

KeptIdentities GrantedFolders::kept_identities_locked() const {
  KeptIdentities kept = kept_before_;
  kept.are_all = true;
  const auto note = [&](const Url& folder, const std::vector<std::string>& names, std::vector<Identity>& list) {
    const Descriptor handle = open_path_handle_locked(folder, LastLink::refuse);
    Status standing;
    standing.error = handle ? 0 : errno;
    for (const std::string& name : names) {
      if (handle) standing = status_at(handle.get(), name.c_str());
      if (standing.kind == EntryKind::folder) list.push_back(standing.identity);
      if (look_error(standing.error) == LookError::failed) kept.are_all = false;
    }
  };
  for (const LinuxHome& home : linux_homes_) {
    for (const KeptNames& row : never_whole_in(home)) note(row.folder, row.names, kept.whole);
    for (const Url& url : never_touched_in(home)) {
      note(url.parent(), {std::string(url.last_path_component())}, kept.with_all_below);
    }
  }
  kept.whole.insert(kept.whole.end(), kept.with_all_below.begin(), kept.with_all_below.end());
  for (std::vector<Identity>* list : {&kept.whole, &kept.with_all_below}) {
    std::sort(list->begin(), list->end());
    list->erase(std::unique(list->begin(), list->end()), list->end());
  }
  return kept;
}

bool KeptIdentities::holds(const Identity& identity) const {
  return std::binary_search(whole.begin(), whole.end(), identity);
}

bool KeptIdentities::is_below(int folder) const {
  if (with_all_below.empty()) return false;
  const auto is_kept = [&](const Status& status) {
    return std::ranges::find(with_all_below, status.identity) != with_all_below.end();
  };
  Status standing = status_of(folder);
  std::string up = "..";
  for (Identity below; standing.error == 0 && standing.identity != below; up += "/..") {
    if (is_kept(standing)) return true;
    below = standing.identity;
    standing = status_at(folder, up.c_str());
  }
  return false;
}

int ParentCursor::parent_of(const Url& url) {
  errno = ENOENT;
  if (!url.is_file_url() || url.path() == "/") return -1;
  const Url parent = url.parent();
  if (parent != parent_) {
    handle_ = granted_.open_parent(url);
    parent_ = parent;
    error_ = handle_ ? 0 : errno;
  }
  errno = error_;
  return handle_.get();
}

}  // namespace tarnby
