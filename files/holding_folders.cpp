#include "files/holding_folders.h"

#include <algorithm>
#include <cerrno>

namespace tarnby {

HoldingFolder::HoldingFolder(const GrantedFolders& granted, const std::vector<ProtectedFolder>& protected_folders,
                             const KeptIdentities& kept, const Url& folder)
    : url(folder), handle(granted.open_path_handle(folder)), kept_(kept) {
  error = handle ? note_protected(protected_folders) : errno;
  is_kept = handle && kept.is_below(handle.get());
  if (error != 0) handle.reset();  // where nobody can tell what is protected, nothing may be taken
}

bool HoldingFolder::protects(const GrantedFolders& granted, const std::string& name, const Status& standing) const {
  const auto contains = [](const auto& list, const auto& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
  };
  if (contains(protected_names, name) || is_kept || granted.keeps_by_name(url.appending(name))) return true;
  if (standing.kind == EntryKind::none) return false;
  return contains(protected_entries, standing.identity) || kept_.holds(standing.identity) ||
         granted.is_or_holds_grant(standing.identity);
}

int HoldingFolder::note_protected(const std::vector<ProtectedFolder>& protected_folders) {
  const Status itself = status_of(handle.get());
  if (itself.error != 0) return itself.error;
  for (const ProtectedFolder& row : protected_folders) {
    if (row.url != url && row.identity != itself.identity) continue;
    protected_names.insert(protected_names.end(), row.names.begin(), row.names.end());
  }
  for (const std::string& name : protected_names) {
    const Status standing = status_at(handle.get(), name.c_str());
    if (standing.error == 0) {
      protected_entries.push_back(standing.identity);
    } else if (standing.error != ENOENT) {
      return standing.error;
    }
  }
  return 0;
}

}  // namespace tarnby
