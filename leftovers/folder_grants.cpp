#include "leftovers/folder_grants.h"

namespace tarnby {

GrantState FolderGrants::check(Grant grant) const {
  GrantState state;
  state.folder = platform_.bookmarks.resolve(grant);
  if (grant == Grant::home) state.expected_name = platform_.session.user_name;
  if (grant == Grant::applications) state.expected_name = "Applications";
  const bool any_name = grant == Grant::disk;
  const bool name_fits =
      any_name || (!state.expected_name.empty() && state.folder.last_path_component() == state.expected_name);
  state.is_valid = !state.folder.empty() && name_fits;
  return state;
}

}  // namespace tarnby
