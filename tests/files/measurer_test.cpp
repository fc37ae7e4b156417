#include "files/measurer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>
#include <limits>
#include <random>
#include <thread>

#include "tests/support/own_mounts.h"
#include "tests/support/random_tree.h"
#include "tests/support/seed.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using testing::ElementsAre;

struct Measuring {
  FileManager files;
  Measurer measurer{files};

  explicit Measuring(const Team& team) : files(team.workers, team.handles) {}
  std::int64_t size(const Url& folder) { return measurer.overall_size_of_direcory(folder); }
  /// What the entries of a folder hold together.
  std::int64_t entries(const Url& folder) {
    std::int64_t sum = 0;
    for (const MeasuredEntry& entry : measurer.entries(folder, Hidden::take)) sum += entry.size;
    return sum;
  }
};

std::vector<Url> urls_in(const TempTree& tree, const std::vector<std::string>& paths) {
  std::vector<Url> urls;
  for (const std::string& path : paths) urls.push_back(tree.url(path));
  return urls;
}

/// What is below a folder by reading one entry after the other.
std::int64_t read_plainly(const std::string& folder) {
  std::int64_t bytes = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    struct stat info = {};
    EXPECT_EQ(lstat(entry.path().c_str(), &info), 0);
    if (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode)) bytes += info.st_size;
  }
  return bytes;
}

