#pragma once

#include "app/parts/screen.h"
#include "engine/hand_off.h"
#include "ui/push_button.h"

namespace tarnby {

/// Lists what the program could not remove itself, and tells of the helper that could.
class DownloadHelper : public Screen {
  Q_OBJECT
 public:
  /// @param hand_off of the screen that shows this panel; outlives it.
  DownloadHelper(AppContext& context, HandOff& hand_off);

  PushButton* cancel_button;
  PushButton* show_button;
  PushButton* download_button;

  /// Without an answer the screen below would wait for ever.
  void escaped() override { cancel(); }

  /// Goes on without the helper.
  void cancel();
  void show_in_finder();
  void download();

 private:
  HandOff& hand_off_;
};

}  // namespace tarnby
