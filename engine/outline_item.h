#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/large_file.h"

namespace tarnby {

/// One group of found files.
struct OutlineItem {
  std::string label;
  std::vector<std::shared_ptr<LargeFile>> items;

  static std::shared_ptr<OutlineItem> init_with_label(std::string label,
                                                      std::vector<std::shared_ptr<LargeFile>> items) {
    return std::make_shared<OutlineItem>(OutlineItem{std::move(label), std::move(items)});
  }
};

}  // namespace tarnby
