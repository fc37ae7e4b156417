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
std::vector<std::string> lines(TestPlatform& ada, const std::vector<LeftEntry>& entries) {
  std::vector<std::string> lines;
  for (const LeftEntry& entry : entries) {
    lines.push_back(ada.relative(entry.url) + ": " + left_reason_text(entry.reason));
  }
  return lines;
}

std::vector<std::string> told(TestPlatform& ada, const std::vector<Url>& urls, const std::vector<Removal>& removals) {
  return lines(ada, left_of(ada.files, urls, removals));
}

std::vector<std::string> removed(TestPlatform& ada, const std::vector<Url>& urls) {
  ada.bookmarks.resolve_and_access(Grant::home);
  return told(ada, urls, ada.files.remove(urls));
}

TEST(WhyLeft, tells_in_words_what_stood_in_the_way) {
  TestPlatform ada;
  ada.tree.file("ada/gone").file("outside/kept").file("ada/Library/x");
  ada.tree.file("ada/was a folder");
  const Url changed = ada.url("ada/was a folder").listed_as(EntryKind::folder);
  EXPECT_THAT(removed(ada, {ada.url("ada/gone"), ada.url("outside/kept"), ada.url("ada/Library"), changed, changed,
                            ada.url("outside/none")}),
              testing::ElementsAre("outside/kept: it lies outside the folders that you gave access to",
                                   "ada/Library: it is never removed whole",
                                   "ada/was a folder: it has become something else since it was listed"));

  ada.tree.file("ada/back").file("ada/waits").file("ada/half/a").file("ada/odd");
  const auto failed = [](int error) { return Removal{.attempted = true, .error = {error, std::generic_category()}}; };
  EXPECT_THAT(
      told(ada, {ada.url("ada/back"), ada.url("ada/waits"), ada.url("ada/half"), ada.url("ada/odd")},
           {failed(0), {}, failed(ECANCELED), failed(ENOTSUP)}),
      testing::ElementsAre("ada/back: it came back", "ada/waits: the removal was stopped before it",
                           "ada/half: the removal was stopped in the middle of it", "ada/odd: the system refused it"));
}

TEST(WhyLeft, tells_of_mounted_disks_before_and_after_and_of_missing_permission) {
  TestPlatform ada;
  ada.tree.file("ada/box/in").folder("ada/box/a disk").file("ada/locked/in").mode("ada/locked", 0555);
  const bool ran = test::with_own_mounts([&] {
    ada.bookmarks.resolve_and_access(Grant::home);
    const Url listed[] = {ada.url("ada/locked"), ada.url("ada/box"), ada.url("ada/box/a disk"), ada.url("ada/Library"),
                          ada.url("ada/box")};
    for (const char* point : {"ada/box/a disk", "ada/box/a disk/in it"}) {
      ASSERT_EQ(mount("none", ada.tree.folder(point).path(point).c_str(), "tmpfs", 0, nullptr), 0);
    }
    EXPECT_THAT(lines(ada, known_to_stay(ada.files, listed)),
                testing::ElementsAre("ada/box/a disk: another disk is mounted there",
                                     "ada/Library: it is never removed whole"));
    EXPECT_THAT(removed(ada, {ada.url("ada/box")}), testing::ElementsAre("ada/box: another disk is mounted there"));
  });
  test::as_plain_user(ada.tree, [&] {
    EXPECT_THAT(removed(ada, {ada.url("ada/locked"), ada.url("ada/locked/in")}),
                testing::ElementsAre("ada/locked: permission denied", "ada/locked/in: permission denied"));
  });
  if (!ran) GTEST_SKIP() << "this system lets nobody mount";
}

}  // namespace
}  // namespace tarnby
