#include "app/junk/junk_choice.h"

#include "engine/cleaner.h"

namespace tarnby {

namespace {

/// Whether a run would take what the row holds.
bool is_ticked(const Cleaner& cleaner, const JunkRow& row) {
  return row.category.is_removed && cleaner.is_switched_on(row.category);
}

}  // namespace

RemovalQuestion junk_choice(const Cleaner& cleaner) {
  RemovalQuestion question{{}, cleaner.cleanup_amount()};
  for (const auto rows : {applications_rows(), media_rows()}) {
    for (const JunkRow& row : rows) {
      if (!is_ticked(cleaner, row)) continue;
      const CleanerItem& item = *(cleaner.*row.category.item);
      question.lines.push_back({row.category.type, row.category.label, item.files.size(), item.size});
    }
  }
  return question;
}

std::int64_t ticked_bytes(const Cleaner& cleaner, std::span<const JunkRow> rows) {
  std::vector<CleanerEntry> ticked;
  for (const JunkRow& row : rows) {
    if (is_ticked(cleaner, row)) ticked.emplace_back(cleaner.*row.category.item);
  }
  return (cleaner.junk_amount ? *cleaner.junk_amount : ChosenAmount()).amount(ticked);
}

}  // namespace tarnby
