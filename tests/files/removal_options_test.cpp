// What whoever removes may ask for beyond the plain removal: a say before each entry, an order, folders unlocked.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <set>
#include <string>
#include <vector>

#include "files/file_manager.h"
#include "files/removal_remnant.h"
#include "tests/support/own_mounts.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using Listing = std::set<std::string>;
using testing::ElementsAre;

/// Removes paths of a tree whose folder "grant" is granted.
std::vector<Removal> removed(const TempTree& tree, const Team& team, const std::vector<std::string>& paths,
                             const RemovalOptions& options) {
  FileManager files(team.workers, team.handles);
  EXPECT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
  std::vector<Url> urls;
  for (const std::string& path : paths) urls.push_back(tree.url("grant/" + path));
  return files.remove(urls, options);
}

std::vector<std::error_code> errors(const std::vector<Removal>& removals) {
  std::vector<std::error_code> found;
  for (const Removal& removal : removals) {
    EXPECT_TRUE(removal.attempted);
    found.push_back(removal.error);
  }
  return found;
}

TEST(RemovalGate, keeps_what_it_refuses_and_is_asked_of_nothing_else) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("grant/file").file("grant/kept").file("grant/folder/1").file("grant/kept folder/1").file("outside");
    std::multiset<std::size_t> asked;
    const auto refuse = [&](std::size_t at, std::span<const Removal> so_far) -> std::error_code {
      EXPECT_TRUE(so_far.size() == 7 && !so_far[at].attempted);
      asked.insert(at);
      if (at == 1) return RemovalRefusal::owner_runs;
      return at == 3 ? make_error_code(std::errc::device_or_resource_busy) : std::error_code();
    };
    const auto removals = removed(tree, team, {"file", "kept", "folder", "kept folder", "gone", "../outside", "file/x"},
                                  {.refuse = refuse});
    EXPECT_THAT(errors(removals), ElementsAre(std::error_code(), RemovalRefusal::owner_runs, std::error_code(),
                                              std::errc::device_or_resource_busy, std::error_code(),
                                              std::errc::operation_not_permitted, testing::_));
    EXPECT_EQ(asked, (std::multiset<std::size_t>{0, 1, 2, 3})) << "each once, and of what could go only";
    EXPECT_EQ(tree.listing(), (Listing{"grant/kept", "grant/kept folder/1", "outside"}));
  }
}

/// Pairs as a Trash has them: a folder, and a file that is to go after it, and only when nothing of it is left.
struct Pairs {
  static constexpr std::size_t count = 60;
  std::vector<std::string> paths;
  RemovalOptions options;

  explicit Pairs(TempTree& tree) {
    for (std::size_t i = 0; i < count; ++i) {
      const std::string name = std::to_string(i);
      tree.file("grant/files/" + name + "/a/b/1", 1).file("grant/files/" + name + "/2", 1).file("grant/info/" + name);
      paths.push_back("files/" + name);
      paths.push_back("info/" + name);
      options.after.push_back(RemovalOptions::waits_for_none);
      options.after.push_back(2 * i);
    }
    options.refuse = [](std::size_t at, std::span<const Removal> so_far) -> std::error_code {
      if (at % 2 == 0) return {};
      EXPECT_TRUE(so_far[at - 1].attempted) << "asked before the one it waits for was done with";
      return so_far[at - 1].error ? make_error_code(RemovalRefusal::other_stays) : std::error_code();
    };
  }
};

TEST(RemovalGate, knows_how_the_entry_that_goes_first_has_ended) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    Pairs pairs(tree);
    tree.mode("grant/files/7/a", 0555);
    test::as_plain_user(tree, [&] {
      const auto removals = removed(tree, team, pairs.paths, pairs.options);
      for (std::size_t at = 0; at < removals.size(); ++at) {
        SCOPED_TRACE(pairs.paths[at]);
        const std::error_code expected = at == 14   ? make_error_code(std::errc::permission_denied)
                                         : at == 15 ? make_error_code(RemovalRefusal::other_stays)
                                                    : std::error_code();
        EXPECT_EQ(removals[at].error, expected);
        EXPECT_TRUE(removals[at].attempted && removals[at].taken == !expected);
      }
    });
    EXPECT_EQ(tree.listing(), (Listing{"grant/files/7/a/b/", "grant/info/7"}));
    tree.mode("grant/files/7/a", 0755);
  }
}

TEST(RemovalGate, a_stop_lets_what_waits_for_the_entry_in_hand_go_with_it) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    Pairs pairs(tree);
    std::atomic<bool> stop{false};
    pairs.options.stop = &stop;
    pairs.options.refuse = [&](std::size_t at, std::span<const Removal>) {
      if (at == 8) stop = true;
      return std::error_code();
    };
    const auto removals = removed(tree, team, pairs.paths, pairs.options);
    EXPECT_FALSE(removals.back().attempted);
    for (std::size_t i = 0; i < Pairs::count; ++i) {
      const std::string name = std::to_string(i);
      EXPECT_EQ(tree.exists("grant/files/" + name), tree.exists("grant/info/" + name)) << "half a pair: " << name;
      EXPECT_EQ(removals[2 * i].attempted, !tree.exists("grant/files/" + name + "/2"));
    }
  }
}

TEST(RemovalGate, an_order_that_cannot_be_kept_is_none) {
  TempTree tree;
  tree.file("grant/a").file("grant/b/1").file("grant/c");
  const auto removals = removed(tree, teams[0], {"a", "b", "c"}, {.after = {1, 1, 77, 5}});
  EXPECT_TRUE(std::ranges::all_of(removals, &Removal::taken));
}

