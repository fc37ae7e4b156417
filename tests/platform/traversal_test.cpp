#include "platform/traversal.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <latch>
#include <map>
#include <set>
#include <thread>

#include "tests/support/deep_chain.h"
#include "tests/support/random_tree.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Enters everything and keeps book on what it is told, holding the traversal to its promises on the way.
class Diary : public TraversalJob {
 public:
  explicit Diary(bool keeps_handles = false) : keeps_(keeps_handles) {}

  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    const std::string path = folder.path();
    struct stat open_one = {};
    EXPECT_EQ(fstat(handle, &open_one), 0) << path;
    EXPECT_FALSE(entries.empty());
    const std::lock_guard lock(mutex_);
    EXPECT_FALSE(left_.contains(path)) << path << " visited after it was left";
    for (const RawEntry& entry : entries) {
      EXPECT_TRUE(seen_.insert(path + "/" + std::string(entry.name)).second) << entry.name << " seen twice in " << path;
      if (entry.kind != EntryKind::folder) continue;
      ++below_[path];
      enter.add(entry.name, folder.account() + 1);
    }
    if (on_visit) on_visit(folder);
  }

  void leave(const TraversedFolder& folder, int parent_handle) override {
    const std::string path = folder.path();
    const std::lock_guard lock(mutex_);
    EXPECT_TRUE(left_.insert({path, folder.open_error()}).second) << path << " left twice";
    EXPECT_TRUE(cancelled() || below_[path] == 0) << path << " left before what it holds";
    if (!folder.parent()) return;
    --below_[folder.parent()->path()];
    EXPECT_EQ(folder.account(), folder.parent()->account() + 1);
    if (!keeps_) return;
    struct stat info = {};
    EXPECT_EQ(fstatat(parent_handle, folder.name().c_str(), &info, AT_SYMLINK_NOFOLLOW), 0) << path;
  }

  Descriptor open_start(const TraversedFolder& folder) override {
    return granted_.open_folder(Url::file(folder.name()));
  }
  bool keeps_handles() const override { return keeps_; }

  /// Everything seen, and every folder that was left with the reason why it was not opened, below a path.
  std::set<std::string> seen(const std::string& top) const {
    std::set<std::string> relative;
    for (const std::string& path : seen_) relative.insert(path.substr(top.size() + 1));
    return relative;
  }
  const std::map<std::string, int>& left() const { return left_; }

  /// Called under a lock, so by one worker at a time.
  std::function<void(const TraversedFolder& folder)> on_visit;

 private:
  const bool keeps_;
  const GrantedFolders granted_;
  std::mutex mutex_;
  std::set<std::string> seen_;
  std::map<std::string, int> left_;
  std::map<std::string, int> below_;
};

std::set<std::string> all_in(const TempTree& tree) {
  std::set<std::string> all;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.path())) {
    all.insert(entry.path().string().substr(tree.path().size() + 1));
  }
  return all;
}

TEST(Traversal, sees_each_entry_once_and_leaves_each_folder_after_what_it_holds) {
  const std::random_device::result_type seed = std::random_device()();
  std::mt19937 random(seed);
  for (int round = 0; round < 6; ++round) {
    TempTree tree;
    const auto folders = test::fill_at_random(tree, "top", random);
    for (const Team& team : teams) {
      for (const bool keeps : {false, true}) {
        SCOPED_TRACE(team.why() + ", seed " + std::to_string(seed));
        Traversal traversal(team.workers, team.handles);
        Diary diary(keeps);
        const TraversalStart starts[] = {{tree.path(), 7}};
        traversal.run(diary, starts);
        EXPECT_EQ(diary.seen(tree.path()), all_in(tree));
        EXPECT_EQ(diary.left().size(), folders.size() + 1);
        for (const auto& [path, error] : diary.left()) EXPECT_EQ(error, 0) << path;
      }
    }
  }
}

