#pragma once

#include "app/parts/removal_screen.h"

namespace tarnby {

/// Removes what the engine's `files` hold. It takes its time even where the removal needs none, and moves on when that
/// is over.
class SmartCleanupViewController : public RemovalScreen {
  Q_OBJECT
 public:
  explicit SmartCleanupViewController(AppContext& context);

  DeleteView* progressView;
  FadingLabel* smart_item;
  NumberLabel* smart_size;

 private:
  void show_done();
};

}  // namespace tarnby
