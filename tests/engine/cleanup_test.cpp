#include "engine/cleanup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/platform.h"
#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

/// A home with one folder for each category, and an engine whose categories hold just that.
struct FullHome {
  FullHome() : engine(user) {
    for (const Category& category : cleanup_categories()) {
      const std::string folder = "ada/" + std::string(category.setting);
      user.tree.file(folder + "/x", 3);
      auto item = std::make_shared<CleanerItem>();
      item->files = {user.url(folder + "/gone"), user.url(folder + "/x")};
      item->size = size += 10;
      engine.cleaner.*category.item = item;
    }
    switch_all(true);
  }

  void switch_all(bool is_on) {
    for (const auto& category : cleanup_categories()) user.settings.set_boolean(category.setting, is_on);
  }

  /// Runs, and tells which categories have lost their file.
  std::vector<std::string> run(CleanupReport* report = nullptr) {
    std::vector<std::string> cleaned;
    engine.cleaner.cleanup_with_complete_handler(
        [&] {
          EXPECT_TRUE(user.platform.group_settings.value("Date")) << "the date is written before the handler is called";
          EXPECT_THAT(engine.cleaner.remainder_urls, IsEmpty());
          for (const Category& category : cleanup_categories()) {
            if (!user.tree.exists("ada/" + std::string(category.setting) + "/x"))
              cleaned.emplace_back(category.setting);
          }
        },
        report);
    return cleaned;
  }

  TestPlatform user;
  Engine engine;
  std::int64_t size = 0;
};

TEST(Cleanup, removes_the_categories_that_are_switched_on_and_never_downloads) {
  FullHome home;
  Cleaner& cleaner = home.engine.cleaner;
  cleaner.wasCleaned = 1'000;
  home.switch_all(false);
  EXPECT_THAT(home.run(), IsEmpty()) << "and the date is written all the same";
  EXPECT_EQ(cleaner.wasCleaned, 1'000);

  home.switch_all(true);
  home.user.settings.set_boolean("Mails", false);
  cleaner.browser_item->size = 0;
  EXPECT_EQ(cleaner.beCleaned(), 10 + 20 + 30 + 60 + 70 + 80);
  EXPECT_THAT(home.run(), ElementsAre("Caches", "Logs", "Remainders", "Trash", "LargeFiles"));
  EXPECT_EQ(cleaner.wasCleaned, 1'000 + 200) << "Downloads were counted before, and stay";
  home.run();
  EXPECT_EQ(cleaner.wasCleaned, 1'000 + 2 * 200) << "without a new scan the same sizes count again";
}

TEST(Cleanup, removes_nothing_more_once_it_was_stopped) {
  FullHome home;
  const std::atomic<bool> stop = true;
  CleanupReport report;
  report.options.stop = &stop;
  EXPECT_THAT(home.run(&report), IsEmpty());
  EXPECT_TRUE(std::ranges::none_of(report.removals, &Removal::attempted));
  EXPECT_EQ(home.engine.cleaner.wasCleaned, 360 - 70) << "who stops a run counts what went";
}

TEST(Cleanup, tells_what_of_the_trash_and_the_large_files_it_had_to_leave) {
  FullHome home;
  for (const char* folder : {"ada/Caches", "ada/Trash", "ada/LargeFiles"}) home.user.tree.mode(folder, 0555);
  test::as_plain_user(home.user.tree, [&] {
    CleanupReport report;
    home.run(&report);
    EXPECT_THAT(home.user.relative(report.left), ElementsAre("ada/Trash/x", "ada/LargeFiles/x"));
    EXPECT_EQ(report.removals.size(), home.engine.cleaner.cleanup_files().size());
    EXPECT_TRUE(report.removals[3].taken && !report.removals[0].taken && !report.removals[1].taken);
    EXPECT_EQ(home.engine.cleaner.wasCleaned, 360 - 70) << "whatever could be removed";
  });
}

}  // namespace
}  // namespace tarnby
