#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "files/file_manager.h"
#include "files/removal_remnant.h"
#include "tests/support/deep_chain.h"
#include "tests/support/own_mounts.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using test::with_own_mounts;
using Paths = std::vector<std::string>;
using Listing = std::set<std::string>;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;

std::vector<Url> urls_in(const TempTree& tree, const Paths& paths) {
  std::vector<Url> urls;
  for (const std::string& path : paths) urls.push_back(tree.url(path));
  return urls;
}

/// The error number of each removal; -1 where none was attempted.
std::vector<int> errors(const std::vector<Removal>& removals) {
  std::vector<int> numbers;
  for (const Removal& removal : removals) numbers.push_back(removal.attempted ? removal.error.value() : -1);
  return numbers;
}

/// A file manager of that team to which a folder of the tree is granted.
struct Remover {
  FileManager files;

  explicit Remover(const TempTree& tree, const Team& team = {0, 0}, std::string_view granted = "grant",
                   Grant kind = Grant::applications)
      : files(team.workers, team.handles) {
    EXPECT_TRUE(files.granted().add(kind, tree.url(granted)));
  }
  /// Holds what is refused to what was said about it before.
  std::vector<int> remove(const TempTree& tree, const Paths& paths) {
    const std::vector<Url> urls = urls_in(tree, paths);
    const std::vector<bool> refused = files.refuses_to_remove(urls);
    std::vector<int> found = errors(files.remove(urls));
    for (std::size_t i = 0; i < urls.size(); ++i) EXPECT_EQ(refused[i], found[i] == EPERM) << paths[i];
    return found;
  }
};

TEST(Removal, takes_what_was_asked_and_nothing_else) {
  const std::string odd = "\xff\n\"*";
  struct Case {
    const char* why;
    Paths targets;
    std::vector<int> errors;
    Listing gone;
  };
  const Case cases[] = {
      {"a folder with all it holds; what its links lead to stays",
       {"grant/folder"},
       {0},
       {"grant/folder/.hidden", "grant/folder/b/c/d", "grant/folder/empty/", "grant/folder/fifo", "grant/folder/out",
        "grant/folder/loop", "grant/folder/" + odd + "/" + odd}},
      {"a link, with a \"/\" at its end too, goes itself", {"grant/link/"}, {0}, {"grant/link"}},
      {"what is gone is no failure", {"grant/none/below", "grant/file", "grant/file"}, {0, 0, 0}, {"grant/file"}},
      {"one in the other", {"grant/t/a", "grant/t", "grant/t/a/b"}, {0, 0, 0}, {"grant/t/a/b/1", "grant/t/2"}},
      {"the grant and what holds it", {"grant/.", "", ".."}, {EPERM, EPERM, EPERM}, {}},
      {"what lies beside it", {"outside/kept", "grant2/kept", "way/file"}, {EPERM, EPERM, EPERM}, {}},
      {"climbing by name", {"grant/../outside/kept", "grant/folder/../file", "grant/.."}, {EPERM, EPERM, EPERM}, {}},
      {"through a link or a file", {"grant/link/kept", "grant/file/x"}, {ENOTDIR, ENOTDIR}, {}},
  };
  for (const Team& team : teams) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.why + (", " + team.why()));
      TempTree tree;
      tree.file("grant/file", 10).file("grant/folder/.hidden").file("grant/folder/b/c/d").file("grant/stays");
      tree.folder("grant/folder/empty").fifo("grant/folder/fifo").link("grant/folder/out", "../../outside");
      tree.link("grant/folder/loop", ".").file("grant/folder/" + odd + "/" + odd).link("way", "grant");
      tree.link("grant/link", tree.path("outside")).file("outside/kept").file("grant2/kept");
      tree.file("grant/t/a/b/1").file("grant/t/2");
      Listing expected = tree.listing();
      for (const std::string& path : c.gone) EXPECT_EQ(expected.erase(path), 1U) << path;
      EXPECT_EQ(Remover(tree, team).remove(tree, c.targets), c.errors);
      EXPECT_EQ(tree.listing(), expected);
    }
  }
}

struct Protected {
  Grant kind;
  std::string parent;
  const char* names;
};

