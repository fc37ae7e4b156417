#pragma once

#include <memory>

#include "platform/file_metadata.h"

namespace tarnby {

/// Metadata from the file system's access and modification times.
std::unique_ptr<FileMetadata> file_times(const FileManager& files);

}  // namespace tarnby
