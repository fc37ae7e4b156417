#include "platform/file_manager.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <random>
#include <thread>

#include "platform/measurer.h"
#include "tests/support/deep_chain.h"
#include "tests/support/open_watch.h"
#include "tests/support/random_tree.h"
#include "tests/support/team.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::Team;
using test::teams;
using test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;
using Paths = std::vector<std::string>;

bool want_all(std::string_view /*name*/, EntryKind /*kind*/) {
  return true;
}

Paths below(const TempTree& tree, const std::vector<Url>& urls) {
  Paths paths;
  for (const Url& url : urls) paths.push_back(url.path().substr(tree.path().size() + 1));
  return paths;
}

/// A walk by the plainest means, one folder after the other.
Paths walk_plainly(const std::string& folder, Hidden hidden, Packages packages) {
  Paths names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  Paths found;
  for (const std::string& name : names) {
    if (hidden == Hidden::skip && name[0] == '.') continue;
    const std::string path = folder + "/" + name;
    found.push_back(path);
    struct stat info = {};
    EXPECT_EQ(lstat(path.c_str(), &info), 0);
    if (!S_ISDIR(info.st_mode) || (packages == Packages::skip && is_package_name(name))) continue;
    for (std::string& inner : walk_plainly(path, hidden, packages)) found.push_back(std::move(inner));
  }
  return found;
}

TEST(Listing, is_in_byte_order_and_follows_nothing) {
  TempTree tree;
  tree.file("t/b").file("t/B").folder("t/a").file("t/a ").file("t/.h").link("t/l", "a").link("t/x", "none").fifo("t/p");
  tree.file("t/\xff").file("t/\n").file("t/z/inside").link("way", "t").link("t/loop", "loop").file("t/..x");
  const FileManager files;
  const auto kind = [](EntryKind what, const char* name) {
    return testing::AllOf(testing::Field(&Entry::kind, what),
                          testing::Field(&Entry::url, testing::Property(&Url::last_path_component, name)));
  };
  EXPECT_THAT(files.list(tree.url("t")),
              ElementsAre(kind(EntryKind::file, "\n"), kind(EntryKind::file, "B"), kind(EntryKind::folder, "a"),
                          kind(EntryKind::file, "a "), kind(EntryKind::file, "b"), kind(EntryKind::link, "l"),
                          kind(EntryKind::link, "loop"), kind(EntryKind::other, "p"), kind(EntryKind::link, "x"),
                          kind(EntryKind::folder, "z"), kind(EntryKind::file, "\xff")));
  EXPECT_THAT(below(tree, files.list_urls(tree.url("t"), Hidden::take)),
              ElementsAre("t/\n", "t/..x", "t/.h", "t/B", "t/a", "t/a ", "t/b", "t/l", "t/loop", "t/p", "t/x", "t/z",
                          "t/\xff"));
  for (const char* path : {"way", "t/b", "t/p", "t/loop", "none", "t/z/.."}) {
    EXPECT_THAT(files.list(tree.url(path), Hidden::take), IsEmpty()) << path;
  }
  EXPECT_THAT(files.list(Url()), IsEmpty());
  EXPECT_THAT(files.list(tree.url("way/z")), ElementsAre(kind(EntryKind::file, "inside")))
      << "no grant: a path as a person types it";
}

TEST(Walk, equals_a_plain_walk_one_folder_after_the_other) {
  const std::random_device::result_type seed = std::random_device()();
  std::mt19937 random(seed);
  for (int round = 0; round < 8; ++round) {
    TempTree tree;
    test::fill_at_random(tree, "t", random);
    for (const Team& team : teams) {
      FileManager files(team.workers, team.handles);
      for (const Hidden hidden : {Hidden::skip, Hidden::take}) {
        for (const Packages packages : {Packages::skip, Packages::enter}) {
          SCOPED_TRACE(team.why() + ", seed " + std::to_string(seed));
          Paths found;
          for (const Url& url : files.walk(tree.url("t"), hidden, packages, want_all)) found.push_back(url.path());
          ASSERT_EQ(found, walk_plainly(tree.path("t"), hidden, packages));
        }
      }
    }
  }
}

TEST(Walk, keeps_what_is_wanted_and_starts_at_folders_only) {
  TempTree tree;
  tree.file("A.app/x/1").file("A.app/B.PLUGIN/2").link("A.app/x/C.app", "../B.PLUGIN").file("A.app/x/D.app");
  tree.link("way", "A.app").file(".hidden/3").file("file");
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    FileManager files(team.workers, team.handles);
    const auto walk = [&](const char* path, Hidden hidden, Packages packages, const WantEntry& want) {
      return below(tree, files.walk(tree.url(path), hidden, packages, want));
    };
    EXPECT_THAT(walk("A.app", Hidden::skip, Packages::skip, want_all),
                ElementsAre("A.app/B.PLUGIN", "A.app/x", "A.app/x/1", "A.app/x/C.app", "A.app/x/D.app"))
        << "the package it starts in is walked";
    EXPECT_THAT(walk(".hidden", Hidden::skip, Packages::skip, want_all), ElementsAre(".hidden/3"));
    const auto links = [](std::string_view, EntryKind kind) { return kind == EntryKind::link; };
    EXPECT_THAT(walk("A.app", Hidden::take, Packages::enter, links), ElementsAre("A.app/x/C.app"));
    for (const char* path : {"way", "file", "none", "A.app/.."}) {
      EXPECT_THAT(walk(path, Hidden::take, Packages::enter, want_all), IsEmpty()) << path;
    }
    EXPECT_THAT(files.walk(Url(), Hidden::take, Packages::enter, want_all), IsEmpty());
  }
}

