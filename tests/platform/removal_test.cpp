#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/file_manager.h"
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

Listing without(Listing all, const Listing& gone) {
  for (const std::string& path : gone) EXPECT_EQ(all.erase(path), 1U) << path << " was never there";
  return all;
}

/// A file manager of that team to which a folder of the tree is granted.
struct Remover {
  FileManager files;

  explicit Remover(const TempTree& tree, const Team& team = {0, 0}, std::string_view granted = "grant",
                   Grant kind = Grant::applications)
      : files(team.workers, team.handles) {
    EXPECT_TRUE(files.granted().add(kind, tree.url(granted)));
  }
  std::vector<int> remove(const std::vector<Url>& urls) { return errors(files.remove(urls)); }
  std::vector<int> remove(const TempTree& tree, const Paths& paths) { return remove(urls_in(tree, paths)); }
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
      {"a file", {"grant/file"}, {0}, {"grant/file"}},
      {"an empty folder", {"grant/folder/empty"}, {0}, {"grant/folder/empty/"}},
      {"a folder with all it holds; what its links lead to stays",
       {"grant/folder"},
       {0},
       {"grant/folder/a", "grant/folder/.hidden", "grant/folder/b/c/d", "grant/folder/empty/", "grant/folder/fifo",
        "grant/folder/out", "grant/folder/loop", "grant/folder/" + odd + "/" + odd}},
      {"a name of any bytes", {"grant/folder/" + odd}, {0}, {"grant/folder/" + odd + "/" + odd}},
      {"a link to a folder goes itself", {"grant/link"}, {0}, {"grant/link"}},
      {"a \"/\" at its end does not make a link a folder", {"grant/link/"}, {0}, {"grant/link"}},
      {"a dangling link", {"grant/dangling"}, {0}, {"grant/dangling"}},
      {"a FIFO, which nobody opens", {"grant/folder/fifo"}, {0}, {"grant/folder/fifo"}},
      {"what is gone is no failure", {"grant/none", "grant/none/below"}, {0, 0}, {}},
      {"twice the same", {"grant/file", "grant/file"}, {0, 0}, {"grant/file"}},
      {"nothing to do", {}, {}, {}},
      {"the grant itself", {"grant", "grant/", "grant/."}, {EPERM, EPERM, EPERM}, {}},
      {"what holds the grant", {"", ".."}, {EPERM, EPERM}, {}},
      {"what lies beside the grant, also when its name begins like the grant's",
       {"outside", "outside/kept", "grant2/kept"},
       {EPERM, EPERM, EPERM},
       {}},
      {"climbing out by name",
       {"grant/../outside/kept", "grant/folder/../../outside", "grant/folder/..", "grant/.."},
       {EPERM, EPERM, EPERM, EPERM},
       {}},
      {"even when it would climb back in", {"grant/folder/../file"}, {EPERM}, {}},
      {"through a link, wherever it leads", {"grant/link/kept", "grant/folder/loop/a"}, {ENOTDIR, ENOTDIR}, {}},
      {"below a file", {"grant/file/x"}, {ENOTDIR}, {}},
      {"another path to the grant is no grant", {"way/file"}, {EPERM}, {}},
      {"a failure does not hold up what follows it", {"outside", "grant/file"}, {EPERM, 0}, {"grant/file"}},
  };
  for (const Team& team : teams) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.why + (", " + team.why()));
      TempTree tree;
      tree.file("grant/file", 10).file("grant/folder/a").file("grant/folder/.hidden").file("grant/folder/b/c/d");
      tree.folder("grant/folder/empty").fifo("grant/folder/fifo").link("grant/folder/out", "../../outside");
      tree.link("grant/folder/loop", ".").file("grant/folder/" + odd + "/" + odd);
      tree.link("grant/link", tree.path("outside")).link("grant/dangling", "nowhere").link("way", "grant");
      tree.file("outside/kept").file("grant2/kept");
      // Folders that become empty get a "/" in listings; keep them from it, so that only what went is missing.
      tree.file("grant/stays").file("grant/folder/stays");
      Listing expected = without(tree.listing(), c.gone);
      if (c.targets == Paths{"grant/folder"}) expected.erase("grant/folder/stays");
      EXPECT_EQ(Remover(tree, team).remove(tree, c.targets), c.errors);
      EXPECT_EQ(tree.listing(), expected);
    }
  }
  TempTree tree;
  tree.file("grant/file");
  EXPECT_THAT(Remover(tree).remove({Url(), Url::text("grant/file"), Url::file("/")}), Each(EPERM));
  EXPECT_THAT(errors(FileManager().remove(urls_in(tree, {"grant/file"}))), Each(EPERM)) << "nothing is granted";
  EXPECT_TRUE(tree.exists("grant/file"));
}