TEST(UnlockFolders, takes_what_their_owner_has_closed_to_himself) {
  for (const Team& team : {teams[0], teams[1], Team{1, 16}}) {
    for (const bool confined : {false, true}) {
      SCOPED_TRACE(team.why() + (confined ? ", confined" : ""));
      TempTree tree;
      for (const char* mode : {"555", "44", "444", "0", "311"}) {
        tree.file(std::string("grant/t/") + mode + "/sub/deeper/1", 5).file(std::string("grant/t/") + mode + "/2", 7);
        tree.folder(std::string("grant/t/") + mode + "/empty");
        for (const char* below : {"/sub/deeper", "/sub", "/empty", ""}) {
          tree.mode(std::string("grant/t/") + mode + below, static_cast<unsigned>(std::stoi(mode, nullptr, 8)));
        }
      }
      tree.file("grant/closed/unit/1").file("grant/foreign/sub/1").mode("grant/closed/unit", 0555);
      tree.mode("grant/t", 0555).mode("grant/closed", 0555).mode("grant/foreign/sub", 0555);
      const uid_t somebody_else = 1;
      const bool has_other = chown(tree.path("grant/foreign/sub").c_str(), somebody_else, somebody_else) == 0;
      test::as_plain_user(tree, [&] {
        FileManager files(team.workers, team.handles);
        EXPECT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
        if (confined) files.confine_threads(FileManager::Callers::keep_their_rights);
        const Url urls[] = {tree.url("grant/t"), tree.url("grant/closed/unit"), tree.url("grant/foreign")};
        EXPECT_EQ(files.remove({urls, 1}).front().error, std::errc::permission_denied) << "only when it is asked for";
        const auto removals = files.remove(urls, {.unlock_folders = true});
        EXPECT_FALSE(removals[0].error) << removals[0].error.message();
        EXPECT_EQ(removals[0].bytes, 5 * (5 + 7));
        EXPECT_EQ(removals[1].error, std::errc::permission_denied) << "what holds an entry stays as it is";
        EXPECT_EQ(bool(removals[2].error), has_other) << "nor another user's folder";
      });
      EXPECT_FALSE(tree.exists("grant/t"));
      EXPECT_EQ(tree.exists("grant/foreign/sub/1"), has_other);
      tree.mode("grant/closed", 0755);
      if (has_other) tree.mode("grant/foreign/sub", 0755);
    }
  }
}

TEST(WholeUnits, go_whole_or_stay_whole_or_lose_their_name) {
  struct Case {
    const char* why;
    std::vector<std::pair<const char*, unsigned>> modes;
    bool unlocks;
    std::errc error;
    Listing left;
    bool is_hidden;
  };
  const Case cases[] = {
      {"nothing in the way", {}, false, {}, {}, false},
      {"a store that is closed", {{"unit/a", 0555}, {"unit", 0555}}, true, {}, {}, false},
      {"a part that stays", {{"unit/a", 0555}}, false, std::errc::permission_denied, {"/a/1"}, true},
      {"nothing can go",
       {{"unit/a", 0555}, {"unit", 0555}},
       false,
       std::errc::permission_denied,
       {"grant/unit/2", "grant/unit/a/1"},
       false},
      {"its own folder is closed",
       {{"", 0555}},
       true,
       std::errc::permission_denied,
       {"grant/unit/2", "grant/unit/a/1"},
       false},
  };
  for (const Case& c : cases) {
    for (const bool confined : {false, true}) {
      SCOPED_TRACE(c.why + std::string(confined ? ", confined" : ""));
      TempTree tree;
      tree.file("grant/unit/a/1").file("grant/unit/2");
      for (const auto& [path, mode] : c.modes) tree.mode(std::string("grant/") + path, mode);
      test::as_plain_user(tree, [&] {
        FileManager files;
        EXPECT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
        if (confined) files.confine_threads(FileManager::Callers::keep_their_rights);
        const Url unit = tree.url("grant/unit");
        const Removal removal = files.remove({&unit, 1}, {.unlock_folders = c.unlocks, .whole_units = true}).front();
        EXPECT_EQ(removal.error, c.error == std::errc{} ? std::error_code() : make_error_code(c.error));
        EXPECT_EQ(is_removal_remnant(removal.left_as.last_path_component()), c.is_hidden);
        Listing left = c.left;
        if (c.is_hidden) left = {"grant/" + std::string(removal.left_as.last_path_component()) + "/a/1"};
        if (left.empty()) left = {"grant/"};
        EXPECT_EQ(tree.listing(), left);
      });
      for (const auto& [path, mode] : c.modes) {
        if (tree.exists(std::string("grant/") + path)) tree.mode(std::string("grant/") + path, 0755);
      }
    }
  }
}

TEST(WholeUnits, are_left_alone_where_something_is_mounted_in_them) {
  TempTree tree;
  tree.file("grant/unit/a").folder("grant/unit/sub/mounted").file("canary/1");
  const bool ran = test::with_own_mounts([&] {
    const std::string to = tree.path("grant/unit/sub/mounted");
    ASSERT_EQ(mount(tree.path("canary").c_str(), to.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_THAT(errors(removed(tree, teams[0], {"unit"}, {.whole_units = true})),
                ElementsAre(std::errc::cross_device_link));
    EXPECT_TRUE(tree.exists("grant/unit/a") && tree.exists("grant/unit/sub/mounted/1"));
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

}  // namespace
}  // namespace tarnby
