#pragma once

#include <memory>

#include "platform/file_metadata.h"

namespace tarnby {

/// Metadata from the system's index: kMDItemLastUsedDate, kMDItemFSContentChangeDate. An entry's own modification date
/// is the file system's.
std::unique_ptr<FileMetadata> metadata_index(const FileManager& files);

}  // namespace tarnby
