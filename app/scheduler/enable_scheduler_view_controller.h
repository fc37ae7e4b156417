#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"

namespace tarnby {

/// Offers the scheduler, once: either answer is kept. Escape is an answer too.
class EnableSchedulerViewController : public Screen {
  Q_OBJECT
 public:
  explicit EnableSchedulerViewController(AppContext& context);

  PushButton* enable_button;
  PushButton* cancel_button;

  void escaped() override { cancel(); }

  void enable();
  void cancel();
};

}  // namespace tarnby
