#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// What one removed application left behind.
struct RemainderItem {
  /// The name shown, made from the identifier.
  std::string label;
  /// The identifier of the removed application.
  std::string bundle;
  std::vector<Url> files;
  /// Bytes.
  std::int64_t size = 0;
};

using RemainderItems = std::vector<std::shared_ptr<RemainderItem>>;

}  // namespace tarnby
