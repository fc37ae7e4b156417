#pragma once

#include "app/junk/category_page.h"

namespace tarnby {

/// The category page of a person's own files, and of the button that cleans both pages.
class MediaViewController : public CategoryPage {
  Q_OBJECT
 public:
  explicit MediaViewController(AppContext& context);

  void to_apps_junk();
  /// Asks, and then cleans what both pages have ticked.
  void cleanup();
  void show_large_files();
  /// Another choice of large files was made; `change` is what it adds to the sum, in bytes.
  void update_ui_with_large_files_item_size(std::int64_t change);

 protected:
  void toggle(ShownCategory& shown, bool on) override;
  QString size_text(const ShownCategory& shown) const override;
  /// Large files are chosen by ticking their box.
  bool has_box(const ShownCategory& shown) const override;

 private:
  void clean_large_files(ShownCategory& shown, bool on);
  void lead_to_downloads();
  void enable_cleanup();
};

}  // namespace tarnby
