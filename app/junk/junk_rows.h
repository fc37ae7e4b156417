#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "engine/cleaner.h"

namespace tarnby {

/// One category of the two category pages.
struct JunkRow {
  /// How it looks and what is told of it.
  std::string_view type;
  const char* label;
  std::shared_ptr<CleanerItem> Cleaner::*item;
  /// The setting that says: clean this.
  const char* setting;
  /// Turns the page's inner container to what is told about it.
  const char* move;
  const char* about;
};

/// Of each page, in the order in which they stand; their About panels have the same order.
std::span<const JunkRow> applications_rows();
std::span<const JunkRow> media_rows();

/// The row of a category.
const JunkRow& junk_row(std::string_view type);

}  // namespace tarnby