TEST(Traversal, reads_a_folder_of_many_entries_in_pieces_without_losing_one) {
  TempTree tree;
  const test::DeepChain many(tree, "many", 0, "", [](int folder) {
    for (int i = 0; i < 20'000; ++i) test::make_file_in(folder, "file " + std::to_string(i), 0);
    for (int i = 0; i < 1'000; ++i) test::make_folder_in(folder, "folder " + std::to_string(i));
  });
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    Traversal traversal(team.workers, team.handles);
    Diary diary(true);
    const TraversalStart starts[] = {{tree.path(), 0}};
    traversal.run(diary, starts);
    EXPECT_EQ(diary.seen(tree.path()).size(), 21'001U);
    EXPECT_EQ(diary.left().size(), 1'002U);
  }
}

TEST(Traversal, says_why_a_folder_could_not_be_opened) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.folder("top/closed/below").folder("top/open").mode("top/closed", 0).file("file").link("link", "top");
    test::as_plain_user(tree, [&] {
      Traversal traversal(team.workers, team.handles);
      Diary diary;
      const TraversalStart starts[] = {
          {tree.path("top"), 0}, {tree.path("none"), 0}, {tree.path("file"), 0}, {tree.path("link"), 0}};
      traversal.run(diary, starts);
      EXPECT_EQ(diary.left(), (std::map<std::string, int>{{tree.path("top"), 0},
                                                          {tree.path("top/open"), 0},
                                                          {tree.path("top/closed"), EACCES},
                                                          {tree.path("none"), ENOENT},
                                                          {tree.path("file"), ENOTDIR},
                                                          {tree.path("link"), ENOTDIR}}));
      EXPECT_EQ(diary.seen(tree.path()), (std::set<std::string>{"top/closed", "top/open"}));
    });
  }
}

TEST(Traversal, does_not_mistake_a_folder_for_one_whose_handle_it_gave_up) {
  TempTree tree;
  tree.file("top/a/b/1/seen").file("top/a/b/2/seen").file("canary/1/no").file("canary/2/no");
  for (const char* disguise : {"folder", "link"}) {
    SCOPED_TRACE(disguise);
    Traversal traversal(1, 1);
    Diary diary;
    bool swapped = false;
    diary.on_visit = [&](const TraversedFolder& folder) {
      if (swapped || folder.path() == tree.path() || !folder.path().starts_with(tree.path("top/a/b/"))) return;
      swapped = true;  // between its two folders "b" is taken away and another one put in its place
      ASSERT_EQ(rename(tree.path("top/a/b").c_str(), tree.path("moved").c_str()), 0);
      if (disguise == std::string("link")) {
        tree.link("top/a/b", "../../canary");
      } else {
        ASSERT_EQ(rename(tree.path("canary").c_str(), tree.path("top/a/b").c_str()), 0);
      }
    };
    const TraversalStart starts[] = {{tree.path("top"), 0}};
    traversal.run(diary, starts);
    EXPECT_TRUE(swapped);
    const auto seen = diary.seen(tree.path("top"));
    EXPECT_EQ(seen.size(), 5U) << "a, b, 1, 2 and what is in one of them";
    EXPECT_THAT(seen, testing::Not(testing::Contains(testing::EndsWith("no"))));
    EXPECT_EQ(diary.left().size(), 5U) << "the other one was entered, so it is left";
    if (disguise == std::string("folder")) {
      ASSERT_EQ(rename(tree.path("top/a/b").c_str(), tree.path("canary").c_str()), 0);
      ASSERT_EQ(rename(tree.path("moved").c_str(), tree.path("top/a/b").c_str()), 0);
    }
  }
}

TEST(Traversal, comes_through_deep_trees_with_few_handles) {
  TempTree tree;
  const test::DeepChain deep(tree, "deep", 200, "n", [](int folder) {
    for (const char* side : {"a", "z"}) test::make_folder_in(folder, side);
  });
  for (const Team& team : {Team{1, 16}, Team{2, 16}, Team{8, 16}}) {
    for (const bool keeps : {false, true}) {
      SCOPED_TRACE(team.why());
      Traversal traversal(team.workers, team.handles);
      Diary diary(keeps);
      const TraversalStart starts[] = {{tree.path("deep"), 0}};
      traversal.run(diary, starts);
      EXPECT_EQ(diary.seen(tree.path()).size(), 200U + 2 * 201);
      for (const auto& [path, error] : diary.left()) EXPECT_EQ(error, 0) << path;
    }
  }
}

TEST(Traversal, a_cancelled_job_visits_nothing_more_but_leaves_what_it_entered) {
  for (const Team& team : teams) {
    for (const bool keeps : {false, true}) {
      SCOPED_TRACE(team.why());
      TempTree tree;
      for (const char* path : {"top/a/1/x", "top/a/2/x", "top/b/1/x", "top/b/2/x", "top/c/1/x"}) tree.folder(path);
      Traversal traversal(team.workers, team.handles);
      Diary diary(keeps);
      std::string last_visited;
      diary.on_visit = [&](const TraversedFolder& folder) {
        EXPECT_FALSE(diary.cancelled() && team.workers == 1) << folder.path();
        last_visited = folder.path();
        if (folder.name() == "1") diary.cancel();
      };
      const TraversalStart starts[] = {{tree.path("top"), 0}};
      traversal.run(diary, starts);
      EXPECT_TRUE(diary.left().contains(tree.path("top")));
      EXPECT_TRUE(diary.left().contains(last_visited));
      for (const auto& [path, error] : diary.left()) EXPECT_TRUE(error == 0 || error == ECANCELED) << path;
    }
  }
}

TEST(Traversal, its_end_cancels_what_is_running_and_waits_for_it) {
  TempTree tree;
  for (int i = 0; i < 50; ++i) tree.folder("top/" + std::to_string(i) + "/x");
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    Diary diary;
    std::latch arrived(1);
    bool first = true;
    diary.on_visit = [&](const TraversedFolder&) {
      if (!std::exchange(first, false)) return;
      arrived.count_down();
      while (!diary.cancelled()) std::this_thread::yield();
    };
    {
      Traversal traversal(team.workers, team.handles);
      const TraversalStart starts[] = {{tree.path("top"), 0}};
      traversal.start(diary, starts, Traversal::Turn::last);
      arrived.wait();
    }
    EXPECT_LT(diary.left().size(), 101U) << "not everything was visited";
    EXPECT_TRUE(diary.left().contains(tree.path("top")));
  }
}

