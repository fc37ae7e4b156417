#include "engine/smart_selection.h"

#include <gtest/gtest.h>

#include "tests/engine/test_engine.h"

namespace tarnby {

TEST(SmartSelection, takes_whole_groups_in_their_fixed_order_and_counts_them_as_the_scan_did) {
  using Paths = std::vector<std::string>;
  test::TestPlatform user;
  const Paths caches = {"ada/Library/Containers/a/Data/Library/Caches"};
  const Paths leftovers = {"ada/Library/Containers/com.gone.tool", "ada/Library/Preferences/com.gone.tool.plist"};
  const Paths all = {caches[0], "ada/Library/Logs/b.log", leftovers[0], leftovers[1], "ada/.Trash/.d"};
  user.tree.file(caches[0] + "/x", 1)
      .file(all[1], 2)
      .file(leftovers[0] + "/x", 4)
      .file(leftovers[1], 8)
      .file(all[4], 16);
  test::Engine engine(user);
  const auto check = [&](const std::vector<std::string_view>& types, const Paths& files, std::int64_t bytes) {
    const SmartSelection selection = select_groups(engine.cleaner, types);
    EXPECT_EQ(user.relative(selection.files), files);
    EXPECT_EQ(selection.bytes, bytes);
  };
  check({"trash", "caches"}, {}, 0);  // before a scan there is nothing
  engine.scan();
  check({"caches"}, caches, 1);                                                 // the folder that was measured
  check({"remainders"}, leftovers, 12);                                         // every entry of it
  check({"browsers", "Trash", ""}, {}, 0);                                      // an empty group, and unknown ones
  check({"trash", "remainders", "mails", "logs", "caches", "trash"}, all, 31);  // whatever the order, and once
  engine.scan();
  check({"remainders"}, leftovers, 24);  // they add up over the scans of a process
  engine.cleaner.files = select_groups(engine.cleaner, std::vector<std::string_view>{"remainders"}).files;
  engine.cleaner.remove_files();
  engine.scan();
  check({"remainders"}, {}, 0);  // but a group from which nothing can be chosen adds nothing
}

}  // namespace tarnby
