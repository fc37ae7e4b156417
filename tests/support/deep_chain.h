#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tests/support/temp_tree.h"

namespace tarnby::test {

/// Makes `depth` folders of that name below the folder `top`, each in the one before, so that paths may grow far beyond
/// what the system takes at once. `fill` gets an open handle of each, with the count of folders above it.
void make_chain(TempTree& tree, std::string_view top, int depth, const std::string& name,
                const std::function<void(int folder, int level)>& fill);

/// A sparse file in an open folder.
void make_file_in(int folder, const char* name, long size);

}  // namespace tarnby::test
