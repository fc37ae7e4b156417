#include "app/junk/junk_rows.h"

#include <vector>

#include "engine/categories.h"

namespace tarnby {

namespace {

std::vector<JunkRow> rows_of(JunkPage page) {
  std::vector<JunkRow> rows;
  for (const CategoryLook& look : category_looks()) {
    if (look.page == page) rows.push_back({*category_row(look.type), look});
  }
  return rows;
}

}  // namespace

std::span<const JunkRow> applications_rows() {
  static const std::vector<JunkRow> rows = rows_of(JunkPage::applications);
  return rows;
}

std::span<const JunkRow> media_rows() {
  static const std::vector<JunkRow> rows = rows_of(JunkPage::media);
  return rows;
}

}  // namespace tarnby
