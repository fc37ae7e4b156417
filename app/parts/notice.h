#pragma once

#include "app/parts/screen.h"

namespace tarnby {

/// Tells of something that could not be done.
class Notice : public Screen {
  Q_OBJECT
 public:
  Notice(AppContext& context, const QString& title, const QString& words);

  /// Shows it as a sheet over the window; does nothing when that is gone.
  static void present(AppContext& context, const QString& title, const QString& words, QWidget* window);
};

}  // namespace tarnby
