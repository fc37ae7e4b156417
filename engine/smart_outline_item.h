#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "platform/image.h"

namespace tarnby {

/// One group of the smart scan.
struct SmartOutlineItem {
  std::string label;
  /// Bytes.
  std::int64_t size = 0;
  std::string type;
  Image image;

  static std::shared_ptr<SmartOutlineItem> init_with_label(std::string label, std::int64_t size, std::string type,
                                                           Image image) {
    return std::make_shared<SmartOutlineItem>(
        SmartOutlineItem{std::move(label), size, std::move(type), std::move(image)});
  }
};

/// One line of the smart scan's menu: the text of a header, or a group.
using SmartMenuItem = std::variant<std::string, std::shared_ptr<SmartOutlineItem>>;

}  // namespace tarnby
