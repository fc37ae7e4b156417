#pragma once

#include <QLabel>

#include "app/parts/app_context.h"
#include "ui/push_button.h"

namespace tarnby {

/// Why a scan has listed nothing at all.
enum class WhyNothing {
  everything_is_clean,
  /// The home folder has nothing in it.
  empty_home,
  /// It has none of the places that are looked at: most likely it is no home folder.
  no_known_place,
};

/// What stands in the place of the outline when there is nothing to list, in words that are true for why.
class NothingFound : public QWidget {
  Q_OBJECT
 public:
  NothingFound(AppContext& context, WhyNothing why, QWidget* parent);

  QLabel* title;
  QLabel* words;
  PushButton* done_button;
};

}  // namespace tarnby
