#include "files/traversal.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <latch>
#include <map>
#include <new>
#include <set>
#include <thread>

#include "files/measurer.h"
#include "tests/support/deep_chain.h"
#include "tests/support/random_tree.h"
#include "tests/support/seed.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;

/// Enters every folder, records what it is called with, and checks the contract of the traversal on the way.
class RecordingJob : public TraversalJob {
 public:
  explicit RecordingJob(bool keeps_handles = false) : keeps_(keeps_handles) {}

  void visit(const TraversedFolder& folder, int /*handle*/, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    const std::string path = folder.path();
    const std::lock_guard lock(mutex_);
    EXPECT_FALSE(left.contains(path)) << path << " visited after it was left";
    for (const RawEntry& entry : entries) {
      EXPECT_TRUE(seen.insert(path + "/" + std::string(entry.name)).second) << entry.name << " twice in " << path;
      if (entry.kind != EntryKind::folder) continue;
      ++below_[path];
      enter.add(entry.name, folder.tag() + 1);
    }
    if (on_visit) on_visit(folder);
  }

  void leave(const TraversedFolder& folder, int parent_handle) override {
    const std::string path = folder.path();
    const std::lock_guard lock(mutex_);
    EXPECT_TRUE(left.insert({path, folder.error()}).second) << path << " left twice";
    EXPECT_TRUE(cancelled() || below_[path] == 0) << path << " left before what it holds";
    if (!folder.parent()) return;
    --below_[folder.parent()->path()];
    EXPECT_EQ(folder.tag(), folder.parent()->tag() + 1);
    EXPECT_TRUE(!keeps_ || moves || faccessat(parent_handle, folder.name().c_str(), F_OK, 0) == 0) << path;
  }

  Descriptor open_start(const TraversedFolder& folder) override {
    return GrantedFolders().open_folder(Url::file(folder.name()));
  }
  bool keeps_handles() const override { return keeps_; }

  /// Folders do not stay where they were found.
  bool moves = false;

  /// Called under a lock, so by one worker at a time.
  std::function<void(const TraversedFolder& folder)> on_visit;
  std::set<std::string> seen;
  /// Every folder that was left, with the reason why it was not opened.
  std::map<std::string, int> left;

 private:
  const bool keeps_;
  std::mutex mutex_;
  std::map<std::string, int> below_;
};

void traverse(const Team& team, RecordingJob& job, const std::string& start) {
  const TraversalStart starts[] = {{start, 7}};
  Traversal(team.workers, team.handles).run(job, starts);
}

TEST(Traversal, sees_each_entry_once_and_leaves_each_folder_after_what_it_holds) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  TempTree tree;
  for (const char* top : {"1", "2", "3"}) test::fill_at_random(tree, top, random);
  const test::DeepChain deep(tree, "deep", 200, "n", [](int folder) {
    for (const char* side : {"a", "z"}) test::make_folder_in(folder, side);
  });
  const test::DeepChain many(tree, "many", 0, "", [](int folder) {
    for (int i = 0; i < 20'000; ++i) test::make_file_in(folder, "file " + std::to_string(i), 0);
    for (int i = 0; i < 1'000; ++i) test::make_folder_in(folder, "folder " + std::to_string(i));
  });
  std::set<std::string> all;
  std::map<std::string, int> folders = {{tree.path(), 0}};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(tree.path())) {
    all.insert(entry.path());
    if (entry.symlink_status().type() == std::filesystem::file_type::directory) folders[entry.path()] = 0;
  }
  for (const Team& team : {Team{1, 0}, Team{8, 0}, Team{1, 16}, Team{8, 16}, Team{1, 1}, Team{8, 3}}) {
    for (const bool keeps : {false, true}) {
      SCOPED_TRACE(team.why());
      RecordingJob job(keeps);
      traverse(team, job, tree.path());
      EXPECT_TRUE(job.seen == all);
      EXPECT_TRUE(job.left == folders);
    }
  }
}

TEST(Traversal, goes_back_up_only_to_the_folder_it_came_through) {
  for (const bool leads_away : {false, true}) {
    SCOPED_TRACE(leads_away ? "the way up leads away" : "the whole way was moved");
    TempTree tree;
    tree.file("top/a/b/1/x/y/seen").file("top/a/b/2/x/y/seen").file("canary/1/x/y/no").file("canary/2/x/y/no");
    RecordingJob job(true);
    job.moves = true;
    bool moved = false;
    job.on_visit = [&](const TraversedFolder& folder) {
      if (moved || folder.name() != "y") return;
      moved = true;
      const std::string way = folder.parent()->parent()->path();
      std::filesystem::rename(leads_away ? way : tree.path("top/a/b"), tree.path("canary/moved"));
    };
    traverse({1, 1}, job, tree.path("top"));
    EXPECT_TRUE(moved);
    EXPECT_EQ(job.seen.size(), leads_away ? 7U : 10U) << "no more of it, or all of it, wherever it is";
    EXPECT_THAT(job.seen, testing::Each(testing::Not(testing::EndsWith("no"))));
    EXPECT_EQ(job.left.size(), leads_away ? 7U : 9U) << "what was to be entered is left";
  }
}

