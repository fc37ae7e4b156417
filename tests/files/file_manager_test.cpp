#include "files/file_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "files/measurer.h"
#include "tests/support/deep_chain.h"
#include "tests/support/open_watch.h"
#include "tests/support/random_tree.h"
#include "tests/support/seed.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using testing::IsEmpty;
using Paths = std::vector<std::string>;

bool want_all(std::string_view /*name*/, EntryKind /*kind*/) {
  return true;
}

/// A walk by the plainest means, one folder after the other.
Paths walk_plainly(const std::string& folder, Hidden hidden, Packages packages) {
  Paths names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  Paths found;
  for (const std::string& name : names) {
    if (hidden == Hidden::skip && name[0] == '.') continue;
    const std::string path = folder + "/" + name;
    found.push_back(path);
    struct stat info = {};
    EXPECT_EQ(lstat(path.c_str(), &info), 0);
    if (!S_ISDIR(info.st_mode) || (packages == Packages::skip && is_package_name(name))) continue;
    for (std::string& inner : walk_plainly(path, hidden, packages)) found.push_back(std::move(inner));
  }
  return found;
}

TEST(Walk, equals_a_plain_walk_one_folder_after_the_other) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  for (int round = 0; round < 8; ++round) {
    TempTree tree;
    test::fill_at_random(tree, "t", random);
    tree.link("way", "t");
    for (const Team& team : teams) {
      FileManager files(team.workers, team.handles);
      EXPECT_THAT(files.walk(tree.url("way"), Hidden::take, Packages::enter, want_all), IsEmpty());
      for (const Hidden hidden : {Hidden::skip, Hidden::take}) {
        for (const Packages packages : {Packages::skip, Packages::enter}) {
          SCOPED_TRACE(team.why());
          Paths found;
          for (const Url& url : files.walk(tree.url("t"), hidden, packages, want_all)) found.push_back(url.path());
          ASSERT_EQ(found, walk_plainly(tree.path("t"), hidden, packages));
        }
      }
    }
  }
}

TEST(Walk, reaches_the_end_of_paths_longer_than_the_system_allows) {
  constexpr int depth = 3000;
  TempTree tree;
  int level = 0;
  const test::DeepChain deep(tree, "t", depth, std::string(100, 'n'), [&](int folder) {
    if (level++ == depth) test::make_file_in(folder, "end", 1234);
  });
  for (const Team& team : {Team{1, 0}, Team{8, 16}}) {
    FileManager files(team.workers, team.handles);
    const auto found = files.walk(tree.url("t"), Hidden::skip, Packages::skip,
                                  [](std::string_view entry, EntryKind) { return entry == "end"; });
    ASSERT_EQ(found.size(), 1U) << team.why();
    EXPECT_EQ(files.status(found.front()).size, 1234);
    EXPECT_EQ(Measurer(files).overall_size_of_direcory(tree.url("t")), 1234);
    EXPECT_EQ(files.read(found.front(), 1234), std::string(1234, '\0'));
  }
}

TEST(Looking, reads_no_further_once_it_is_to_stop) {
  TempTree tree;
  for (int i = 0; i < 50; ++i) tree.file("top/" + std::to_string(i) + "/x", 1);
  // Read from the disk in several pieces.
  const std::string long_name(200, 'n');
  for (int i = 0; i < 1000; ++i) tree.file("long/" + long_name + std::to_string(i), 0);
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    FileManager files(team.workers, team.handles);
    const auto walk = [&](const WantEntry& want) {
      return files.walk(tree.url("top"), Hidden::take, Packages::enter, want).size();
    };
    const auto stop = [&](std::string_view, EntryKind) {
      files.stop_looking();
      return true;
    };
    EXPECT_EQ(walk(stop), 50U) << "the folder in hand";
    EXPECT_EQ(walk(want_all), 0U) << "nor is one begun afterwards";
    EXPECT_EQ(Measurer(files).overall_size_of_direcory(tree.url("top")), 0);
    const LookWatch watch;
    EXPECT_LT(files.list(tree.url("long")).size(), 1000U) << "a listing that has begun";
    EXPECT_TRUE(watch.missed().stopped) << "and is known not to be whole";
    EXPECT_TRUE(files.stopped_looking());
    files.look_again();
    EXPECT_EQ(walk(want_all), 100U);
    EXPECT_EQ(files.list(tree.url("long")).size(), 1000U);
  }
}

TEST(Status, tells_of_entries_themselves_and_reads_whole_plain_files) {
  struct Case {
    const char* why;
    std::string path;
    EntryKind kind;
    std::int64_t size;
  };
  const Case cases[] = {
      {"below", "grant/sub/.x", EntryKind::file, 3},
      {"a link is not what it leads to", "grant/link", EntryKind::link, 3},
      {"through a link below the grant", "grant/link/.x", EntryKind::none, 0},
      {"a FIFO", "grant/fifo", EntryKind::other, 0},
      {"climbing on the way", "grant/sub/../file", EntryKind::none, 0},
      {"outside, through a link on the way", "way/file", EntryKind::file, 10},
      {"outside, a link at the end", "way", EntryKind::link, 5},
  };
  TempTree tree;
  tree.file("grant/file", 10).file("grant/sub/.x", 3).link("grant/link", "sub").fifo("grant/fifo").link("way", "grant");
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::home, tree.url("grant")));
  std::vector<Url> urls;
  for (const Case& c : cases) urls.push_back(tree.url(c.path));
  const std::vector<Status> statuses = files.statuses(urls);
  for (std::size_t at = 0; at < std::size(cases); ++at) {
    SCOPED_TRACE(cases[at].why);
    const Status alone = files.status(urls[at]);
    EXPECT_EQ(statuses[at].kind, cases[at].kind);
    EXPECT_EQ(statuses[at].size, cases[at].size);
    EXPECT_EQ(alone.kind, cases[at].kind);
    EXPECT_EQ(alone.identity, statuses[at].identity);
    EXPECT_EQ(files.read(urls[at], 1000).has_value(), cases[at].kind == EntryKind::file);
  }
  EXPECT_EQ(files.read(tree.url("grant/file"), 9), std::nullopt) << "never a part";
}

TEST(SpecialFiles, are_never_opened) {
  TempTree tree;
  tree.fifo("t/fifo");
  test::OpenWatch watch(tree.path("t/fifo"));
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::applications, tree.url()));
  Measurer measurer(files);
  (void)files.list(tree.url("t"));
  (void)files.walk(tree.url("t"), Hidden::take, Packages::enter, want_all);
  (void)measurer.overall_size_of_direcory(tree.url("t"));
  (void)files.status(tree.url("t/fifo"));
  (void)files.read(tree.url("t/fifo"), 1000);
  (void)files.list(tree.url("t/fifo"));
  const Url all[] = {tree.url("t")};
  EXPECT_FALSE(files.remove(all).front().error);
  EXPECT_FALSE(watch.has_seen_any()) << "opening one wakes whoever waits at its other end";
}

}  // namespace
}  // namespace tarnby
