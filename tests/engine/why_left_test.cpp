#include "engine/why_left.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cerrno>

#include "tests/support/own_mounts.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;

/// "path: reason" of each.
std::vector<std::string> lines(TestPlatform& user, const std::vector<LeftEntry>& entries) {
  std::vector<std::string> lines;
  for (const LeftEntry& entry : entries) {
    lines.push_back(user.relative(entry.url) + ": " + left_reason_text(entry.reason));
  }
  return lines;
}

std::vector<std::string> told(TestPlatform& user, const std::vector<Url>& urls, const std::vector<Removal>& removals) {
  return lines(user, left_of(user.files, urls, removals));
}

std::vector<std::string> removed(TestPlatform& user, const std::vector<Url>& urls) {
  user.bookmarks.resolve_and_access(Grant::home);
  return told(user, urls, user.files.remove(urls));
}

TEST(WhyLeft, has_words_for_each_error) {
  TestPlatform user;
  user.tree.file("ada/gone").file("outside/kept").file("ada/Library/x");
  user.tree.file("ada/was a folder");
  const Url changed = user.url("ada/was a folder").listed_as(EntryKind::folder);
  EXPECT_THAT(removed(user, {user.url("ada/gone"), user.url("outside/kept"), user.url("ada/Library"), changed, changed,
                             user.url("outside/none")}),
              testing::ElementsAre("outside/kept: it lies outside the folders that you gave access to",
                                   "ada/Library: it is never removed whole",
                                   "ada/was a folder: it has become something else since it was listed"));

  user.tree.file("ada/back").file("ada/waits").file("ada/half/a").file("ada/odd");
  const auto failed = [](int error) { return Removal{.attempted = true, .error = {error, std::generic_category()}}; };
  EXPECT_THAT(
      told(user, {user.url("ada/back"), user.url("ada/waits"), user.url("ada/half"), user.url("ada/odd")},
           {failed(0), {}, failed(ECANCELED), failed(ENOTSUP)}),
      testing::ElementsAre("ada/back: it came back", "ada/waits: the removal was stopped before it",
                           "ada/half: the removal was stopped in the middle of it", "ada/odd: the system refused it"));
}

TEST(WhyLeft, tells_of_mounted_disks_before_and_after_and_of_missing_permission) {
  TestPlatform user;
  user.tree.file("ada/box/in").folder("ada/box/a disk").file("ada/locked/in").mode("ada/locked", 0555);
  const bool ran = test::with_own_mounts([&] {
    user.bookmarks.resolve_and_access(Grant::home);
    const Url listed[] = {user.url("ada/locked"), user.url("ada/box"), user.url("ada/box/a disk"),
                          user.url("ada/Library"), user.url("ada/box")};
    for (const char* point : {"ada/box/a disk", "ada/box/a disk/in it"}) {
      ASSERT_EQ(mount("none", user.tree.folder(point).path(point).c_str(), "tmpfs", 0, nullptr), 0);
    }
    EXPECT_THAT(lines(user, known_to_stay(user.files, listed)),
                testing::ElementsAre("ada/box/a disk: another disk is mounted there",
                                     "ada/Library: it is never removed whole"));
    EXPECT_THAT(removed(user, {user.url("ada/box")}), testing::ElementsAre("ada/box: another disk is mounted there"));
  });
  test::as_plain_user(user.tree, [&] {
    EXPECT_THAT(removed(user, {user.url("ada/locked"), user.url("ada/locked/in")}),
                testing::ElementsAre("ada/locked: permission denied", "ada/locked/in: permission denied"));
  });
  if (!ran) GTEST_SKIP() << "this system lets nobody mount";
}

}  // namespace
}  // namespace tarnby
