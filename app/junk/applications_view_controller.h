#pragma once

#include "app/junk/category_page.h"

namespace tarnby {

/// The category page of what applications leave lying about.
class ApplicationsViewController : public CategoryPage {
  Q_OBJECT
 public:
  explicit ApplicationsViewController(AppContext& context);

  void to_media_junk();
  void back();
  /// The choice of browsers has changed what their category holds.
  void update_browsers();
};

}  // namespace tarnby
