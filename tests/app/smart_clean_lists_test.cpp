#include "app/smart/smart_clean_lists.h"

#include <gmock/gmock.h>

#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using Ticked = SmartCleanLists::Ticked;

constexpr std::size_t logs = 1, browsers = 3, mails = 4, trash = 6;

TEST(SmartCleanLists, show_the_whole_size_of_a_group_without_ticks_and_the_ticked_size_otherwise) {
  TestPlatform user;
  const std::string library = "ada/Library/";
  user.tree.file(library + "Logs/a.log", 1).file(library + "Logs/b.log", 2).file(library + "Logs/c.log", 4);
  user.tree.file(library + "Caches/com.gone.tool/x", 100).file("ada/.Trash/t", 8);
  Engine engine(user);
  engine.scan();
  SmartCleanLists lists;
  lists.take(engine.cleaner);
  const auto state = [&] {
    return std::tuple(lists.ticked(logs), lists.outlineItems[logs]->size, static_cast<std::int64_t>(lists.smart_junk));
  };
  using State = std::tuple<Ticked, std::int64_t, std::int64_t>;
  const std::int64_t others = 100 + 8;  // the cache is a remainder too, which removes nothing more
  EXPECT_EQ(state(), State(Ticked::all, 7, others + 7));
  lists.unselect_entry(logs, 1);
  EXPECT_EQ(state(), State(Ticked::some, 5, others + 5));
  EXPECT_FALSE(lists.is_ticked(logs, 1));
  lists.unselect_entry(logs, 0);
  lists.unselect_entry(logs, 2);
  EXPECT_EQ(state(), State(Ticked::none, 7, others)) << "its own size again, which counts for nothing";
  lists.select_entry(logs, 1);
  EXPECT_EQ(state(), State(Ticked::some, 2, others + 2));
  EXPECT_THAT(user.relative(lists.ticked_locations()),
              testing::ElementsAre(library + "Caches/com.gone.tool", library + "Logs/b.log",
                                   library + "Caches/com.gone.tool", "ada/.Trash/t"));
  lists.select_group(logs);
  EXPECT_EQ(state(), State(Ticked::all, 7, others + 7));
  lists.unselect_group(logs);
  EXPECT_EQ(state(), State(Ticked::none, 7, others));
  lists.select_entry(logs, 0);
  lists.select_entry(logs, 1);
  lists.select_entry(logs, 2);
  EXPECT_EQ(state(), State(Ticked::all, 7, others + 7));
  EXPECT_EQ(lists.ticked_entries(), 3U + 1 + 1 + 1);
}

TEST(SmartCleanLists, take_a_category_without_entries_for_unticked) {
  TestPlatform user;
  user.tree.file("ada/.Trash/t", 8);
  Engine engine(user);
  engine.scan();
  SmartCleanLists lists;
  lists.take(engine.cleaner);
  lists.select_group(browsers);
  EXPECT_EQ(lists.ticked(browsers), Ticked::none);
  EXPECT_EQ(lists.smart_junk, 8U);
  lists.unselect_group(trash);
  lists.unselect_group(mails);
  EXPECT_EQ(lists.smart_junk, 0U);
  EXPECT_EQ(lists.ticked_entries(), 0U);
  EXPECT_TRUE(lists.ticked_locations().empty());
}

}  // namespace
}  // namespace tarnby
