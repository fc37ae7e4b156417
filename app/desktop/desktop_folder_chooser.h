#pragma once

#include "app/desktop/folder_chooser.h"

namespace tarnby {

/// The desktop's own folder chooser, or Qt's where the desktop has none.
class DesktopFolderChooser final : public FolderChooser {
 public:
  void choose(QWidget* over, const FolderRequest& request, Done done) override;
};

}  // namespace tarnby