TEST(Removal, stays_in_the_folder_that_was_granted_whatever_takes_its_place) {
  TempTree tree;
  tree.file("grant/a").file("grant/b").file("canary/a").file("canary/b");
  Remover remover(tree);
  ASSERT_EQ(rename(tree.path("grant").c_str(), tree.path("moved").c_str()), 0);
  tree.link("grant", "canary");
  EXPECT_THAT(remover.remove(tree, {"grant/a"}), Each(0));
  EXPECT_EQ(tree.listing(), (Listing{"canary/a", "canary/b", "grant", "moved/b"})) << "the one the user chose";
}

struct Protected {
  const char* why;
  Grant kind;
  std::string parent;
  Paths names;
};

const Protected protected_folders[] = {
    {"a home's own folders",
     Grant::home,
     "",
     {"Applications", "Desktop", "Documents", "Downloads", "Library", "Movies", "Music", "Pictures", "Public", "Sites",
      ".Trash"}},
    {"its Library's",
     Grant::home,
     "Library/",
     {"Accounts",
      "Address Book Plug-Ins",
      "Application Scripts",
      "Application Support",
      "Assistants",
      "Caches",
      "Calendars",
      "CloudStorage",
      "ColorPickers",
      "Containers",
      "Cookies",
      "Fonts",
      "Group Containers",
      "Input Methods",
      "Internet Plug-Ins",
      "Keyboard Layouts",
      "Keychains",
      "LaunchAgents",
      "Logs",
      "Mail",
      "Messages",
      "Metadata",
      "Mobile Documents",
      "Photos",
      "PreferencePanes",
      "Preferences",
      "Printers",
      "QuickLook",
      "Reminders",
      "Safari",
      "Saved Application State",
      "Screen Savers",
      "Scripts",
      "Services",
      "Shortcuts",
      "Sounds",
      "Spelling",
      "Spotlight",
      "WebKit"}},
    {"a disk's own folders", Grant::disk, "", {"Applications", "Library", "System", "Users", "var"}},
    {"its Library's",
     Grant::disk,
     "Library/",
     {"Application Support", "Caches", "LaunchAgents", "LaunchDaemons", "Logs", "Preferences",
      "PrivilegedHelperTools"}},
    {"what all users share", Grant::disk, "Users/", {"Shared"}},
    {"what the system keeps", Grant::disk, "var/", {"db", "folders", "run"}},
};

TEST(Removal, never_takes_whole_what_a_home_or_a_disk_cannot_do_without) {
  for (const Protected& row : protected_folders) {
    for (const bool linked : {false, true}) {
      SCOPED_TRACE(row.why + std::string(linked ? ", links in their place" : ""));
      TempTree tree;
      Paths targets;
      for (const std::string& name : row.names) {
        targets.push_back("grant/" + row.parent + name);
        if (linked) {
          tree.file("canary/" + name + "/inside").link(targets.back(), tree.path("canary/" + name));
        } else {
          tree.file(targets.back() + "/inside");
        }
      }
      const Listing all = tree.listing();
      Remover remover(tree, {0, 0}, "grant", row.kind);
      EXPECT_THAT(remover.remove(tree, targets), Each(EPERM));
      EXPECT_THAT(remover.files.refuses_to_remove(urls_in(tree, targets)), Each(true));
      EXPECT_EQ(tree.listing(), all);
      if (linked) continue;
      for (std::string& target : targets) target += "/inside";
      EXPECT_THAT(remover.remove(tree, targets), Each(0)) << "what lies in them may go";
      tree.file("grant/" + row.parent + row.names.front() + " 2/inside").file("grant/a/" + row.names.front());
      EXPECT_THAT(remover.remove(tree, {"grant/" + row.parent + row.names.front() + " 2", "grant/a"}), Each(0))
          << "and so may what is only called alike, or elsewhere";
    }
  }
}

