#pragma once

#include "app/parts/not_removed_list.h"
#include "app/parts/screen.h"

class QLabel;

namespace tarnby {

/// Lists what the last removal left, and why.
class NotRemovedPanel : public Screen {
  Q_OBJECT
 public:
  explicit NotRemovedPanel(AppContext& context);

  NotRemovedList* list;
};

}  // namespace tarnby
