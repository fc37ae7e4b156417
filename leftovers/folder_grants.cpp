#include "leftovers/folder_grants.h"

#include <algorithm>

#include "places/home_kind.h"
#include "platform/platform.h"

namespace tarnby {

bool FolderGrants::store(Grant grant, const Url& folder) {
  return platform_.bookmarks.store(grant, folder);
}

GrantFault FolderGrants::fault_of(Grant grant, const GrantState& state) const {
  if (state.folder.empty()) return GrantFault::missing;
  if (grant == Grant::disk) return GrantFault::none;
  const bool named = !state.expected_name.empty() && state.folder.last_path_component() == state.expected_name;
  if (grant == Grant::applications) return named ? GrantFault::none : GrantFault::other_folder;
  if (!named && state.folder != real_folder(platform_.session.account_home)) return GrantFault::other_folder;
  return belongs_to_this_user(state.folder) ? GrantFault::none : GrantFault::other_owner;
}

GrantState FolderGrants::check(Grant grant) const {
  GrantState state;
  state.folder = platform_.bookmarks.resolve(grant, &state.is_stale);
  if (grant == Grant::home) state.expected_name = platform_.session.user_name;
  if (grant == Grant::applications) state.expected_name = "Applications";
  state.fault = fault_of(grant, state);
  state.is_valid = state.fault == GrantFault::none;
  return state;
}

GrantState FolderGrants::check_whole(Grant grant) const {
  GrantState state = check(grant);
  if (grant == Grant::applications && state.is_valid && !holds_application(state.folder)) {
    state.fault = GrantFault::no_application;
    state.is_valid = false;
  }
  return state;
}

/// Before a home was granted, the one that the session names is asked for its kind, which takes a look at a few names.
HomeKind FolderGrants::layout_of(const GrantState& home) const {
  if (platform_.home_kind) return *platform_.home_kind;
  const Session& session = platform_.session;
  const Url& own = session.home_folder.empty() ? session.account_home : session.home_folder;
  return kind_of_home(platform_.files, home.is_valid ? home.folder : own);
}

Access FolderGrants::access() const {
  Access access = {check_whole(Grant::home), check_whole(Grant::applications)};
  access.needs_applications = layout_of(access.home) == HomeKind::macos;
  return access;
}

GrantState FolderGrants::take(Grant grant, const Url& picked) {
  const GrantState before = check_whole(grant);
  (void)store(grant, picked);  // what the disk does not take now goes with the next write
  GrantState taken = check_whole(grant);
  if (taken.is_valid) platform_.bookmarks.resolve_and_access(grant);
  if (!taken.is_valid && before.is_valid) (void)store(grant, before.folder);
  return taken;
}

/// In the folder itself or in one directly in it, as some keep them by vendor.
bool FolderGrants::holds_application(const Url& folder) const {
  const FileManager& files = platform_.files;
  const auto is_application = [&](const Url& entry) { return files.is_application(entry); };
  const std::vector<Url> entries = files.list_urls(folder);
  return std::ranges::any_of(entries, is_application) || std::ranges::any_of(entries, [&](const Url& entry) {
           return std::ranges::any_of(files.list_urls(entry), is_application);
         });
}

}  // namespace tarnby
