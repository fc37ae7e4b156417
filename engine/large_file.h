#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "files/url.h"

namespace tarnby {

/// One found file.
struct LargeFile {
  Url url_file;
  std::string name;
  /// Bytes.
  std::int64_t size = 0;
  /// "archive", "audio", "document", "movie", "picture", "other", "app", "package", or empty where the kind of file
  /// does not matter.
  std::string type;

  static std::shared_ptr<LargeFile> init_with_file_url(Url url_file, std::string name, std::int64_t size,
                                                       std::string type) {
    return std::make_shared<LargeFile>(LargeFile{std::move(url_file), std::move(name), size, std::move(type)});
  }
};

}  // namespace tarnby
