#include "engine/chosen_amount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;

/// A home in which the caches of a removed application lie inside its container, and two removed applications share an
/// entry, since one's identifier begins with the other's.
struct SharingHome {
  SharingHome() {
    user.tree.file("ada/Library/Containers/com.gone.tool/Data/Library/Caches/x", 20)
        .file("ada/Library/Containers/com.gone.tool/Data/y", 4)
        .file("ada/Library/Caches/com.gone.toolkit/z", 300)
        .file("ada/Library/Logs/a.log", 1'000);
  }

  std::int64_t amount_of(const std::vector<std::string_view>& types) {
    return engine.cleaner.smart_amount->amount(select_groups(engine.cleaner, types).entries);
  }

  TestPlatform user;
  Engine engine{user};
};

TEST(ChosenAmount, counts_each_location_once_whichever_groups_list_it) {
  SharingHome home;
  Engine& engine = home.engine;
  engine.scan();
  EXPECT_EQ(engine.cleaner.totalCacheSize, 320);
  EXPECT_EQ(engine.cleaner.totalRemaindersSize, 24 + 300 + 300) << "the toolkit's caches are left over from both";
  EXPECT_EQ(home.amount_of({"caches"}), 320);
  EXPECT_EQ(home.amount_of({"remainders"}), 324);
  EXPECT_EQ(home.amount_of({"caches", "remainders"}), 324);
  EXPECT_EQ(home.amount_of({"logs", "caches", "remainders", "trash"}), 1'324);
  EXPECT_EQ(home.amount_of({}), 0);
  for (const CleanerEntry& entry : engine.cleaner.apps_remainders_item->items) {
    EXPECT_EQ(engine.cleaner.smart_amount->amount({&entry, 1}), size_of(entry)) << "one alone has nothing to share";
  }
  engine.scan();
  EXPECT_EQ(home.amount_of({"logs", "caches", "remainders"}), 1'324) << "whatever the engine's totals have grown to";
}

TEST(ChosenAmount, counts_junk_and_large_files_together) {
  SharingHome home;
  Cleaner& cleaner = home.engine.cleaner;
  home.user.tree.file("ada/Library/Containers/com.gone.tool/Data/big.mov", 10'000'000);
  home.user.tree.file("ada/film.mov", 20'000'000);
  cleaner.clean_with_complete_handler([] {});
  EXPECT_EQ(cleaner.beCleaned(), 320 + 10'000'624 + 1'000) << "as the engine counts";
  EXPECT_EQ(cleaner.cleanup_amount(), 10'000'324 + 1'000);

  cleaner.search_large_files_with_complete_handler([](const auto&, const auto&, std::int64_t) {});
  ASSERT_EQ(cleaner.largeFiles.size(), 2U);
  for (const auto& file : cleaner.largeFiles) {
    cleaner.large_files_item->files.push_back(file->url_file);
    cleaner.large_files_item->size += file->size;
  }
  home.user.settings.set_boolean("LargeFiles", true);
  EXPECT_EQ(cleaner.cleanup_amount(), 10'000'324 + 1'000 + 20'000'000) << "one of them lies in a leftover";
  home.user.settings.set_boolean("Remainders", false);
  EXPECT_EQ(cleaner.cleanup_amount(), 320 + 1'000 + 30'000'000);
}

TEST(ChosenAmount, counts_the_content_of_a_listed_folder_that_itself_counts_nothing) {
  TestPlatform user;
  user.tree.file("ada/a.pkg/in", 7);
  const auto row = [&](const char* path, std::int64_t size) -> CleanerEntry {
    return LargeFile::init_with_file_url(user.url(path), "", size, "");
  };
  const CleanerEntry entries[] = {row("ada/a.pkg", 0), row("ada/a.pkg/in", 7), row("ada/a.pkg", 7)};
  const ChosenAmount amount(entries, user.measurer);
  EXPECT_EQ(amount.amount(std::span(entries).first(2)), 7) << "an installer that is a folder counts nothing";
  EXPECT_EQ(amount.amount(entries), 7);
}

TEST(CleanedAmount, is_what_this_run_took_and_what_is_not_there_any_more) {
  TestPlatform user;
  user.tree.file("ada/Library/Logs/a/b", 500).file("ada/Library/Logs/c", 30);
  const std::vector<Url> urls = {user.url("ada/Library/Logs/a"), user.url("ada/Library/Logs/c"),
                                 user.url("ada/Library/Logs/a/b")};
  const auto cleaned = [&](std::int64_t counted, const std::vector<std::int64_t>& bytes) {
    std::vector<Removal> removals;
    for (const std::int64_t each : bytes) removals.push_back({.attempted = true, .error = {}, .bytes = each});
    removals.resize(urls.size(), {.attempted = true, .error = std::make_error_code(std::errc::io_error)});
    return cleaned_amount(HomeKind::macos, counted, user.measurer, left_of(user.files, urls, removals), removals);
  };
  EXPECT_EQ(cleaned(2'000, {9'000, 9'000, 9'000}), 1'470) << "what came back, each byte of it once";
  EXPECT_EQ(cleaned(2'000, {40, 2}), 42) << "others have taken the rest";
  EXPECT_EQ(cleaned(100, {9'000, 0}), 0) << "more was added meanwhile than had been counted";
}

}  // namespace
}  // namespace tarnby