TEST(Traversal, takes_more_workers_than_cores_once_they_wait) {
  constexpr std::size_t most = 8;
  TempTree tree;
  for (int i = 0; i < 40; ++i) tree.file(std::to_string(i) + "/x");
  struct Waiting final : RecordingJob {
    void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
               FoldersToEnter& enter) override {
      RecordingJob::visit(folder, handle, entries, enter);
      std::unique_lock lock(mutex);
      for (int i = 0; i < 20; ++i) came.wait_for(lock, std::chrono::microseconds(50));
      if (++visits < most) return;  // the others stay until so many are at work
      workers.insert(std::this_thread::get_id());
      came.notify_all();
      came.wait_for(lock, std::chrono::seconds(20), [&] { return workers.size() >= most; });
    }
    std::mutex mutex;
    std::condition_variable came;
    std::size_t visits = 0;
    std::set<std::thread::id> workers;
  } job;
  traverse({0, 0}, job, tree.path());
  EXPECT_GE(job.workers.size(), most);
}

TEST(Traversal, its_end_cancels_what_is_running_and_leaves_what_was_entered) {
  TempTree tree;
  for (int i = 0; i < 50; ++i) tree.folder("top/" + std::to_string(i) + "/x");
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    RecordingJob job;
    std::latch arrived(1);
    bool first = true;
    job.on_visit = [&](const TraversedFolder&) {
      if (!std::exchange(first, false)) return;
      arrived.count_down();
      while (!job.cancelled()) std::this_thread::yield();
    };
    {
      Traversal traversal(team.workers, team.handles);
      const TraversalStart starts[] = {{tree.path("top"), 0}};
      traversal.start(job, starts, Traversal::Priority::last);
      arrived.wait();
    }
    EXPECT_LT(job.left.size(), 101U) << "not everything was visited";
    EXPECT_TRUE(job.left.contains(tree.path("top")));
    for (const auto& [path, error] : job.left) EXPECT_TRUE(error == 0 || error == ECANCELED) << path;
  }
}

TEST(Traversal, without_memory_for_a_folder_tells_so_and_goes_on_with_the_others) {
  TempTree tree;
  for (const char* path : {"top/a/x/y", "top/short/x/y", "top/b/short/x", "top/c/x"}) tree.folder(path);
  struct Short final : RecordingJob {
    using RecordingJob::RecordingJob;
    void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
               FoldersToEnter& enter) override {
      if (folder.name() != "short") return RecordingJob::visit(folder, handle, entries, enter);
      enter.add(entries.front().name, 0);
      throw std::bad_alloc();
    }
    Descriptor open_below(int parent, const TraversedFolder& folder) override {
      if (folder.name() == "c") throw std::bad_alloc();
      return RecordingJob::open_below(parent, folder);
    }
  };
  for (const bool keeps_handles : {false, true}) {
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      Short job(keeps_handles);
      traverse(team, job, tree.path("top"));
      std::map<std::string, int> left;
      for (const auto& [path, error] : job.left) left[path.substr(tree.path().size() + 1)] = error;
      EXPECT_THAT(left, testing::UnorderedElementsAre(
                            std::pair("top", 0), std::pair("top/a", 0), std::pair("top/a/x", 0),
                            std::pair("top/a/x/y", 0), std::pair("top/b", 0), std::pair("top/c", ENOMEM),
                            std::pair("top/short", ENOMEM), std::pair("top/b/short", ENOMEM)));
    }
  }
}

TEST(Traversal, few_handles_are_shared_so_that_all_is_measured_and_removed) {
  for (const rlim_t handles : {12U, 14U, 16U, 20U}) {
    SCOPED_TRACE(std::to_string(handles) + " handles in all");
    TempTree tree;
    for (int i = 0; i < 200; ++i) {
      const std::string number = std::to_string(i);
      tree.file("home/" + std::to_string(i % 7) + "/" + number + "/a/b/c/" + number, 1);
    }
    test::as_plain_user(tree, [&] {
      ASSERT_EQ(close_range(3, ~0U, 0), 0);
      const rlimit limit = {handles, handles};
      ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
      FileManager files(8);
      for (const char* grant : {"home", ""}) ASSERT_TRUE(files.granted().add(Grant::disk, tree.url(grant)));
      std::vector<Url> all = files.list_urls(tree.url("home"));
      const LookWatch watch;
      EXPECT_EQ(Measurer(files).overall_size_of_files(all), 200);
      EXPECT_FALSE(watch.missed().anything());
      for (const Removal& removal : files.remove(all)) EXPECT_FALSE(removal.error) << removal.error.message();
    });
  }
}

}  // namespace
}  // namespace tarnby
