#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "engine/large_file.h"
#include "engine/offered_item.h"
#include "files/url.h"
#include "leftovers/cache_item.h"
#include "leftovers/remainder_item.h"

namespace tarnby {

struct CleanerItem;

/// One row of a category, of the kind that category is made of.
using CleanerEntry =
    std::variant<std::shared_ptr<CacheItem>, std::shared_ptr<LargeFile>, std::shared_ptr<RemainderItem>,
                 std::shared_ptr<CleanerItem>, std::shared_ptr<OfferedItem>>;

/// One category that can be cleaned, or one client (a browser, a mail program) of such a category.
struct CleanerItem {
  /// What removal deletes, exactly.
  std::vector<Url> files;
  /// Bytes in all.
  std::int64_t size = 0;
  /// `size` for people.
  std::string string_size;
  /// Rows for display, and their sizes in the same order.
  std::vector<CleanerEntry> items;
  std::vector<std::int64_t> sizes;
  std::string type;
  std::string group;
};

}  // namespace tarnby
