#pragma once

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/temp_tree.h"

namespace tarnby::test {

/// Fills `top` with folders, files of up to 1,000 bytes, links and FIFOs under names that sort badly. Its folders, as
/// relative paths, `top` first.
inline std::vector<std::string> fill_at_random(TempTree& tree, const std::string& top, std::mt19937& random) {
  constexpr std::string_view names[] = {"a",  "a b",   "a-",         "a0",  "A.app",    ".hidden", "\xff\xfe", "é",
                                        "\n", "b.PKG", "c.bundle.x", "..x", "Z.Plugin", "~",       "x.app~",   "a\x01"};
  tree.folder(top);
  std::vector<std::string> folders = {top};
  for (int entries = 0; entries < 120; ++entries) {
    const std::string path = folders[random() % folders.size()] + "/" + std::string(names[random() % std::size(names)]);
    if (tree.exists(path)) continue;
    switch (random() % 8) {
      case 0:
        tree.link(path, names[random() % std::size(names)]);
        break;
      case 1:
        tree.fifo(path);
        break;
      case 2:
      case 3:
      case 4:
        tree.file(path, static_cast<std::int64_t>(random() % 1000));
        break;
      default:
        tree.folder(path);
        folders.push_back(path);
    }
  }
  return folders;
}

}  // namespace tarnby::test
