#pragma once

#include "app/left_list.h"
#include "app/screen.h"

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