TEST(Walk, comes_to_the_end_of_paths_longer_than_the_system_takes) {
  constexpr int depth = 5000;
  const std::string name(100, 'n');
  TempTree tree;
  int level = 0;
  const test::DeepChain deep(tree, "t", depth, name, [&](int folder) {
    if (level++ == depth) test::make_file_in(folder, "end", 1234);
  });
  for (const Team& team : {Team{1, 0}, Team{8, 0}, Team{8, 16}}) {
    SCOPED_TRACE(team.why());
    FileManager files(team.workers, team.handles);
    const auto found = files.walk(tree.url("t"), Hidden::skip, Packages::skip,
                                  [](std::string_view entry, EntryKind) { return entry == "end"; });
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().path().size(), tree.path("t").size() + std::size_t{depth} * 101 + 4);
    EXPECT_EQ(files.status(found.front()).size, 1234);
    EXPECT_EQ(files.list_urls(found.front().parent()), found);
    EXPECT_EQ(files.read(found.front(), 1234), std::string(1234, '\0'));
  }
}

TEST(Walk, bears_that_entries_come_and_go_meanwhile) {
  for (const Team& team : teams) {
    SCOPED_TRACE(team.why());
    TempTree tree;
    for (int i = 0; i < 20; ++i) tree.file("t/" + std::to_string(i) + "/kept");
    std::atomic<bool> ending{false};
    std::thread meddler([&] {
      for (int round = 0; !ending; ++round) {
        const std::string folder = tree.path("t/" + std::to_string(round % 20) + "/passing");
        (void)mkdir(folder.c_str(), 0755);
        (void)symlink("..", (folder + "/link").c_str());
        (void)rename((folder + "/link").c_str(), (folder + "/other").c_str());
        (void)unlink((folder + "/other").c_str());
        (void)rmdir(folder.c_str());
      }
    });
    FileManager files(team.workers, team.handles);
    for (int round = 0; round < 30; ++round) {
      const auto kept = [](std::string_view name, EntryKind) { return name == "kept"; };
      EXPECT_EQ(files.walk(tree.url("t"), Hidden::take, Packages::enter, kept).size(), 20U);
    }
    ending = true;
    meddler.join();
  }
}

TEST(Status, tells_of_entries_themselves) {
  struct Case {
    const char* why;
    std::string path;
    EntryKind kind;
    std::int64_t size;
  };
  const Case cases[] = {
      {"a file", "grant/file", EntryKind::file, 10},
      {"a neighbour, in a folder already open", "grant/sub", EntryKind::folder, 0},
      {"below", "grant/sub/.x", EntryKind::file, 3},
      {"a link is not what it leads to", "grant/link", EntryKind::link, 3},
      {"through a link below the grant", "grant/link/.x", EntryKind::none, 0},
      {"a dangling link exists", "grant/dangling", EntryKind::link, 7},
      {"a FIFO", "grant/fifo", EntryKind::other, 0},
      {"below a file", "grant/file/x", EntryKind::none, 0},
      {"missing", "grant/none", EntryKind::none, 0},
      {"in what is missing", "grant/none/x", EntryKind::none, 0},
      {"climbing", "grant/sub/..", EntryKind::none, 0},
      {"climbing on the way", "grant/sub/../file", EntryKind::none, 0},
      {"the grant", "grant", EntryKind::folder, 0},
      {"outside, through a link on the way", "way/file", EntryKind::file, 10},
      {"outside, a link at the end", "way", EntryKind::link, 5},
      {"a name longer than any", "grant/" + std::string(300, 'n'), EntryKind::none, 0},
  };
  TempTree tree;
  tree.file("grant/file", 10).file("grant/sub/.x", 3).link("grant/link", "sub").link("grant/dangling", "nowhere");
  tree.fifo("grant/fifo").link("way", "grant");
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::home, tree.url("grant")));
  std::vector<Url> urls;
  for (const Case& c : cases) urls.push_back(tree.url(c.path));
  urls.insert(urls.end(), {Url::file("/"), Url(), Url::text("grant/file"), Url::file("/..")});
  const std::vector<Status> statuses = files.statuses(urls);
  ASSERT_EQ(statuses.size(), urls.size());
  for (std::size_t at = 0; at < std::size(cases); ++at) {
    SCOPED_TRACE(cases[at].why);
    EXPECT_EQ(statuses[at].kind, cases[at].kind);
    EXPECT_EQ(statuses[at].size, cases[at].size);
    const Status alone = files.status(urls[at]);
    EXPECT_EQ(alone.kind, cases[at].kind);
    EXPECT_EQ(alone.identity, statuses[at].identity);
    EXPECT_EQ(files.exists(urls[at]), cases[at].kind != EntryKind::none);
  }
  EXPECT_EQ(statuses[std::size(cases)].kind, EntryKind::folder) << "the root";
  for (std::size_t at = std::size(cases) + 1; at < urls.size(); ++at) EXPECT_EQ(statuses[at].kind, EntryKind::none);
}