TEST(Traversal, takes_up_urgent_jobs_before_those_that_wait) {
  TempTree tree;
  tree.file("gate/x").file("first/x").file("second/x").file("urgent/x");
  Traversal traversal(1);
  std::latch arrived(1);
  std::latch go_on(1);
  std::vector<std::string> order;
  Diary gate;
  gate.on_visit = [&](const TraversedFolder&) {
    arrived.count_down();
    go_on.wait();
  };
  Diary jobs[3];
  for (Diary& job : jobs) {
    job.on_visit = [&](const TraversedFolder& folder) {
      order.push_back(folder.path().substr(tree.path().size() + 1));
    };
  }
  const auto start = [&](Diary& job, const char* place, Traversal::Turn turn) {
    const TraversalStart starts[] = {{tree.path(place), 0}};
    traversal.start(job, starts, turn);
  };
  start(gate, "gate", Traversal::Turn::now);
  arrived.wait();
  start(jobs[0], "first", Traversal::Turn::last);
  start(jobs[1], "second", Traversal::Turn::last);
  start(jobs[2], "urgent", Traversal::Turn::now);
  go_on.count_down();
  for (Diary& job : jobs) traversal.wait(job);
  traversal.wait(gate);
  EXPECT_THAT(order, ElementsAre("urgent", "first", "second"));
}

TEST(Traversal, serves_many_threads_at_once) {
  TempTree tree;
  std::mt19937 random(1);
  const auto folders = test::fill_at_random(tree, "top", random);
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    Traversal traversal(team.workers, team.handles);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        for (int round = 0; round < 10; ++round) {
          Diary diary;
          const TraversalStart starts[] = {{tree.path("top"), 0}};
          traversal.run(diary, starts);
          EXPECT_EQ(diary.left().size(), folders.size());
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
}

}  // namespace
}  // namespace tarnby
