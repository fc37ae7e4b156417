#include "engine/large_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using testing::ElementsAre;

std::vector<std::string> texts_of(const LargeFileRows& rows) {
  std::vector<std::string> texts;
  for (const auto& row : rows) {
    texts.push_back(row->label + ":");
    for (const auto& file : row->items) texts.back() += " " + file->name;
  }
  return texts;
}

TEST(LargeFiles, are_grouped_by_type_and_sorted_by_name) {
  constexpr std::int64_t least = 10'000'000;
  test::TestPlatform user;
  for (const char* path : {"Documents/b", "Documents/A", "Movies/.hidden.mkv", "Movies/X.MP4", "a.pkg/x", "Downloads/x",
                           "Library/Caches/x", "Library/Logs/x", "Library/iTunes/x",
                           "Library/Developer/CoreSimulator/x", "Library/Developer/Xcode/DocumentationCache/x"}) {
    user.tree.file(std::string("ada/") + path, least);
  }
  user.tree.file("ada/one.mp4", 3 * least).file("ada/Tool.app/a", 2 * least).file("ada/Tool.app/b.zip", 3 * least);
  // A link in a package counts its own length, and leads nowhere.
  user.tree.file("ada/c.pkg/x", least - 10).link("ada/c.pkg/link", "../one.mp4");
  user.tree.file("ada/d.pkg/x", least - 11).link("ada/d.pkg/link", "../one.mp4");
  user.tree.file("ada/small", least - 1).file("ada/b.pkg/small", least - 1).link("ada/link", "Documents/b");
  test::Engine engine(user);
  const Cleaner& cleaner = engine.cleaner;
  engine.cleaner.search_large_files_with_complete_handler([&](const auto& rows, const auto& files, std::int64_t total) {
    EXPECT_THAT(texts_of(rows), ElementsAre("Applications: Tool.app", "Movies: .hidden.mkv one.mp4",
                                            "Packages: a.pkg c.pkg", "Other: A b X.MP4"));
    EXPECT_EQ(files.size(), 8U);
    EXPECT_EQ(total, 14 * least);
    EXPECT_EQ(cleaner.totalLargeFilesSize, total) << "the fields are set before the handler is called";
    EXPECT_TRUE(cleaner.large_files_item->files.empty());
  });
  const LargeFileSelection largest = large_files_of_at_least(3 * least, cleaner.largeFiles);
  EXPECT_THAT(texts_of(largest.rows), ElementsAre("Applications: Tool.app", "Movies: one.mp4"));
  EXPECT_EQ(largest.total, 8 * least);
}

}  // namespace
}  // namespace tarnby
