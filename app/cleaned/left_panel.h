#pragma once

#include "app/screen.h"

namespace tarnby {

/// Lists what the last removal left, and why.
class LeftPanel : public Screen {
  Q_OBJECT
 public:
  explicit LeftPanel(AppContext& context);
};

}  // namespace tarnby
