// What whoever removes may ask for beyond the plain removal: a say before each entry, an order, folders unlocked.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <set>
#include <string>
#include <vector>

#include "files/file_manager.h"
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

}  // namespace
}  // namespace tarnby
