#pragma once

#include <string_view>

#include "app/parts/category_look.h"
#include "app/parts/screen.h"
#include "ui/push_button.h"

namespace tarnby {

/// Tells about one category of a category page, and leads to what is in it.
class CategoryAbout : public Screen {
  Q_OBJECT
 public:
  CategoryAbout(AppContext& context, std::string_view type);

  /// Null where there is nothing to lead to.
  PushButton* show_button = nullptr;

  /// Shows the category's folder, or lets the person choose, as the category's button does.
  void show_category();

 private:
  void reveal_folder();
  void open_popover();

  const CategoryLook& look_;
};

}  // namespace tarnby