TEST(Reading, takes_whole_plain_files_and_nothing_else) {
  TempTree tree;
  tree.content("grant/a", "0123456789").content("grant/empty", "").folder("grant/folder").fifo("grant/fifo");
  tree.link("grant/link", "a").link("grant/sub", ".").content("closed", "x");
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::home, tree.url("grant")));
  EXPECT_EQ(files.read(tree.url("grant/a"), 10), "0123456789");
  EXPECT_EQ(files.read(tree.url("grant/a"), 9), std::nullopt) << "never a part";
  EXPECT_EQ(files.read(tree.url("grant/empty"), 0), "");
  for (const char* path :
       {"grant/folder", "grant/fifo", "grant/link", "grant/sub/a", "grant/none", "grant/folder/.."}) {
    EXPECT_EQ(files.read(tree.url(path), 1000), std::nullopt) << path;
  }
  EXPECT_EQ(files.read(Url(), 1000), std::nullopt);
  EXPECT_EQ(files.read(Url::file("/"), 1000), std::nullopt);
  tree.mode("closed", 0);
  test::as_plain_user(tree, [&] { EXPECT_EQ(files.read(tree.url("closed"), 1000), std::nullopt); });
}

TEST(SpecialFiles, are_never_opened) {
  TempTree tree;
  tree.folder("t/X.app").fifo("t/fifo").fifo("t/X.app/fifo");
  const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  const std::string place = tree.path("t/socket");
  if (place.size() >= sizeof address.sun_path) GTEST_SKIP() << "the temporary folder's path is too long for a socket";
  std::memcpy(address.sun_path, place.c_str(), place.size());
  ASSERT_EQ(bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

  test::OpenWatch watch({tree.path("t/fifo"), tree.path("t/X.app/fifo"), place});
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::applications, tree.url()));
  Measurer measurer(files);
  EXPECT_EQ(files.list(tree.url("t")).size(), 3U);
  EXPECT_EQ(files.walk(tree.url("t"), Hidden::take, Packages::enter, want_all).size(), 4U);
  EXPECT_EQ(measurer.overall_size_of_direcory(tree.url("t")), 0);
  EXPECT_EQ(measurer.entries(tree.url("t"), Hidden::take).size(), 3U);
  for (const char* path : {"t/fifo", "t/socket", "t/X.app/fifo"}) {
    EXPECT_EQ(files.status(tree.url(path)).kind, EntryKind::other);
    EXPECT_EQ(measurer.overall_size_of_direcory(tree.url(path)), 0);
    EXPECT_EQ(files.read(tree.url(path), 1000), std::nullopt) << path;
    EXPECT_THAT(files.list(tree.url(path)), IsEmpty());
  }
  const Url all[] = {tree.url("t")};
  EXPECT_FALSE(files.remove(all).front().error);
  EXPECT_FALSE(watch.has_seen_any()) << "opening one wakes whoever waits at its other end";
}

TEST(Names, tell_applications_and_packages) {
  struct Case {
    const char* name;
    bool application;
    bool package;
  };
  const Case cases[] = {
      {"A.app", true, true},      {"A.APP", false, true},  {".app", false, false},
      {"..app", true, true},      {"app", false, false},   {"A.app.", false, false},
      {"A.app ", false, false},   {"A.b.app", true, true}, {"a.photoslibrary", false, true},
      {"a.XPC", false, true},     {"a.txt", false, false}, {"a.app~", false, false},
      {".x.bundle", false, true}, {"a.vst3", false, true}, {"a.vst4", false, false},
      {"", false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(is_application_name(c.name), c.application) << c.name;
    EXPECT_EQ(is_package_name(c.name), c.package) << c.name;
  }
  TempTree tree;
  tree.folder("A.app").file("B.app").link("C.app", "A.app").folder("D.bundle").folder("..app");
  const FileManager files;
  const std::pair<const char*, const char*> names[] = {{"A.app", "A"},     {"B.app", "B.app"},
                                                       {"C.app", "C.app"}, {"D.bundle", "D.bundle"},
                                                       {"..app", "."},     {"none.app", "none.app"}};
  for (const auto& [name, shown] : names) {
    EXPECT_EQ(files.display_name(tree.url(name)), shown);
    EXPECT_EQ(files.is_application(tree.url(name)), std::string(shown) != name) << name;
  }
}

}  // namespace
}  // namespace tarnby
