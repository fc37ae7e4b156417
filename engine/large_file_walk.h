#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// Files of fewer bytes are not large.
constexpr std::int64_t large_file_bytes = 10'000'000;

/// What a walk for large files kept: a file that is large, or an outermost package with all that is in it, whatever
/// its size.
struct LargeFileCandidate {
  std::string path;
  std::int64_t size = 0;
  bool is_package = false;
};

/// Everything below `home` that the rules of the large-files search are asked about, in the order of a pre-order walk.
/// Threaded; memory follows the number of large files and of packages. Files whose path contains one of `excluded`
/// (folded) may be left out, and nearly all of them are, without a look at their size.
std::vector<LargeFileCandidate> walk_for_large_files(FileManager& files, const Url& home,
                                                     std::span<const Url> excluded);

}  // namespace tarnby
