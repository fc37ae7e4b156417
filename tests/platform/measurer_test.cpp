#include "platform/measurer.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <latch>
#include <limits>
#include <numeric>
#include <random>
#include <thread>

#include "tests/support/deep_chain.h"
#include "tests/support/own_mounts.h"
#include "tests/support/random_tree.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;
using test::Team;
using test::teams;
using test::TempTree;
using test::with_own_mounts;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto most = std::numeric_limits<std::int64_t>::max();

struct Measuring {
  FileManager files;
  Measurer measurer{files};

  explicit Measuring(const Team& team = {0, 0}) : files(team.workers, team.handles) {}
  std::int64_t size(const Url& folder) { return measurer.overall_size_of_direcory(folder); }
};

std::vector<Url> urls_in(const TempTree& tree, const std::vector<std::string>& paths) {
  std::vector<Url> urls;
  for (const std::string& path : paths) urls.push_back(tree.url(path));
  return urls;
}

/// Entries as "name size" with the kind before it, in the order given.
std::vector<std::string> rows(const std::vector<MeasuredEntry>& entries) {
  constexpr const char* kinds[] = {"none", "file", "folder", "link", "other"};
  std::vector<std::string> texts;
  for (const MeasuredEntry& entry : entries) {
    texts.push_back(std::string(kinds[static_cast<std::size_t>(entry.kind)]) + " " +
                    std::string(entry.url.last_path_component()) + " " + std::to_string(entry.size));
  }
  return texts;
}

/// What is below a folder by reading one entry after the other.
std::int64_t read_plainly(const std::string& folder) {
  std::int64_t bytes = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    struct stat info = {};
    EXPECT_EQ(lstat(entry.path().c_str(), &info), 0);
    if (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode)) bytes += info.st_size;
  }
  return bytes;
}

TEST(Measurer, counts_what_files_and_links_hold_and_nothing_else) {
  TempTree tree;
  tree.file("t/sparse", 5'000'000'000).file("t/.hidden/a", 100).file("t/P.app/Contents/b", 20).fifo("t/fifo");
  tree.link("t/link", "12345").link("t/P.app/out", "../../outside").link("t/loop", ".").folder("t/empty");
  tree.file("outside/big", 1'000'000).link("way", "t").file("file", 7).folder("none_in_it");
  const std::int64_t below = 5'000'000'000 + 100 + 20 + 5 + 13 + 1;
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    Measuring in(team);
    EXPECT_EQ(in.size(tree.url("t")), below);
    for (const char* path : {"way", "file", "t/fifo", "none", "none_in_it", "t/..", "t/../outside"}) {
      EXPECT_EQ(in.size(tree.url(path)), 0) << path << " is no folder that holds bytes";
    }
    EXPECT_EQ(in.size(Url()), 0);
    EXPECT_EQ(in.size(Url::text("t")), 0);

    std::vector<Url> list = urls_in(tree, {"t", "t/P.app", "file", "way", "none", "t/fifo", "file", "t", "file/x"});
    list.push_back(Url::text("marker"));
    list.emplace_back();
    EXPECT_THAT(in.measurer.sizes_of_files(list), ElementsAre(below, 33, 7, 1, 0, 0, 7, below, 0, 0, 0));
    EXPECT_EQ(in.measurer.overall_size_of_files(list), 2 * below + 33 + 7 + 1 + 7);
    EXPECT_EQ(in.measurer.overall_size_of_files({}), 0);

    EXPECT_THAT(rows(in.measurer.entries(tree.url("t"), Hidden::take)),
                ElementsAre("folder .hidden 100", "folder P.app 33", "folder empty 0", "other fifo 0", "link link 5",
                            "link loop 1", "file sparse 5000000000"));
    EXPECT_THAT(rows(in.measurer.entries(tree.url("t"), Hidden::skip)),
                ElementsAre("folder P.app 33", "folder empty 0", "other fifo 0", "link link 5", "link loop 1",
                            "file sparse 5000000000"));
    for (const char* path : {"way", "file", "none"}) {
      EXPECT_THAT(in.measurer.entries(tree.url(path), Hidden::take), IsEmpty()) << path;
    }
    EXPECT_THAT(in.measurer.entries(Url(), Hidden::take), IsEmpty());
  }
}

TEST(Measurer, counts_what_it_may_read) {
  TempTree tree;
  tree.file("t/a", 1).file("t/closed/b", 10).file("t/names_only/c", 100).file("t/z/d", 1000);
  tree.mode("t/closed", 0).mode("t/names_only", 0400);
  test::as_plain_user(tree, [&] {
    for (const Team& team : teams) {
      Measuring in(team);
      EXPECT_EQ(in.size(tree.url("t")), 1001) << team.why();
      EXPECT_THAT(rows(in.measurer.entries(tree.url("t"), Hidden::skip)),
                  ElementsAre("file a 1", "folder closed 0", "folder names_only 0", "folder z 1000"));
    }
  });
}