TEST(Removal, protects_by_any_spelling_where_case_does_not_matter) {
  TempTree tree;
  tree.file("grant/Library/inside").file("grant/Desktop/inside");
  const bool ignores_case = tree.exists("grant/library");
  const auto expected = ignores_case ? EPERM : 0;
  EXPECT_THAT(Remover(tree, {0, 0}, "grant", Grant::home).remove(tree, {"grant/library", "grant/DESKTOP"}),
              Each(expected));
  EXPECT_EQ(tree.listing(), (Listing{"grant/Library/inside", "grant/Desktop/inside"}));
}

TEST(Removal, keeps_a_granted_folder_and_whatever_holds_it) {
  struct Case {
    const char* why;
    Paths targets;
    std::vector<int> errors;
    Listing gone;
  };
  const Case cases[] = {
      {"the inner grant itself", {"disk/Users/me"}, {EPERM}, {}},
      {"a folder that holds it", {"disk/volumes/a/b", "disk/volumes/a", "disk/volumes"}, {EPERM, EPERM, EPERM}, {}},
      {"what is beside it", {"disk/volumes/a/other"}, {0}, {"disk/volumes/a/other"}},
      {"what is in it", {"disk/volumes/a/b/1", "disk/Users/me/1"}, {0, 0}, {"disk/volumes/a/b/1", "disk/Users/me/1"}},
      {"a home on a disk keeps a home's rules", {"disk/Users/me/Desktop"}, {EPERM}, {}},
      {"another user's home has no grant", {"disk/Users/you"}, {0}, {"disk/Users/you/Desktop/1"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TempTree tree;
    tree.file("disk/Users/me/1").file("disk/Users/me/Desktop/1").file("disk/Users/you/Desktop/1");
    tree.file("disk/volumes/a/b/1").file("disk/volumes/a/b/2").file("disk/volumes/a/other");
    const Listing all = tree.listing();
    Remover remover(tree, {0, 0}, "disk", Grant::disk);
    EXPECT_TRUE(remover.files.granted().add(Grant::home, tree.url("disk/Users/me")));
    EXPECT_TRUE(remover.files.granted().add(Grant::applications, tree.url("disk/volumes/a/b")));
    EXPECT_EQ(remover.remove(tree, c.targets), c.errors);
    EXPECT_EQ(tree.listing(), without(all, c.gone));
  }
}

TEST(Removal, keeps_a_granted_folder_that_has_been_moved_into_an_entry) {
  TempTree tree;
  tree.file("disk/given/1").file("disk/entry/a").file("disk/entry/sub/b");
  Remover remover(tree, {0, 0}, "disk", Grant::disk);
  EXPECT_TRUE(remover.files.granted().add(Grant::applications, tree.url("disk/given")));
  ASSERT_EQ(rename(tree.path("disk/given").c_str(), tree.path("disk/entry/sub/moved").c_str()), 0);
  const Paths moved = {"disk/entry/sub/moved"};
  EXPECT_THAT(remover.files.refuses_to_remove(urls_in(tree, moved)), Each(true));
  EXPECT_THAT(remover.remove(tree, moved), Each(EPERM));
  EXPECT_THAT(remover.remove(tree, {"disk/entry"}), Each(EPERM));
  EXPECT_EQ(tree.listing(), Listing{"disk/entry/sub/moved/1"}) << "all else went";
}

TEST(Removal, takes_all_it_can_and_reports_the_rest) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("grant/t/fixed/1").file("grant/t/fixed/sub/2").file("grant/t/closed/3").folder("grant/t/closed_empty");
    tree.file("grant/t/write_only/4").file("grant/t/a/5").file("grant/t/z/6").file("grant/other/7");
    tree.folder("grant/stays");
    tree.mode("grant/t/fixed", 0555).mode("grant/t/closed", 0).mode("grant/t/closed_empty", 0);
    tree.mode("grant/t/write_only", 0300);
    test::as_plain_user(tree, [&] {
      const auto errors = Remover(tree, team).remove(tree, {"grant/t", "grant/other", "grant/t/closed/3"});
      EXPECT_THAT(errors, ElementsAre(EACCES, 0, EACCES));
    });
    tree.mode("grant/t/closed", 0700).mode("grant/t/write_only", 0700);
    EXPECT_EQ(tree.listing(), (Listing{"grant/stays/", "grant/t/fixed/1", "grant/t/fixed/sub/", "grant/t/closed/3",
                                       "grant/t/write_only/4"}));
  }
}