TEST(Measurer, counts_what_files_and_links_hold_and_nothing_else) {
  TempTree tree;
  tree.file("t/sparse", 5'000'000'000).file("t/.hidden/a", 100).file("t/P.app/b", 20).fifo("t/fifo").file("file", 7);
  tree.link("t/link", "12345").link("t/P.app/out", "../../outside").link("t/loop", ".").file("t/closed/c", 1'000);
  tree.file("outside/big", 1'000'000).link("way", "t").mode("t/closed", 0);
  const std::int64_t below = 5'000'000'000 + 100 + 20 + 5 + 13 + 1;
  test::as_plain_user(tree, [&] {
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      Measuring in(team);
      for (const char* path : {"way", "file", "t/fifo", "none", "t/../outside"}) EXPECT_EQ(in.size(tree.url(path)), 0);
      const std::vector<Url> list = urls_in(tree, {"t", "t/P.app", "file", "way", "none", "t/fifo", "t", "file/x"});
      EXPECT_THAT(in.measurer.sizes_of_files(list), ElementsAre(below, 33, 7, 1, 0, 0, below, 0));
      EXPECT_EQ(in.measurer.overall_size_of_files(list), 2 * below + 33 + 7 + 1);
      std::vector<std::int64_t> sizes;
      for (const MeasuredEntry& entry : in.measurer.entries(tree.url("t"), Hidden::skip)) sizes.push_back(entry.size);
      EXPECT_THAT(sizes, ElementsAre(33, 0, 0, 5, 1, 5'000'000'000)) << "P.app, closed, fifo, link, loop, sparse";
    }
  });
}

TEST(Measurer, sums_stay_at_the_greatest_count) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  TempTree tree;
  tree.folder("t");
  const bool ran = test::with_own_mounts([&] {
    ASSERT_EQ(mount("none", tree.path("t").c_str(), "tmpfs", 0, nullptr), 0);
    for (const char* path : {"t/a/1", "t/a/2", "t/b/3", "t/b/c/4", "t/5"}) tree.file(path, most / 2);
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      Measuring in(team);
      EXPECT_EQ(in.size(tree.url("t")), most);
      EXPECT_EQ(in.measurer.overall_size_of_files(urls_in(tree, {"t/a", "t/b", "t/5"})), most);
      const Measurer::SizeMemory memory(in.measurer);
      in.measurer.plan(urls_in(tree, {"t/b/c", "t/a", "t/b"}));
      EXPECT_EQ(in.size(tree.url("t")), most) << "from parts";
    }
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

TEST(Measurer, a_size_memory_measures_each_folder_once) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("t/a/x/1", 1).file("t/a/y/2", 20).file("t/a-/3", 300).file("t/b/4", 4000).file("t/b/c/5", 50'000);
    Measuring in(team);
    ASSERT_TRUE(in.files.granted().add(Grant::home, tree.url()));
    {
      const Measurer::SizeMemory memory(in.measurer);
      EXPECT_EQ(in.size(tree.url("t/a/x")), 1);
      EXPECT_EQ(in.size(tree.url("t/b/c")), 50'000);
      tree.file("t/a/x/late", 600'000).file("t/b/c/late", 600'000);
      EXPECT_EQ(in.size(tree.url("t/a/x")), 1) << "remembered";
      EXPECT_EQ(in.size(tree.url("t")), 54'321) << "with what was measured inside it before";
      in.measurer.plan(urls_in(tree, {"t", "t/a"}));
      in.measurer.plan_entries(tree.url("t"), Hidden::take);  // may still wait when the session ends
    }
    EXPECT_EQ(in.size(tree.url("t")), read_plainly(tree.path("t"))) << "forgotten";
  }
}

TEST(Measurer, a_folder_behind_a_link_is_no_part_of_the_one_that_holds_the_link) {
  TempTree tree;
  tree.file("t/own", 1).file("elsewhere/sub/big", 4000).link("t/link", "../elsewhere");
  Measuring in(teams[0]);
  const Measurer::SizeMemory memory(in.measurer);
  EXPECT_EQ(in.size(tree.url("t/link/sub")), 4000) << "outside the grants a typed path may lead through a link";
  EXPECT_EQ(in.size(tree.url("t")), read_plainly(tree.path("t")));
}

TEST(Measurer, sums_do_not_depend_on_what_threads_planned_and_asked_before) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  TempTree tree;
  const auto folders = test::fill_at_random(tree, "t", random);
  std::vector<std::int64_t> sizes;
  for (const std::string& folder : folders) sizes.push_back(read_plainly(tree.path(folder)));
  for (int round = 0; round < 50; ++round) {
    const Team& team = teams[static_cast<std::size_t>(round) % std::size(teams)];
    SCOPED_TRACE(team.why());
    Measuring in(team);
    const Measurer::SizeMemory memory(in.measurer);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i) {
      threads.emplace_back([&, own = std::mt19937(random())]() mutable {
        for (int step = 0; step < 20; ++step) {
          const std::size_t one = own() % folders.size();
          const Url folder = tree.url(folders[one]);
          const auto choice = own() % 5;
          if (choice == 0) in.measurer.plan({&folder, 1});
          if (choice == 1) in.measurer.plan_entries(folder, Hidden::take);
          if (choice < 2) continue;
          EXPECT_EQ(choice == 2 ? in.entries(folder) : in.size(folder), sizes[one]) << folders[one];
        }
      });
    }
  }
}

TEST(Measurer, leaves_out_what_is_hidden_where_only_the_visible_counts) {
  TempTree tree;
  tree.file("t/a", 1).file("t/.b", 20).file("t/c/.d/e/f", 300).file("t/c/g/h", 4'000).file("t/c/g/.i/j", 50'000);
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::home, tree.url()));
  Measurer measurer(files);
  const Measurer::SizeMemory memory(measurer);
  const auto urls = urls_in(tree, {"t", "t/c/g", "t/c/.d/e", "t/.b", "t/none"});
  EXPECT_THAT(measurer.visible_sizes_of_files(urls), ElementsAre(4'001, 4'000, 300, 20, 0))
      << "the asked ones themselves count, each on its own, hidden or not";
  EXPECT_THAT(measurer.sizes_of_files(urls), ElementsAre(54'321, 54'000, 300, 20, 0));
}

TEST(Measurer, measures_neither_folders_nor_files_once_looking_has_stopped) {
  TempTree tree;
  tree.file("t/a", 20).file("b", 3);
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::home, tree.url()));
  Measurer measurer(files);
  const auto urls = urls_in(tree, {"t", "b"});
  files.stop_looking();
  EXPECT_THAT(measurer.sizes_of_files(urls), ElementsAre(0, 0)) << "a long list would keep whoever waits for its end";
  files.look_again();
  EXPECT_THAT(measurer.sizes_of_files(urls), ElementsAre(20, 3));
}

}  // namespace
}  // namespace tarnby