TEST(Measurer, sums_stay_at_the_greatest_count) {
  TempTree tree;
  tree.folder("t");
  const bool ran = with_own_mounts([&] {
    ASSERT_EQ(mount("none", tree.path("t").c_str(), "tmpfs", 0, nullptr), 0);
    for (const char* path : {"t/a/1", "t/a/2", "t/b/3", "t/b/c/4", "t/5"}) tree.file(path, most / 2);
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      Measuring in(team);
      EXPECT_EQ(in.size(tree.url("t")), most);
      EXPECT_THAT(rows(in.measurer.entries(tree.url("t"), Hidden::skip)),
                  ElementsAre("file 5 " + std::to_string(most / 2), "folder a " + std::to_string(most - 1),
                              "folder b " + std::to_string(most - 1)));
      EXPECT_EQ(in.measurer.overall_size_of_files(urls_in(tree, {"t/a", "t/b", "t/5"})), most);
      const Measurer::Session session(in.measurer);
      in.measurer.plan(urls_in(tree, {"t/b/c", "t/a", "t/b"}));
      EXPECT_EQ(in.size(tree.url("t")), most) << "from parts";
    }
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

TEST(Measurer, reaches_any_depth_and_any_count) {
  constexpr int depth = 5000;
  const std::string long_name(200, 'n');
  TempTree tree;
  const test::DeepChain deep(tree, "t/deep", depth, long_name,
                             [](int folder) { test::make_file_in(folder, "file", 3); });
  const test::DeepChain wide(tree, "t/wide", 0, "", [](int folder) {
    for (int i = 0; i < 20'000; ++i) test::make_file_in(folder, "file " + std::to_string(i), 1);
  });
  for (const Team& team : {Team{1, 0}, Team{2, 0}, Team{8, 0}, Team{1, 16}, Team{8, 16}}) {
    SCOPED_TRACE(team.why());
    Measuring in(team);
    EXPECT_EQ(in.size(tree.url("t")), 3 * (depth + 1) + 20'000);
    EXPECT_THAT(rows(in.measurer.entries(tree.url("t"), Hidden::skip)),
                ElementsAre("folder deep " + std::to_string(3 * (depth + 1)), "folder wide 20000"));
    Url middle = tree.url("t/deep");
    for (int level = 0; level < 100; ++level) middle = middle.appending(long_name);
    EXPECT_EQ(in.size(middle), 3 * (depth + 1 - 100)) << "a path longer than the system takes at once";
  }
}

TEST(Measurer, a_session_measures_each_folder_once) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("t/a/x/1", 1).file("t/a/y/2", 20).file("t/a-/3", 300).file("t/b/4", 4000).file("t/b/c/5", 50'000);
    Measuring in(team);
    {
      const Measurer::Session session(in.measurer);
      EXPECT_EQ(in.size(tree.url("t/a/x")), 1);
      EXPECT_EQ(in.size(tree.url("t/b/c")), 50'000);
      EXPECT_EQ(in.size(tree.url("t/none")), 0);
      tree.file("t/a/x/late", 600'000).file("t/b/c/late", 600'000).file("t/none/late", 600'000);
      EXPECT_EQ(in.size(tree.url("t/a/x")), 1) << "remembered";
      EXPECT_EQ(in.size(tree.url("t/b")), 54'000) << "with what was measured inside it before";
      tree.file("t/b/late", 600'000).file("t/a/y/late", 600'000);
      EXPECT_EQ(in.size(tree.url("t/a/y")), 600'020);
      EXPECT_EQ(in.size(tree.url("t")), 1 + 600'020 + 300 + 54'000) << "parts within parts";
      EXPECT_EQ(in.size(tree.url("t/a")), 600'021);
      EXPECT_THAT(in.measurer.sizes_of_files(urls_in(tree, {"t", "t/a-", "t/a-/3"})), ElementsAre(654'321, 300, 300));
      EXPECT_THAT(in.measurer.entries(tree.url("t/a"), Hidden::skip), testing::SizeIs(2));
      tree.folder("t/a/z");
      EXPECT_THAT(in.measurer.entries(tree.url("t/a"), Hidden::skip), testing::SizeIs(2)) << "remembered";
    }
    EXPECT_EQ(in.size(tree.url("t")), read_plainly(tree.path("t"))) << "forgotten";
    in.measurer.plan(urls_in(tree, {"t"}));
    in.measurer.plan_entries(tree.url("t"), Hidden::skip);
    tree.file("t/later", 7);
    EXPECT_EQ(in.size(tree.url("t")), read_plainly(tree.path("t"))) << "a plan needs a session";
  }
}

TEST(Measurer, sums_do_not_depend_on_what_was_planned_and_asked_before) {
  const std::random_device::result_type seed = std::random_device()();
  std::mt19937 random(seed);
  for (int round = 0; round < 20; ++round) {
    TempTree tree;
    auto folders = test::fill_at_random(tree, "t", random);
    std::vector<std::int64_t> sizes;
    for (const std::string& folder : folders) sizes.push_back(read_plainly(tree.path(folder)));
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why() + ", seed " + std::to_string(seed) + ", round " + std::to_string(round));
      Measuring in(team);
      const Measurer::Session session(in.measurer);
      for (int step = 0; step < 30; ++step) {
        const std::size_t one = random() % folders.size();
        const std::size_t other = random() % folders.size();
        const std::vector<Url> two = urls_in(tree, {folders[one], folders[other]});
        switch (random() % 4) {
          case 0:
            in.measurer.plan(two);
            break;
          case 1:
            ASSERT_THAT(in.measurer.sizes_of_files(two), ElementsAre(sizes[one], sizes[other]));
            break;
          case 2: {
            in.measurer.plan_entries(two.back(), Hidden::take);
            std::int64_t sum = 0;
            for (const MeasuredEntry& entry : in.measurer.entries(two.front(), Hidden::take)) sum += entry.size;
            ASSERT_EQ(sum, sizes[one]) << folders[one];
            break;
          }
          default:
            ASSERT_EQ(in.size(two.front()), sizes[one]) << folders[one];
        }
      }
    }
  }
}

TEST(Measurer, many_threads_may_ask_in_one_session) {
  std::mt19937 random(1);
  TempTree tree;
  const auto folders = test::fill_at_random(tree, "t", random);
  const std::int64_t all = read_plainly(tree.path("t"));
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    Measuring in(team);
    const Measurer::Session session(in.measurer);
    std::latch ready(4);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        ready.arrive_and_wait();
        in.measurer.plan(urls_in(tree, folders));
        std::int64_t sum = 0;
        for (const MeasuredEntry& entry : in.measurer.entries(tree.url("t"), Hidden::take)) sum += entry.size;
        EXPECT_EQ(sum, all);
        EXPECT_EQ(in.size(tree.url("t")), all);
        EXPECT_THAT(in.measurer.sizes_of_files(urls_in(tree, {"t", "t"})), Each(all));
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
}

TEST(Measurer, bears_that_files_come_and_go_meanwhile) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    for (int i = 0; i < 20; ++i) tree.file("t/" + std::to_string(i) + "/kept", 1000);
    std::atomic<bool> ending{false};
    std::thread meddler([&] {
      for (int round = 0; !ending; ++round) {
        const std::string folder = tree.path("t/" + std::to_string(round % 20));
        (void)Descriptor(open((folder + "/brief").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
        (void)mkdir((folder + "/passing").c_str(), 0755);
        (void)symlink("kept", (folder + "/passing/link").c_str());
        (void)unlink((folder + "/brief").c_str());
        (void)unlink((folder + "/passing/link").c_str());
        (void)rmdir((folder + "/passing").c_str());
      }
    });
    Measuring in(team);
    for (int round = 0; round < 30; ++round) {
      const std::int64_t size = in.size(tree.url("t"));
      EXPECT_TRUE(size >= 20'000 && size <= 20'000 + 20 * 4) << size;
      EXPECT_EQ(in.measurer.entries(tree.url("t"), Hidden::take).size(), 20U);
    }
    ending = true;
    meddler.join();
  }
}

/// Holds every worker that comes to it until it is let go.
class Gate final : public TraversalJob {
 public:
  explicit Gate(unsigned workers) : arrived_(workers) {}

  void visit(const TraversedFolder&, int, std::span<const RawEntry>, FoldersToEnter&) override {
    arrived_.count_down();
    open_.wait();
  }
  Descriptor open_start(const TraversedFolder& folder) override { return open_folder_at(-1, folder.name().c_str()); }

  void wait_for_all() { arrived_.wait(); }
  void open() { open_.count_down(); }

 private:
  std::latch arrived_;
  std::latch open_{1};
};

TEST(Measurer, a_session_may_end_before_its_plan_is_done) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("gate/x");
    for (int i = 0; i < 50; ++i) tree.file("t/" + std::to_string(i) + "/a", 1);
    Measuring in(team);
    Gate gate(team.workers);
    const std::vector<TraversalStart> starts(team.workers, TraversalStart{tree.path("gate"), 0});
    in.files.traversal().start(gate, starts, Traversal::Turn::now);
    gate.wait_for_all();
    std::thread opener;
    {
      const Measurer::Session session(in.measurer);
      in.measurer.plan(urls_in(tree, {"t", "t/1", "t/2"}));
      in.measurer.plan_entries(tree.url("t"), Hidden::take);
      opener = std::thread([&] { gate.open(); });
    }
    opener.join();
    in.files.traversal().wait(gate);
    tree.file("t/1/b", 5);
    const Measurer::Session session(in.measurer);
    EXPECT_EQ(in.size(tree.url("t")), 55) << "the next session knows nothing of it";
  }
}

}  // namespace
}  // namespace tarnby
