#pragma once

#include "app/screen.h"
#include "ui/scan_views.h"

namespace tarnby {

/// Removes what the engine's `files` hold, and moves on after a fixed time: it does not wait for the end of the
/// removal.
class SmartCleanupViewController : public Screen {
  Q_OBJECT
 public:
  explicit SmartCleanupViewController(AppContext& context);

  DeleteView* progressView;
  FadingLabel* smart_item;
  NumberLabel* smart_size;
};

/// Starts the removal of the engine's `files` in the background; `context.removal` tells how it goes.
void start_removal(AppContext& context, Cleaner& cleaner);

}  // namespace tarnby
