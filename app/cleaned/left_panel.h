#pragma once

#include "app/parts/left_list.h"
#include "app/parts/screen.h"

class QLabel;

namespace tarnby {

/// Lists what the last removal left, and why.
class LeftPanel : public Screen {
  Q_OBJECT
 public:
  explicit LeftPanel(AppContext& context);

  LeftList* list;
};

}  // namespace tarnby
