#pragma once

#include <QColor>
#include <chrono>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "engine/categories.h"
#include "files/url.h"

namespace tarnby {

/// What the button of a panel that tells about a category does: one of showing, posting and opening.
struct AboutButton {
  /// Null where there is nothing to lead to, and no button.
  const char* text = nullptr;
  /// Shows the contents of this folder in the file viewer.
  Url Cleaner::*folder = nullptr;
  /// Begins with the hidden file that keeps a folder's look, so that the viewer opens the folder itself.
  bool tries_view_file = false;
  /// Posts this notification.
  const char* notification = nullptr;
  /// Opens what the catalogue makes by this identifier in a popover.
  const char* popover = nullptr;
  /// The notification by which somebody else presses the button; null where nobody does.
  const char* pressed_by = nullptr;
};

/// What is told about a category, on a panel of its own.
struct AboutCategory {
  /// The panel's identifier in the catalogues.
  const char* identifier;
  /// What the category is and what removing it means.
  const char* text;
  AboutButton button = {};
};

/// The two category pages.
enum class JunkPage { none, applications, media };

/// How the screen of the junk scan shows a category, whose files flicker past.
struct JunkScanStep {
  enum class Empty { untold, wait, clean };

  /// Its moment, counted from the beginning of what belongs to its page; none for a category that is not shown.
  std::optional<std::chrono::milliseconds> begins = {};
  /// What is said when it has no files.
  Empty empty = Empty::untold;
  /// The locations that flicker past; null for the files of the category.
  const std::vector<Url>& (*locations)(const Cleaner& cleaner) = nullptr;
};

/// All that the window adds to a category of the engine: one row a category.
struct CategoryLook {
  /// The category's name in the engine's table: "large-files".
  std::string_view type;
  QColor color;
  /// In the row of steps, where room is short.
  const char* short_name;
  AboutCategory about;
  /// Where it stands with a box.
  JunkPage page = JunkPage::none;
  /// Turns the inner container of that page to what is told about it.
  const char* move = nullptr;
  JunkScanStep scan = {};
  /// When the screen of a junk removal says that the category is cleaned, counted from its beginning; none for one of
  /// which it says nothing.
  std::optional<std::chrono::milliseconds> removal_text_at = {};
};

/// All of them; those of a category page in the order in which they stand there.
std::span<const CategoryLook> category_looks();

/// The look of a category, by its type; the first one for any other text.
const CategoryLook& look_of(std::string_view type);

}  // namespace tarnby
