#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "files/file_manager.h"
#include "text/text.h"

namespace tarnby {

// How many searches share one reading
//
// Several searches may look into one folder, and one may begin directly in the folder that another walks. Each folder
// is read once all the same, and each name folded once; every search that looks at the folder tries its keys:
//
//     walk Logs, list Logs/CSXS      Logs        read for the walk
//                                      a/        read for the walk
//                                      CSXS/     read for the walk and for the list
//                                        b/      read for the walk

/// What is looked for in one folder. Hidden entries are passed over, with what is below them.
struct FolderSearch {
  Url folder;
  /// Everything below the folder, packages included, or only its immediate entries.
  bool walks = false;
  /// An entry is found when its name contains one of these.
  std::vector<FoldedText> keys;
  /// Which names may be found at all; null: every one.
  bool (*takes)(std::string_view name) = nullptr;
  /// An entry directly in the folder that is passed over with all below it; empty: none. Exactly so written.
  std::string_view left_out = {};
};

/// What each of the searches finds, as a walk or a listing meets it: pre-order, the entries of a folder in byte order
/// of their names. Folders that are missing or cannot be read hold nothing. Waits for the workers; any thread may call.
std::vector<std::vector<Url>> find_in_folders(FileManager& files, std::span<const FolderSearch> searches);

}  // namespace tarnby
