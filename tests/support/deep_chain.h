#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tests/support/temp_tree.h"

namespace tarnby::test {

/// `depth` folders of one name below the folder `top`, each in the one before, so that paths may grow far beyond what
/// the system takes at once. Removed at its end by the program's own means, since the standard library's take minutes.
class DeepChain {
 public:
  /// @param fill gets an open handle of each folder, `top` first.
  DeepChain(TempTree& tree, std::string_view top, int depth, const std::string& name,
            const std::function<void(int folder)>& fill);
  ~DeepChain();
  DeepChain(const DeepChain&) = delete;
  DeepChain& operator=(const DeepChain&) = delete;

 private:
  const Url tree_;
  const Url top_;
};

/// A sparse file in an open folder.
void make_file_in(int folder, const std::string& name, std::int64_t size);

/// A folder in an open folder.
void make_folder_in(int folder, const std::string& name);

}  // namespace tarnby::test
