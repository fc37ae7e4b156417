#pragma once

#include "app/parts/screen.h"

namespace tarnby {

/// Tells what this program is.
class AboutProgram : public Screen {
  Q_OBJECT
 public:
  explicit AboutProgram(AppContext& context);
};

}  // namespace tarnby
