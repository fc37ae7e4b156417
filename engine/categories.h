#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "engine/cleaner_item.h"
#include "engine/clients.h"
#include "engine/smart_outline_item.h"

namespace tarnby {

class Cleaner;

/// What the smart scan has of a category.
struct SmartGroup {
  /// Looks for it; null for a category that the smart scan leaves out.
  void (Cleaner::*scan)() = nullptr;
  /// Posted when its turn has come; empty for the first.
  std::string_view notification = {};
  /// The header that stands before it in the menu; empty for most.
  std::string_view header = {};
  /// The named picture of its group.
  std::string_view picture = {};
  /// Where the engine keeps its bytes, and its group.
  std::int64_t Cleaner::*total = nullptr;
  std::shared_ptr<SmartOutlineItem> Cleaner::*outline = nullptr;
};

/// A category of what can be cleaned: all that the engine and the terminal know of it, and where the engine keeps it.
struct Category {
  /// Its name in the smart scan and on the screens: "large-files".
  std::string_view type;
  /// What people call it, the key of a localised text.
  const char* label;
  /// The setting that switches it, which is also its name in the junk scan and the removal run; empty for one that
  /// neither has.
  std::string_view setting = {};
  /// What is in it, in a line of the terminal's help; empty for one that no command removes.
  std::string_view help = {};
  /// Where the engine keeps its record.
  std::shared_ptr<CleanerItem> Cleaner::*item;
  SmartGroup smart = {};
  bool in_junk_scan = false;
  /// Downloads count towards what would be cleaned, but a person looks through them: no run removes them.
  bool is_removed = true;
  /// A cleanup reports what it had to leave in this category, so that the helper or the person can go on with it.
  bool tells_what_is_left = false;
  /// The browsers or mail programs that it is made of; null for most.
  std::span<const ClientRow> (*clients)() = nullptr;
};

// Views of one table, in whose order every scan and every run goes through the categories and shows them.

/// The seven of the smart scan.
std::span<const Category> smart_categories();

/// The six that the junk scan fills.
std::span<const Category> junk_categories();

/// The eight of the removal run: those of the junk scan, downloads and large files.
std::span<const Category> cleanup_categories();

/// The category of a type, or null when there is none.
const Category* category_row(std::string_view type);

}  // namespace tarnby
