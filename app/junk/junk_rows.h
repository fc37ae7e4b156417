#pragma once

#include <span>

#include "app/parts/category_look.h"
#include "engine/categories.h"

namespace tarnby {

/// One category of the two category pages.
struct JunkRow {
  const Category& category;
  const CategoryLook& look;
};

/// Of each page, in the order in which they stand; their About panels have the same order. They live as long as the
/// program.
std::span<const JunkRow> applications_rows();
std::span<const JunkRow> media_rows();

}  // namespace tarnby