const Protected protected_folders[] = {
    {Grant::home, "", "Applications,Desktop,Documents,Downloads,Library,Movies,Music,Pictures,Public,Sites,.Trash"},
    {Grant::home, "Library/",
     "Accounts,Address Book Plug-Ins,Application Scripts,Application Support,Assistants,Caches,Calendars,CloudStorage,"
     "ColorPickers,Containers,Cookies,Fonts,Group Containers,Input Methods,Internet Plug-Ins,Keyboard Layouts,"
     "Keychains,LaunchAgents,Logs,Mail,Messages,Metadata,Mobile Documents,Photos,PreferencePanes,Preferences,Printers,"
     "QuickLook,Reminders,Safari,Saved Application State,Screen Savers,Scripts,Services,Shortcuts,Sounds,Spelling,"
     "Spotlight,WebKit"},
    {Grant::disk, "", "Applications,Library,System,Users,private,var"},
    {Grant::disk, "Library/",
     "Application Support,Caches,LaunchAgents,LaunchDaemons,Logs,Preferences,PrivilegedHelperTools"},
    {Grant::disk, "Users/", "Shared"},
    {Grant::disk, "var/", "db,folders,run"},
    {Grant::disk, "private/", "var"},
    {Grant::disk, "private/var/", "db,folders,run"},
};

TEST(Removal, never_takes_whole_what_a_home_or_a_disk_cannot_do_without) {
  for (const Protected& row : protected_folders) {
    for (const bool linked : {false, true}) {
      SCOPED_TRACE(row.parent + row.names + (linked ? ", links in their place" : ""));
      TempTree tree;
      Paths targets;
      std::istringstream names(row.names);
      for (std::string name; std::getline(names, name, ',');) {
        targets.push_back("grant/" + row.parent + name);
        tree.file((linked ? "canary/" + name : targets.back()) + "/inside");
        if (linked) tree.link(targets.back(), tree.path("canary/" + name));
      }
      const Listing all = tree.listing();
      Remover remover(tree, {0, 0}, "grant", row.kind);
      EXPECT_THAT(remover.remove(tree, targets), Each(EPERM));
      EXPECT_EQ(tree.listing(), all);
      if (linked) continue;
      tree.file(targets.front() + " 2/inside").file("grant/a/" + targets.front());
      const Paths others = {targets.front() + " 2", "grant/a", targets.front() + "/inside"};
      EXPECT_THAT(remover.remove(tree, others), Each(0)) << "called alike, elsewhere, or in one of them";
    }
  }
}

TEST(Removal, keeps_a_granted_folder_and_whatever_holds_it) {
  TempTree tree;
  tree.file("disk/Users/me/1").file("disk/Users/me/Desktop/1").file("disk/Users/you/Desktop/1");
  tree.file("disk/a/b/given/1").file("disk/a/other").file("disk/given/1").file("disk/entry/sub/x");
  tree.file("disk/c/d/given/1").file("disk/c/2").link("way", "disk/c");
  Remover remover(tree, {0, 0}, "disk", Grant::disk);
  for (const char* given : {"disk/Users/me", "disk/a/b/given", "disk/given", "way/d/given"}) {
    EXPECT_TRUE(remover.files.granted().add(Grant::home, tree.url(given)));
  }
  const Paths kept = {"disk/Users/me", "disk/Users/me/Desktop", "disk/a/b/given", "disk/a/b", "disk/a"};
  EXPECT_THAT(remover.remove(tree, kept), Each(EPERM)) << "a home on a disk keeps a home's rules";
  EXPECT_THAT(remover.remove(tree, {"disk/c"}), Each(EPERM)) << "what holds it, by whatever path it was given";
  ASSERT_EQ(rename(tree.path("disk/given").c_str(), tree.path("disk/entry/sub/moved").c_str()), 0);
  tree.link("disk/given", "../canary").file("canary/1");
  EXPECT_THAT(remover.remove(tree, {"disk/entry/sub/moved"}), Each(EPERM)) << "wherever it has been moved";
  EXPECT_THAT(errors(remover.files.remove(urls_in(tree, {"disk/entry"}))), Each(EPERM));
  EXPECT_THAT(remover.remove(tree, {"disk/a/other", "disk/Users/me/1", "disk/Users/you"}), Each(0));
  EXPECT_EQ(tree.listing(), (Listing{"canary/1", "disk/Users/me/Desktop/1", "disk/a/b/given/1", "disk/c/2",
                                     "disk/c/d/given/1", "disk/entry/sub/moved/1", "disk/given", "way"}));
  EXPECT_THAT(remover.remove(tree, {"disk/given/1"}), Each(0));
  EXPECT_TRUE(tree.exists("canary/1")) << "the folder that was granted, whatever takes its place";
}

TEST(Removal, takes_all_it_can_and_reports_the_rest) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("grant/t/fixed/1").file("grant/t/fixed/sub/2").file("grant/t/closed/3").file("grant/t/z/6");
    tree.file("grant/other/7").file("grant/stays").folder("grant/t/closed_empty");
    tree.mode("grant/t/fixed", 0555).mode("grant/t/closed", 0).mode("grant/t/closed_empty", 0);
    test::as_plain_user(tree, [&] {
      EXPECT_THAT(Remover(tree, team).remove(tree, {"grant/t", "grant/other"}), ElementsAre(EACCES, 0));
    });
    tree.mode("grant/t/closed", 0700);
    EXPECT_EQ(tree.listing(), (Listing{"grant/stays", "grant/t/fixed/1", "grant/t/fixed/sub/", "grant/t/closed/3"}));
  }
}

