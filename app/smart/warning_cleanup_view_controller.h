#pragma once

#include "app/screen.h"
#include "ui/check_button.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// Asks once more before anything is removed, and says how much. Its answers stay in the settings.
class WarningCleanupViewController : public Screen {
  Q_OBJECT
 public:
  explicit WarningCleanupViewController(AppContext& context);

  PushButton* cleanup_button;
  PushButton* cancel_button;
  CheckButton* dont_show_button;

  /// Goes on with the removal.
  void cleanup();
  /// Does not ask again from now on.
  void dont_show();

  /// Says what would go.
  void show_amount(const QString& size, std::size_t entries);

 Q_SIGNALS:
  void confirmed();

 private:
  QLabel* amount_;
};

}  // namespace tarnby