TEST(Removal, reaches_any_depth_and_any_count) {
  constexpr int depth = 5000;
  const std::string long_name(200, 'n');
  for (const Team& team : {Team{1, 0}, Team{8, 0}}) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("grant/stays");
    const test::DeepChain deep(tree, "grant/deep", depth, long_name, [](int folder) {
      test::make_file_in(folder, "file", 1);
      test::make_folder_in(folder, "side");
    });
    const test::DeepChain wide(tree, "grant/wide", 0, "", [](int folder) {
      for (int i = 0; i < 20'000; ++i) test::make_file_in(folder, "file " + std::to_string(i), 0);
      for (int i = 0; i < 2'000; ++i) test::make_folder_in(folder, "folder " + std::to_string(i));
    });
    Remover remover(tree, team);
    EXPECT_THAT(remover.remove(tree, {"grant/wide", "grant/deep"}), Each(0));
    EXPECT_EQ(tree.listing(), Listing{"grant/stays"});
  }
}

TEST(Removal, comes_back_from_the_depth_with_few_handles) {
  for (const Team& team : {Team{1, 16}, Team{8, 16}}) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.file("grant/stays");
    const test::DeepChain deep(tree, "grant/deep", 300, "n", [](int folder) {
      test::make_file_in(folder, "file", 1);
      for (const char* side : {"a", "z"}) test::make_folder_in(folder, side);
    });
    EXPECT_THAT(Remover(tree, team).remove(tree, {"grant/deep"}), Each(0));
    EXPECT_EQ(tree.listing(), Listing{"grant/stays"});
  }
}