struct Sum {
  std::int64_t bytes = 0;
  std::int64_t taken = 0;

  void add(const std::vector<Removal>& removals) {
    for (const Removal& removal : removals) {
      bytes += removal.bytes;
      taken += removal.taken ? 1 : 0;
    }
  }
};

TEST(Removal, tells_what_it_took_itself) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("grant/file", 10).link("grant/link", "four").fifo("grant/fifo").file("outside", 1'000);
    tree.file("grant/t/a", 1).file("grant/t/sub/b", 20).link("grant/t/sub/link", "../../../outside");
    tree.folder("grant/t/empty").fifo("grant/t/fifo").file("grant/part/gone", 300).file("grant/part/fixed/kept", 4'000);
    tree.mode("grant/part/fixed", 0555);
    ASSERT_EQ(link(tree.path("grant/file").c_str(), tree.path("grant/t/hard").c_str()), 0);
    test::as_plain_user(tree, [&] {
      RemovalProgress progress;
      const Paths paths = {"grant/file", "grant/link", "grant/fifo", "grant/t",
                           "grant/part", "grant/none", "outside",    "grant/file"};
      const auto removals = Remover(tree, team).files.remove(urls_in(tree, paths), {.progress = &progress});
      std::vector<std::int64_t> bytes;
      std::vector<bool> taken;
      for (const Removal& removal : removals) bytes.push_back(removal.bytes);
      for (const Removal& removal : removals) taken.push_back(removal.taken);
      EXPECT_THAT(bytes, ElementsAre(10, 4, 0, 1 + 20 + 16 + 10, 300, 0, 0, 0)) << "each name once";
      EXPECT_THAT(taken, ElementsAre(true, true, true, true, false, false, false, false));
      EXPECT_EQ(progress.bytes, 10 + 4 + 47 + 300);
      EXPECT_EQ(progress.listed, 4);
      EXPECT_EQ(progress.entries, 3 + 8 + 1) << "files, links and folders, within the listed ones, too";
    });
    tree.mode("grant/part/fixed", 0755);
  }
}

TEST(Removal, counts_for_one_of_several_at_once_what_that_one_took) {
  TempTree tree;
  Paths paths;
  for (int i = 0; i < 60; ++i) {
    paths.push_back("grant/" + std::to_string(i));
    for (const char* name : {"/a/1", "/a/b/2", "/3", "/c/4"}) tree.file(paths.back() + name, 7);
    paths.push_back("grant/file" + std::to_string(i));
    tree.file(paths.back(), 7);
  }
  const std::vector<Url> urls = urls_in(tree, paths);
  std::vector<Removal> of[4];
  {
    std::vector<std::jthread> runs;
    for (std::size_t i = 0; i < std::size(of); ++i) {
      runs.emplace_back([&, i] { of[i] = Remover(tree, teams[i]).files.remove(urls); });
    }
  }
  EXPECT_EQ(tree.listing(), Listing{"grant/"});
  Sum all;
  for (const std::vector<Removal>& removals : of) all.add(removals);
  EXPECT_EQ(all.bytes, 60 * 5 * 7) << "together what was there, not once for each run";
  EXPECT_EQ(all.taken, 2 * 60);
}

TEST(Removal, works_at_any_depth_and_count_with_few_handles) {
  for (const Team& team : {Team{1, 0}, Team{8, 0}, Team{1, 16}, Team{8, 16}}) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    const bool few = team.handles != 0;
    const test::DeepChain deep(tree, "grant/deep", 5000, std::string(200, 'n'), [&](int folder) {
      test::make_file_in(folder, "file", 1);
      if (few) test::make_folder_in(folder, "z");
    });
    const test::DeepChain wide(tree, "grant/wide", 0, "", [&](int folder) {
      for (int i = 0; i < 10'000; ++i) test::make_file_in(folder, std::to_string(i), 0);
    });
    Remover remover(tree, team);
    if (few == (team.workers == 1)) remover.files.confine_threads(FileManager::Callers::keep_their_rights);
    EXPECT_THAT(remover.remove(tree, {"grant/wide", "grant/deep"}), Each(0));
    EXPECT_EQ(tree.listing(), Listing{"grant/"});
  }
}

