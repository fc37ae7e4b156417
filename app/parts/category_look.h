#pragma once

#include <QColor>
#include <string_view>

namespace tarnby {

/// How one category looks and what is told of it, everywhere it is met.
struct CategoryLook {
  std::string_view type;
  QColor color;
  /// In the row of steps, where room is short.
  const char* short_name;
  /// The catalogue's identifier of the panel that tells about it.
  const char* about;
  /// What it is and what removing it means.
  const char* about_text;
};

/// The look of a category, by its type; the first one for any other text.
const CategoryLook& look_of(std::string_view type);

}  // namespace tarnby
