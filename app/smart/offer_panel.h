#pragma once

#include "app/parts/screen.h"
#include "engine/offered_item.h"

namespace tarnby {

/// Tells why a row is offered, what happens once it is gone, and when it last changed.
class OfferPanel : public Screen {
  Q_OBJECT
 public:
  OfferPanel(AppContext& context, const OfferedItem& item);
};

}  // namespace tarnby
