#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "tests/engine/test_engine.h"
#include "tests/support/snapshot.h"

namespace tarnby::test {
namespace {

/// The canary holds what the home holds, so that whoever is led there finds the names that it looks for.
constexpr const char* files[] = {"home/Library/Caches/org.gone.tool/a",
                                 "home/Library/Caches/org.gone.tool/sub/b",
                                 "home/Library/Containers/org.gone.tool/Data/Library/Caches/c",
                                 "home/Library/Logs/d",
                                 "home/Library/Logs/box/sub/e",
                                 "home/Library/Preferences/org.gone.tool.plist",
                                 "home/Library/Application Support/Firefox/Profiles/p/storage/f",
                                 "home/.Trash/g",
                                 "home/.Trash/box/sub/h",
                                 "home/Downloads/i.dmg"};

/// Every folder of the home at any level, and that above them all.
constexpr const char* victims[] = {"home",
                                   "home/Library",
                                   "home/Library/Caches",
                                   "home/Library/Caches/org.gone.tool",
                                   "home/Library/Caches/org.gone.tool/sub",
                                   "home/Library/Containers",
                                   "home/Library/Containers/org.gone.tool",
                                   "home/Library/Containers/org.gone.tool/Data/Library",
                                   "home/Library/Logs",
                                   "home/Library/Logs/box",
                                   "home/Library/Logs/box/sub",
                                   "home/Library/Application Support/Firefox",
                                   "home/Library/Application Support/Firefox/Profiles/p",
                                   "home/.Trash",
                                   "home/.Trash/box",
                                   "home/Downloads"};

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr int rounds = 100;  // these are looked at closely instead
#else
constexpr int rounds = 1000;
#endif

/// Notices whoever reads, changes or removes anything in a tree.
class TreeWatch {
 public:
  explicit TreeWatch(const std::string& top) : queue_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    watch(top);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) watch(entry.path());
    (void)has_seen_any();
  }

  bool has_seen_any() {
    std::array<char, 65536> events = {};
    bool any = false;
    while (read(queue_.get(), events.data(), events.size()) > 0) any = true;
    return any;
  }

 private:
  void watch(const std::string& path) {
    EXPECT_GE(inotify_add_watch(queue_.get(), path.c_str(), IN_ALL_EVENTS), 0) << path;
  }

  Descriptor queue_;
};

TEST(SwappedFolders, lead_neither_scan_nor_removal_outside) {
  TestPlatform user(TestPlatform::Grants::both, "grants/home");
  for (const std::string file : files) user.tree.content("canary/" + file, "kept");
  const Snapshot canary = snapshot_of(user.tree.path("canary"));
  TreeWatch watch(user.tree.path("canary"));
  std::size_t removed = 0;
  for (int round = 0; round < rounds; ++round) {
    const std::string victim = victims[static_cast<std::size_t>(round) % std::size(victims)];
    for (const std::string file : files) user.tree.content("grants/" + file, "goes");
    Engine engine(user);
    const std::string a = user.tree.path("grants/" + victim);
    const std::string b = user.tree.path("stash");
    std::filesystem::remove_all(b);  // a link, or what came to lie there while its link was removed as an entry
    user.tree.link("stash", user.tree.path("canary/" + victim));
    {
      const std::jthread swapper([&](const std::stop_token& ending) {
        while (!ending.stop_requested()) (void)renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE);
      });
      engine.scan();
      std::vector<std::string_view> all;
      for (const Category& category : smart_categories()) all.push_back(category.type);
      engine.cleaner.files = select_groups(engine.cleaner, all).files;
      for (const Removal& removal : engine.cleaner.remove_files()) removed += removal.error ? 0U : 1U;
    }
    ASSERT_FALSE(watch.has_seen_any()) << "round " << round << ", " << victim;
    if (!std::filesystem::is_symlink(a)) continue;
    ASSERT_EQ(renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE), 0);
  }
  EXPECT_EQ(snapshot_of(user.tree.path("canary")), canary);
  EXPECT_GT(removed, static_cast<std::size_t>(rounds)) << "else nothing was attempted";
}

}  // namespace
}  // namespace tarnby::test
