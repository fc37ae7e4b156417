#pragma once

#include "app/junk/category_page.h"

namespace tarnby {

/// The category page of a person's own files, and of the button that cleans both pages.
class MediaViewController : public CategoryPage {
  Q_OBJECT
 public:
  explicit MediaViewController(AppContext& context);

  void to_apps_junk();
  void cleanup();
  void show_large_files();
  /// Another choice of large files was made; `change` is what it adds to the sum, in bytes.
  void update_ui_with_large_files_item_size(std::int64_t change);

 protected:
  void toggle(Category& category, bool on) override;
  QString size_text(const Category& category) const override;
  /// Large files are chosen by ticking their box. Downloads are not measured before; their box is always there.
  bool has_box(const Category& category) const override;

 private:
  void clean_large_files(Category& category, bool on);
};

}  // namespace tarnby