TEST(Removal, does_not_enter_what_is_mounted_in_an_entry) {
  TempTree tree;
  tree.file("grant/t/a").folder("grant/t/bound").folder("grant/itself").folder("grant/way");
  tree.file("canary/1").file("canary/sub/2").file("grant/Library/Caches/3");
  const bool ran = with_own_mounts([&] {
    for (const std::string to : {"grant/t/bound", "grant/itself", "grant/way"}) {
      const std::string from = tree.path(to == "grant/way" ? "grant" : "canary");
      ASSERT_EQ(mount(from.c_str(), tree.path(to).c_str(), nullptr, MS_BIND, nullptr), 0);
    }
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      tree.file("grant/t/a").file("grant/t/sub/b");
      Remover remover(tree, team, "grant", Grant::home);
      const auto found = remover.remove(tree, {"grant/t", "grant/itself"});
      EXPECT_THAT(found, ElementsAre(AnyOf(EXDEV, EBUSY), EXDEV));
      const Paths same = {"grant/way/Library", "grant/way/Library/Caches"};
      EXPECT_THAT(remover.remove(tree, same), Each(EPERM)) << "another path to a protected folder";
      EXPECT_FALSE(tree.exists("grant/t/a") || tree.exists("grant/t/sub"));
      for (const char* kept : {"canary/1", "canary/sub/2", "grant/Library/Caches/3"}) EXPECT_TRUE(tree.exists(kept));
    }
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

TEST(Removal, cannot_be_led_outside_by_links_that_take_the_place_of_folders) {
  TempTree tree;
  const Listing canary = {"canary/1", "canary/2", "canary/sub/1", "canary/sub/sub/2", "grant/stays"};
  for (const std::string& path : canary) tree.file(path);
  for (int round = 0; round < 300; ++round) {
    const Team& team = teams[static_cast<std::size_t>(round) % std::size(teams)];
    // The victim holds what the canary holds, so that whoever looks in the wrong place finds the names it knows.
    const std::string victim = round % 3 == 0 ? "grant/t" : round % 3 == 1 ? "grant/t/sub" : "grant/t/sub/sub";
    tree.file("grant/t/1").file("grant/t/2").file("grant/t/sub/1").file("grant/t/sub/sub/2");
    tree.link("grant/stash", tree.path("canary"));
    Remover remover(tree, team);
    {
      const std::jthread swapper([&](const std::stop_token& ending) {
        const std::string a = tree.path(victim);
        const std::string b = tree.path("grant/stash");
        while (!ending.stop_requested()) (void)renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE);
      });
      const RemovalOptions options = {.whole_units = round % 2 == 1};
      (void)remover.files.remove(urls_in(tree, {"grant/t", "grant/t/sub/sub", "grant/t/sub"}), options);  // may fail
    }
    EXPECT_THAT(remover.remove(tree, {"grant/t", "grant/stash"}), Each(0)) << "round " << round;
    for (const Entry& entry : remover.files.list(tree.url("grant"), Hidden::take)) {
      if (!is_removal_remnant(entry.url.last_path_component())) continue;
      EXPECT_FALSE(remover.files.remove({&entry.url, 1}).front().error);
    }
    ASSERT_EQ(tree.listing(), canary) << "round " << round;
  }
}

TEST(Removal, stops_between_two_entries) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    Paths entries;
    for (int i = 0; i < 400; ++i) {
      entries.push_back("grant/" + std::to_string(i));
      tree.file(entries.back() + "/a/1").file(entries.back() + "/2");
    }
    std::atomic<bool> stop{false};
    std::jthread stopper([&] {
      while (tree.exists("grant/3")) std::this_thread::yield();
      stop = true;
    });
    const std::vector<int> found = errors(Remover(tree, team).files.remove(urls_in(tree, entries), {.stop = &stop}));
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const bool whole = tree.exists(entries[i] + "/a/1") && tree.exists(entries[i] + "/2");
      EXPECT_TRUE(found[i] == -1 ? whole : !tree.exists(entries[i])) << "neither whole nor gone";
    }
  }
}

TEST(Removal, ends_at_once_in_the_middle_of_an_entry_and_tells_that_a_part_stays) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    bool caught = false;
    for (int round = 0; round < 20 && !caught; ++round) {
      TempTree tree;
      for (int i = 0; i < 300; ++i) tree.file("grant/t/" + std::to_string(i) + "/sub/x", 1).file("grant/after");
      std::atomic<bool> stop_now{false};
      RemovalProgress progress;
      std::jthread stopper([&] {
        while (progress.entries == 0) std::this_thread::yield();
        stop_now = true;
      });
      const auto removals =
          Remover(tree, team)
              .files.remove(urls_in(tree, {"grant/t", "grant/after"}), {.stop_now = &stop_now, .progress = &progress});
      std::int64_t left = 0;
      for (const std::string& path : tree.listing()) left += path.ends_with("/x") ? 1 : 0;
      EXPECT_EQ(removals[0].bytes + left, 300);
      caught = removals[0].error == std::errc::operation_canceled;
      EXPECT_TRUE(!caught || (tree.exists("grant/t") && !removals[0].taken));
    }
    EXPECT_TRUE(caught) << "an entry in hand is not finished";
  }
}

}  // namespace
}  // namespace tarnby
