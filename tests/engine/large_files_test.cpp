#include "engine/large_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> texts_of(const LargeFileRows& rows) {
  std::vector<std::string> texts;
  for (const auto& row : rows) {
    std::string text = row->label + ":";
    for (const auto& file : row->items) text += " " + file->name;
    texts.push_back(text);
  }
  return texts;
}

TEST(LargeFiles, are_grouped_by_type_and_sorted_by_name) {
  constexpr std::int64_t least = 10'000'000;
  TestPlatform ada;
  ada.tree.file("ada/Documents/b", least).file("ada/Documents/A", least).file("ada/Documents/small", least - 1);
  ada.tree.file("ada/Movies/one.mp4", 3 * least).file("ada/Movies/.hidden.mkv", least).file("ada/Movies/X.MP4", least);
  ada.tree.file("ada/Applications/Tool.app/Contents/a", 2 * least).file("ada/Applications/Tool.app/b.zip", 3 * least);
  ada.tree.file("ada/Pictures/All.photoslibrary/a.jpg", least).file("ada/Pictures/Few.photoslibrary/a.jpg", 1);
  ada.tree.file("ada/Library/Caches/x", least).file("ada/Library/Logs/x", least).file("ada/Library/iTunes/x", least);
  ada.tree.file("ada/Library/Developer/CoreSimulator/x", least).file("ada/Downloads/x.zip", least);
  ada.tree.file("ada/Library/Developer/Xcode/DocumentationCache/x", least).link("ada/link", "Documents/b");
  Engine of(ada);
  const Cleaner& cleaner = of.cleaner;
  of.cleaner.large_files_item = nullptr;
  int calls = 0;
  of.cleaner.search_large_files_with_complete_handler([&](const auto& rows, const auto& files, std::int64_t total) {
    ++calls;
    EXPECT_THAT(texts_of(rows), ElementsAre("Applications: Tool.app", "Movies: .hidden.mkv one.mp4",
                                            "Packages: All.photoslibrary", "Other: A b X.MP4"));
    EXPECT_EQ(files.size(), 7U);
    EXPECT_EQ(total, 13 * least);
    EXPECT_EQ(cleaner.totalLargeFilesSize, total) << "the fields are set before the handler is called";
  });
  EXPECT_EQ(calls, 1);
  ASSERT_TRUE(cleaner.large_files_item);
  EXPECT_THAT(cleaner.large_files_item->files, IsEmpty());

  const LargeFileSelection largest = large_files_of_at_least(3 * least, cleaner.largeFiles);
  EXPECT_THAT(texts_of(largest.rows), ElementsAre("Applications: Tool.app", "Movies: one.mp4"));
  EXPECT_EQ(largest.total, 8 * least);
}

TEST(LargeFiles, are_none_where_nothing_can_be_read) {
  for (const auto grants : {TestPlatform::Grants::none, TestPlatform::Grants::both}) {
    TestPlatform ada(grants);
    ada.tree.file("ada/x", grants == TestPlatform::Grants::none ? 20'000'000 : 1);
    Engine of(ada);
    of.cleaner.search_large_files_with_complete_handler([](const auto& rows, const auto& files, std::int64_t total) {
      EXPECT_THAT(rows, IsEmpty());
      EXPECT_THAT(files, IsEmpty());
      EXPECT_EQ(total, 0);
    });
  }
}

}  // namespace
}  // namespace tarnby