TEST(Removal, does_not_enter_what_is_mounted_in_an_entry) {
  TempTree tree;
  tree.file("grant/t/a").folder("grant/t/bound").folder("grant/t/sub/other_disk").file("grant/t/file_on_file");
  tree.folder("grant/itself").file("canary/1").file("canary/sub/2");
  const bool ran = with_own_mounts([&] {
    const auto bind = [&](const char* from, const char* to) {
      return mount(tree.path(from).c_str(), tree.path(to).c_str(), nullptr, MS_BIND, nullptr);
    };
    ASSERT_EQ(bind("canary", "grant/t/bound"), 0);
    ASSERT_EQ(bind("canary", "grant/itself"), 0);
    ASSERT_EQ(bind("canary/1", "grant/t/file_on_file"), 0);
    ASSERT_EQ(mount("none", tree.path("grant/t/sub/other_disk").c_str(), "tmpfs", 0, nullptr), 0);
    tree.file("grant/t/sub/other_disk/kept");
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      tree.file("grant/t/a").file("grant/t/sub/b");
      const auto found = Remover(tree, team).remove(tree, {"grant/t", "grant/itself"});
      EXPECT_TRUE(found.front() == EXDEV || found.front() == EBUSY) << found.front();
      EXPECT_EQ(found.back(), EXDEV);
      EXPECT_EQ(tree.listing(),
                (Listing{"canary/1", "canary/sub/2", "grant/itself/1", "grant/itself/sub/2", "grant/t/bound/1",
                         "grant/t/bound/sub/2", "grant/t/file_on_file", "grant/t/sub/other_disk/kept"}));
    }
    EXPECT_THAT(Remover(tree).remove(tree, {"grant/t/sub/other_disk/kept"}), Each(0)) << "asked for by name";
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
  EXPECT_TRUE(tree.exists("canary/1"));
}

TEST(Removal, another_path_to_a_protected_folder_protects_it_too) {
  TempTree tree;
  tree.file("home/Library/Caches/1").folder("home/way");
  const bool ran = with_own_mounts([&] {
    ASSERT_EQ(mount(tree.path("home").c_str(), tree.path("home/way").c_str(), nullptr, MS_BIND, nullptr), 0);
    Remover remover(tree, {0, 0}, "home", Grant::home);
    const Paths targets = {"home/way/Library", "home/way/Library/Caches"};
    EXPECT_THAT(remover.files.refuses_to_remove(urls_in(tree, targets)), Each(true));
    EXPECT_THAT(remover.remove(tree, targets), Each(EPERM));
    EXPECT_TRUE(tree.exists("home/Library/Caches/1"));
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

/// Swaps two entries as fast as it can for as long as it lives.
class Swapper {
 public:
  Swapper(std::string a, std::string b)
      : a_(std::move(a)), b_(std::move(b)), thread_([this] {
          while (!ending_.load()) (void)renameat2(AT_FDCWD, a_.c_str(), AT_FDCWD, b_.c_str(), RENAME_EXCHANGE);
        }) {}
  ~Swapper() {
    ending_ = true;
    thread_.join();
  }
  Swapper(const Swapper&) = delete;
  Swapper& operator=(const Swapper&) = delete;

 private:
  const std::string a_;
  const std::string b_;
  std::atomic<bool> ending_{false};
  std::thread thread_;
};

TEST(Removal, cannot_be_led_outside_by_links_that_take_the_place_of_folders) {
  constexpr int rounds = 300;
  TempTree tree;
  const Listing canary = {"canary/1", "canary/2", "canary/sub/1", "canary/sub/sub/2"};
  for (const std::string& path : canary) tree.file(path);
  for (int round = 0; round < rounds; ++round) {
    const Team& team = teams[static_cast<std::size_t>(round) % std::size(teams)];
    // The victim holds what the canary holds, so that whoever looks in the wrong place finds the names it knows.
    const std::string victim = round % 3 == 0 ? "grant/t" : round % 3 == 1 ? "grant/t/sub" : "grant/t/sub/sub";
    for (const char* path : {"1", "2", "sub/1", "sub/sub/2", "sub/sub/sub/sub/3"})
      tree.file(std::string("grant/t/") + path);
    tree.link("grant/stash", tree.path("canary"));
    Remover remover(tree, team);
    {
      const Swapper swapper(tree.path(victim), tree.path("grant/stash"));
      (void)remover.remove(tree, {"grant/t", "grant/t/sub/sub", "grant/t/sub"});  // may fail: the swapper's fault
    }
    EXPECT_THAT(remover.remove(tree, {"grant/t", "grant/stash"}), Each(0)) << "round " << round;
    Listing expected = canary;
    expected.insert("grant/");
    ASSERT_EQ(tree.listing(), expected) << "round " << round;
  }
}

TEST(Removal, says_the_truth_when_entries_are_added_meanwhile) {
  constexpr int rounds = 40;
  for (int round = 0; round < rounds; ++round) {
    const Team& team = teams[static_cast<std::size_t>(round) % std::size(teams)];
    SCOPED_TRACE(team.why());
    TempTree tree;
    tree.folder("grant/t/a/b").file("grant/stays");
    Remover remover(tree, team);
    std::thread adder([&] {
      for (int i = 0; i < 300; ++i) {
        for (const char* folder : {"grant/t/a/b/", "grant/t/a/", "grant/t/"}) {
          const std::string name = tree.path(folder + std::to_string(i));
          if (i % 5 == 0) {
            (void)mkdir(name.c_str(), 0755);  // fails once its folder is gone
          } else {
            (void)Descriptor(open(name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
          }
        }
      }
    });
    const std::vector<int> found = remover.remove(tree, {"grant/t"});
    adder.join();
    EXPECT_EQ(found.front() != 0, tree.exists("grant/t"));
    EXPECT_THAT(remover.remove(tree, {"grant/t"}), Each(0));
    EXPECT_EQ(tree.listing(), Listing{"grant/stays"});
  }
}

TEST(Removal, entries_of_one_list_may_hold_one_another) {
  for (int round = 0; round < 30; ++round) {
    for (const Team& team : teams) {
      SCOPED_TRACE(team.why());
      TempTree tree;
      tree.folder("grant/t/a/b/c/d/e").folder("grant/t/x/y/z").file("grant/stays");
      for (const char* folder : {"", "a/", "a/b/", "a/b/c/", "a/b/c/d/", "x/", "x/y/"}) {
        for (int i = 0; i < 5; ++i) tree.file("grant/t/" + std::string(folder) + std::to_string(i));
      }
      const Paths targets = {"grant/t",   "grant/t/a",   "grant/t/a/b/c", "grant/t",           "grant/t/a/b",
                             "grant/t/x", "grant/t/x/y", "grant/t/x",     "grant/t/a/b/c/d/1", "grant/t/a/1"};
      EXPECT_THAT(Remover(tree, team).remove(tree, targets), Each(0));
      EXPECT_EQ(tree.listing(), Listing{"grant/stays"});
    }
  }
}

TEST(Removal, stops_between_two_entries) {
  constexpr int count = 400;
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    std::vector<Url> urls;
    for (int i = 0; i < count; ++i) {
      const std::string entry = "grant/" + std::to_string(i);
      tree.file(entry + "/a/1").file(entry + "/2");
      urls.push_back(tree.url(entry));
    }
    Remover remover(tree, team);
    std::atomic<bool> stop{true};
    const Listing all = tree.listing();
    EXPECT_THAT(errors(remover.files.remove(urls, &stop)), Each(-1));
    EXPECT_EQ(tree.listing(), all) << "stopped before it began";

    stop = false;
    std::thread stopper([&] {
      while (tree.exists("grant/3")) std::this_thread::yield();
      stop = true;
    });
    const std::vector<Removal> removals = remover.files.remove(urls, &stop);
    stopper.join();
    ASSERT_EQ(removals.size(), urls.size());
    Listing expected;
    bool stopped = false;
    for (int i = 0; i < count; ++i) {
      const Removal& removal = removals[static_cast<std::size_t>(i)];
      EXPECT_FALSE(removal.attempted && stopped) << "attempted out of order";
      EXPECT_FALSE(removal.error);
      stopped = !removal.attempted;
      const std::string entry = "grant/" + std::to_string(i);
      if (stopped) expected.merge(Listing{entry + "/a/1", entry + "/2"});
    }
    if (expected.empty()) expected.insert("grant/");
    EXPECT_EQ(tree.listing(), expected) << "what was attempted went whole, the rest is whole";
  }
}

TEST(Removal, refuses_what_it_says_it_refuses) {
  const Paths pool = {"",
                      "..",
                      "disk",
                      "disk/Users",
                      "disk/Users/Shared",
                      "disk/Users/me",
                      "disk/Users/me/Library",
                      "disk/Users/me/Library/Caches",
                      "disk/Users/me/Library/Caches/app",
                      "disk/Users/me/Library/Mail",
                      "disk/Users/me/Desktop",
                      "disk/Users/me/Desktop/1",
                      "disk/Users/me/../you",
                      "disk/Users/you",
                      "disk/Users/you/Desktop",
                      "disk/Applications",
                      "disk/Applications/A.app",
                      "disk/way",
                      "disk/way/1",
                      "disk/none/1",
                      "disk/var/db",
                      "disk/var/other",
                      "outside/1"};
  const std::random_device::result_type seed = std::random_device()();
  std::mt19937 random(seed);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
    TempTree tree;
    tree.file("disk/Users/Shared/1").file("disk/Users/me/Library/Caches/app/1").file("disk/Users/me/Library/Mail/1");
    tree.file("disk/Users/me/Desktop/1").file("disk/Users/you/Desktop/1").file("disk/Applications/A.app/1");
    tree.link("disk/way", "Users/me/Desktop").link("disk/var/db", "..").file("disk/var/other").file("outside/1");
    FileManager files;
    std::string what = "granted:";
    const std::pair<Grant, const char*> grants[] = {
        {Grant::disk, "disk"}, {Grant::home, "disk/Users/me"}, {Grant::applications, "disk/Applications"}};
    for (const auto& [kind, folder] : grants) {
      const bool given = random() % 2 == 0 && files.granted().add(kind, tree.url(folder));
      what += given ? std::string(" ") + folder : "";
    }
    std::vector<Url> urls;
    for (int i = 0; i < 8; ++i) urls.push_back(tree.url(pool[random() % pool.size()]));
    const std::vector<bool> refused = files.refuses_to_remove(urls);
    const std::vector<int> found = errors(files.remove(urls));
    ASSERT_EQ(refused.size(), urls.size());
    for (std::size_t i = 0; i < urls.size(); ++i) EXPECT_EQ(refused[i], found[i] == EPERM) << urls[i].path() << what;
    EXPECT_TRUE(tree.exists("outside/1"));
  }
}

}  // namespace
}  // namespace tarnby
