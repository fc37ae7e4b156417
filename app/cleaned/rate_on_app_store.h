#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// Tells the lifetime total and asks for a rating.
class RateOnAppStore : public Screen {
  Q_OBJECT
 public:
  explicit RateOnAppStore(AppContext& context);

  QLabel* label;
  PushButton* rate_button;
  PushButton* later_button;

  /// Opens the program's page and never asks again.
  void rate_on_mac_app_store();
};

}  // namespace tarnby
