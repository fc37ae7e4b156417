#pragma once

#include <memory>
#include <string>
#include <vector>

#include "files/granted_folders.h"

namespace tarnby {

/// The folder that holds an entry, with what may not be taken out of it.
struct HoldingFolder {
  Url url;
  Descriptor handle;
  int error = 0;
  std::vector<std::string> protected_names;
  std::vector<Identity> protected_entries;
  /// Nothing may be taken out of it.
  bool is_kept = false;

  HoldingFolder(const GrantedFolders& granted, const std::vector<ProtectedFolder>& protected_folders,
                const KeptIdentities& kept, const Url& folder);

  /// True when the entry, of which `standing` tells what it is, may not be taken whole.
  bool protects(const GrantedFolders& granted, const std::string& name, const Status& standing) const;

 private:
  /// Why that was not possible; 0 when it was.
  int note_protected(const std::vector<ProtectedFolder>& protected_folders);

  const KeptIdentities& kept_;
};

/// Finds the holding folder of one entry after another; neighbours share it.
class HoldingFolders {
 public:
  explicit HoldingFolders(const GrantedFolders& granted)
      : granted_(granted), protected_folders_(granted.protected_folders()), kept_(granted.kept_identities()) {}

  /// What is kept, as it was at the beginning.
  const KeptIdentities& kept() const { return kept_; }

  /// Null when nothing may be taken from where this entry is.
  std::shared_ptr<const HoldingFolder> holding(const Url& url) {
    if (!granted_.holds(url) || !kept_.are_all) return nullptr;
    const Url parent = url.parent();
    if (!last_ || last_->url != parent) {
      last_ = std::make_shared<HoldingFolder>(granted_, protected_folders_, kept_, parent);
    }
    return last_;
  }

 private:
  const GrantedFolders& granted_;
  const std::vector<ProtectedFolder> protected_folders_;
  const KeptIdentities kept_;
  std::shared_ptr<const HoldingFolder> last_;
};

}  // namespace tarnby
