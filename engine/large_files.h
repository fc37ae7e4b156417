#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "engine/large_file.h"
#include "engine/outline_item.h"

namespace tarnby {

using LargeFileRows = std::vector<std::shared_ptr<OutlineItem>>;
using LargeFileList = std::vector<std::shared_ptr<LargeFile>>;

/// Gets the groups, all files sorted by name, and their bytes in all.
using LargeFilesHandler =
    std::function<void(const LargeFileRows& rows, const LargeFileList& files, std::int64_t total)>;

/// Some large files, grouped.
struct LargeFileSelection {
  LargeFileRows rows;
  LargeFileList files;
  /// Bytes.
  std::int64_t total = 0;
};

/// Those of the files that have at least so many bytes, in the order they had, and one group for each kind of file that
/// is among them: applications, archives, audios, documents, movies, pictures, packages, other.
LargeFileSelection large_files_of_at_least(std::int64_t bytes, std::span<const std::shared_ptr<LargeFile>> files);

}  // namespace tarnby
