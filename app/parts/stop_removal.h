#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"

namespace tarnby {

/// Asks whether a removal is to be stopped, since the window was to close. Goes by itself when the removal is over.
class StopRemoval : public Screen {
  Q_OBJECT
 public:
  explicit StopRemoval(AppContext& context);

  PushButton* stop_button;
  PushButton* go_on_button;

 Q_SIGNALS:
  void stop_asked();
};

}  // namespace tarnby
