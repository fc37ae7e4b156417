#include "files/disk_usage.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/own_mounts.h"
#include "tests/support/program_run.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using testing::ElementsAre;

/// A file with that many bytes, none of them a hole.
void fill(TempTree& tree, const std::string& path, std::size_t bytes) {
  tree.content(path, std::string(bytes, 'x'));
}

void add_name(const TempTree& tree, const std::string& file, const std::string& name) {
  ASSERT_EQ(link(tree.path(file).c_str(), tree.path(name).c_str()), 0) << name;
}

/// File systems may choose the blocks of a file when they write it.
void write_back(const TempTree& tree) {
  const Descriptor top(open(tree.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(syncfs(top.get()), 0);
}

std::int64_t blocks_of(const TempTree& tree, const std::vector<std::string>& paths) {
  std::int64_t bytes = 0;
  for (const std::string& path : paths) {
    struct stat info = {};
    EXPECT_EQ(lstat(tree.path(path).c_str(), &info), 0) << path;
    bytes += std::int64_t{info.st_blocks} * 512;
  }
  return bytes;
}

void set_time(const TempTree& tree, const std::string& path, time_t seconds) {
  const timespec times[] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, tree.path(path).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

using Rows = std::vector<std::vector<Url>>;

Rows rows_in(const TempTree& tree, const std::vector<std::vector<std::string>>& rows) {
  Rows urls;
  for (const auto& row : rows) {
    urls.emplace_back();
    for (const std::string& path : row) urls.back().push_back(tree.url(path));
  }
  return urls;
}

TEST(DiskUsage, is_what_the_disk_holds_and_what_it_gives_back) {
  TempTree tree;
  fill(tree, "grant/store/1", 100'000);
  fill(tree, "grant/store/sub/2", 50'000);
  tree.file("grant/store/sparse", 5'000'000).link("grant/store/link", "../outside").folder("grant/empty/sub");
  fill(tree, "grant/outside", 70'000);
  add_name(tree, "grant/store/1", "grant/store/sub/1 again");
  add_name(tree, "grant/store/sub/2", "grant/project");
  for (const char* path : {"grant/store/1", "grant/store/sub/2", "grant/store/sparse"}) set_time(tree, path, 1'000);
  set_time(tree, "grant/store/link", 2'000);
  for (const char* path : {"grant/empty/sub", "grant/empty"}) set_time(tree, path, 3'000);
  write_back(tree);

  const auto blocks = [&](const std::vector<std::string>& paths) { return blocks_of(tree, paths); };
  const std::int64_t folders = blocks({"grant/store", "grant/store/sub", "grant/store/link", "grant/store/sparse"});
  const std::int64_t one = blocks({"grant/store/1"});
  const std::int64_t two = blocks({"grant/store/sub/2"});
  const std::int64_t empty = blocks({"grant/empty", "grant/empty/sub"});
  EXPECT_TRUE(one >= 100'000 && one < 200'000 && folders < 1'000'000);
  const DiskUsage store = {folders + one + two, folders + one, 2'000, 5, false};
  const DiskUsage both = {folders + one + two, folders + one + two, 2'000, 6, false};
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    FileManager files(team.workers, team.handles);
    ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
    const Rows rows = rows_in(tree, {{"grant/store"},
                                     {"grant/store/sub", "grant/store", "grant/store", "grant/store/1"},
                                     {"grant/project", "grant/store"},
                                     {"grant/store/1", "grant/store/sub/2"},
                                     {"grant/store/link"},
                                     {"grant/none", "grant/link/below"},
                                     {"grant/empty"},
                                     {}});
    EXPECT_THAT(disk_usage(files, rows),
                ElementsAre(store, store, both, DiskUsage{one + two, 0, 1'000, 2, false},
                            DiskUsage{blocks({"grant/store/link"}), blocks({"grant/store/link"}), 2'000, 1, false},
                            DiskUsage{}, DiskUsage{empty, empty, 3'000, 0, false}, DiskUsage{}));
  }
}

TEST(DiskUsage, tells_what_it_could_not_see) {
  TempTree tree;
  tree.folder("grant/own/closed").folder("grant/foreign").mode("grant/own/closed", 044).mode("grant/foreign", 0700);
  const uid_t somebody_else = 1;
  const bool has_other = chown(tree.path("grant/foreign").c_str(), somebody_else, somebody_else) == 0;
  test::as_plain_user(tree, [&] {
    FileManager files;
    ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
    LookWatch watch;
    const auto own = disk_usage(files, rows_in(tree, {{"grant/own"}}));
    EXPECT_EQ(own.front().size, blocks_of(tree, {"grant/own", "grant/own/closed"}));
    EXPECT_FALSE(watch.missed().anything()) << "tools close empty folders even to their owner";
    (void)disk_usage(files, rows_in(tree, {{"grant/foreign"}}));
    EXPECT_TRUE(!has_other || watch.missed().refused == tree.url("grant/foreign"));
    files.stop_looking();
    EXPECT_EQ(disk_usage(files, rows_in(tree, {{"grant/own"}})).front(), DiskUsage{});
    EXPECT_TRUE(watch.missed().stopped);
  });
}

TEST(DiskUsage, does_not_count_what_is_mounted) {
  TempTree tree;
  tree.file("grant/row/1").folder("grant/row/mounted").folder("grant/itself").file("canary/1").file("canary/2");
  const bool ran = test::with_own_mounts([&] {
    for (const char* to : {"grant/row/mounted", "grant/itself"}) {
      ASSERT_EQ(mount(tree.path("canary").c_str(), tree.path(to).c_str(), nullptr, MS_BIND, nullptr), 0);
    }
    FileManager files;
    ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
    LookWatch watch;
    const auto usages = disk_usage(files, rows_in(tree, {{"grant/row"}, {"grant/itself"}}));
    EXPECT_TRUE(usages[0].has_mounts && usages[0].files == 1);
    EXPECT_TRUE(usages[1].has_mounts && usages[1].files == 0);
    EXPECT_FALSE(watch.missed().anything());
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

/// A file system of its own, so that nobody else changes what it tells of itself. False when none can be mounted.
bool mount_own_disk(TempTree& tree, const std::string& place) {
  tree.file("image", 64LL * 1024 * 1024).folder(place);
  const auto run = [&](std::vector<std::string> words) {
    return test::run_program({.words = std::move(words), .environment = {}}).status == 0;
  };
  return run({"/usr/sbin/mkfs.ext4", "-q", "-F", tree.path("image")}) &&
         run({"/usr/bin/mount", "-o", "loop", tree.path("image"), tree.path(place)});
}

std::int64_t free_bytes(const TempTree& tree) {
  write_back(tree);
  struct statvfs info = {};
  const Descriptor top(open(tree.path("disk").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  EXPECT_EQ(syncfs(top.get()), 0);
  EXPECT_EQ(fstatvfs(top.get(), &info), 0);
  return static_cast<std::int64_t>(info.f_bfree * info.f_frsize);
}

TEST(DiskUsage, tells_what_the_disk_has_more_when_a_row_is_gone) {
  if (geteuid() != 0) GTEST_SKIP() << "only root mounts a file system image";
  TempTree tree;
  const bool ran = test::with_own_mounts([&] {
    if (!mount_own_disk(tree, "disk")) return;
    tree.file("mounted");
    for (std::size_t package = 0; package < 40; ++package) {
      for (std::size_t file = 0; file < 25; ++file) {
        const std::string number = std::to_string(package) + "/" + std::to_string(file);
        fill(tree, "disk/home/store/" + number, 997 * package + 101 * file);
        if (package % 4 == 0) continue;
        tree.folder("disk/home/project/" + std::to_string(package));
        add_name(tree, "disk/home/store/" + number, "disk/home/project/" + number);
      }
    }
    tree.file("disk/home/sparse/database", 30'000'000).content("disk/home/sparse/text", "some");
    FileManager files;
    ASSERT_TRUE(files.granted().add(Grant::home, tree.url("disk/home")));
    for (const char* row : {"disk/home/store", "disk/home/sparse", "disk/home/project"}) {
      SCOPED_TRACE(row);
      const std::int64_t before = free_bytes(tree);
      const Url url = tree.url(row);
      const auto told = static_cast<double>(disk_usage(files, Rows{{url}}).front().frees);
      ASSERT_FALSE(files.remove({&url, 1}).front().error);
      const auto freed = static_cast<double>(free_bytes(tree) - before);
      EXPECT_LE(std::abs(told - freed), freed / 100) << "told " << told << ", freed " << freed;
    }
    EXPECT_EQ(umount2(tree.path("disk").c_str(), MNT_DETACH), 0);
  });
  if (!ran || !tree.exists("mounted")) GTEST_SKIP() << "no file system image can be mounted here";
}

}  // namespace
}  // namespace tarnby
