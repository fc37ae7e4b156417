#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "files/url.h"
#include "inventory/application_item.h"
#include "platform/image.h"

namespace tarnby {

/// One application's cache folder.
struct CacheItem {
  /// The folder to be cleaned.
  Url url;
  std::string label;
  Image image;
  /// Bytes.
  std::int64_t size = 0;
  std::vector<Url> files;

  /// An item that shows an application's name and icon; the caller sets `url` and `size`.
  static std::shared_ptr<CacheItem> withApplicationItem(const ApplicationItem& application) {
    auto item = std::make_shared<CacheItem>();
    item->label = application.label;
    item->image = application.app_icon;
    return item;
  }
};

using CacheItems = std::vector<std::shared_ptr<CacheItem>>;

}  // namespace tarnby
