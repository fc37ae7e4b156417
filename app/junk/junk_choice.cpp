#include "app/junk/junk_choice.h"

#include <algorithm>

#include "app/junk/junk_rows.h"

namespace tarnby {

namespace {

const CleanupCategory& category_of(const JunkRow& row) {
  return *std::ranges::find(cleanup_categories(), std::string_view(row.setting), &CleanupCategory::setting);
}

}  // namespace

RemovalQuestion junk_choice(const Cleaner& cleaner) {
  RemovalQuestion question{{}, cleaner.cleanup_amount()};
  for (const auto rows : {applications_rows(), media_rows()}) {
    for (const JunkRow& row : rows) {
      const CleanupCategory& category = category_of(row);
      if (!category.is_removed || !cleaner.is_switched_on(category)) continue;
      const CleanerItem& item = *(cleaner.*row.item);
      question.lines.push_back({row.type, row.label, item.files.size(), item.size});
    }
  }
  return question;
}

}  // namespace tarnby
