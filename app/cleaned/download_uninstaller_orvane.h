#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"

namespace tarnby {

/// Tells of the companion application.
class UninstallerOrvaneViewcontroller : public Screen {
  Q_OBJECT
 public:
  explicit UninstallerOrvaneViewcontroller(AppContext& context);

  PushButton* download_button;
  PushButton* later_button;

  /// Opens the companion's page.
  void download();
};

}  // namespace tarnby
