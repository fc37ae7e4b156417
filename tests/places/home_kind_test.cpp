#include "places/home_kind.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/temp_tree.h"

namespace tarnby::test {
namespace {

TEST(HomeKind, a_library_goes_before_the_folders_that_both_kinds_have) {
  struct Case {
    const char* why;
    std::vector<const char*> folders;
    HomeKind kind;
  };
  const Case cases[] = {
      {"a macOS home has .config and .cache, too", {"Library/Caches", ".config", ".cache"}, HomeKind::macos},
      {"only the folders that applications make tell", {"Library/Books", ".config"}, HomeKind::linux_desktop},
      {"one folder is enough", {".local/share"}, HomeKind::linux_desktop},
      {"a home of neither kind goes by the rules of macOS, which find none of their places", {"Work"}, HomeKind::macos},
  };
  for (const Case& home : cases) {
    TempTree tree;
    for (const char* folder : home.folders) tree.folder(folder);
    EXPECT_EQ(kind_of_home(FileManager(), tree.url()), home.kind) << home.why;
  }
}

TEST(HomeKind, a_file_or_a_link_of_such_a_name_tells_nothing) {
  TempTree tree;
  tree.content("Library/Caches", "").content(".config", "").link(".cache", "/tmp");
  EXPECT_EQ(kind_of_home(FileManager(), tree.url()), HomeKind::macos);
}

}  // namespace
}  // namespace tarnby::test
