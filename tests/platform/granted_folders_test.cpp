#include "platform/granted_folders.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::TempTree;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// True when `place` leads to where the path leads by itself.
bool leads_to(const Descriptor& place, const std::string& path) {
  struct stat expected = {};
  EXPECT_EQ(stat(path.c_str(), &expected), 0) << path;
  return place && status_of(place.get()).identity == Identity{expected.st_dev, expected.st_ino};
}

void move(const TempTree& tree, const char* from, const char* to) {
  ASSERT_EQ(rename(tree.path(from).c_str(), tree.path(to).c_str()), 0);
}

TEST(GrantedFolders, opens_below_a_grant_without_links_and_elsewhere_as_a_person_would) {
  struct Case {
    const char* why;
    std::string path;
    std::string leads_to;  // empty: nowhere
  };
  const Case cases[] = {
      {"the grant", "grant", "grant"},
      {"below it", "grant/a/b", "grant/a/b"},
      {"a link at the end", "grant/link", ""},
      {"a link on the way", "grant/link/b", ""},
      {"a link to itself", "grant/a/self/b", ""},
      {"a link that leads back into the grant is a link all the same", "grant/a/up/a", ""},
      {"a file at the end", "grant/file", ""},
      {"a file on the way", "grant/file/b", ""},
      {"a FIFO", "grant/fifo", ""},
      {"missing", "grant/none/b", ""},
      {"up and down again", "grant/a/../a/b", ""},
      {"up at the end", "grant/a/..", ""},
      {"up outside any grant", "other/../other", ""},
      {"outside", "other/b", "other/b"},
      {"a link on the way outside", "way/b", "other/b"},
      {"a link at the end outside", "way", ""},
      {"to the grant by another path", "way_in/a", "grant/a"},
      {"a link below the grant, by another path, is followed on the way only", "way_in/link/b", "other/b"},
      {"a link at the end, by another path", "way_in/link", ""},
      {"above the grant", "", ""},
  };
  TempTree tree;
  tree.folder("grant/a/b").link("grant/link", "../other").link("grant/a/self", "self").link("grant/a/up", "..");
  tree.file("grant/file").fifo("grant/fifo").folder("other/b").link("way", "other").link("way_in", "grant");
  GrantedFolders granted;
  ASSERT_TRUE(granted.add(Grant::home, tree.url("grant")));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Descriptor place = granted.open_place(tree.url(c.path));
    const Descriptor folder = granted.open_folder(tree.url(c.path));
    if (c.path.empty()) {
      EXPECT_TRUE(leads_to(place, tree.path()));
    } else if (c.leads_to.empty()) {
      EXPECT_FALSE(place);
      EXPECT_FALSE(folder);
    } else {
      EXPECT_TRUE(leads_to(place, tree.path(c.leads_to)));
      EXPECT_TRUE(leads_to(folder, tree.path(c.leads_to)));
    }
  }
  EXPECT_FALSE(granted.open_parent(tree.url("grant/link/b")));
  EXPECT_TRUE(leads_to(granted.open_parent(tree.url("grant/link")), tree.path("grant")));
  EXPECT_TRUE(leads_to(granted.open_parent(tree.url("way/b")), tree.path("other"))) << "above what is asked for";
  EXPECT_FALSE(granted.open_place(Url()));
  EXPECT_FALSE(granted.open_place(Url::text("grant")));
  EXPECT_TRUE(leads_to(granted.open_folder(Url::file("/")), "/"));
}

TEST(GrantedFolders, hold_what_lies_strictly_below_them) {
  const TempTree tree;
  GrantedFolders granted;
  EXPECT_FALSE(granted.holds(tree.url("a")));
  ASSERT_TRUE(granted.add(Grant::home, tree.url()));
  EXPECT_TRUE(granted.holds(tree.url("a")));
  EXPECT_TRUE(granted.holds(tree.url("a/..b/c..")));
  EXPECT_FALSE(granted.holds(tree.url()));
  EXPECT_FALSE(granted.holds(tree.url().parent()));
  EXPECT_FALSE(granted.holds(Url::file(tree.path() + "2")));
  EXPECT_FALSE(granted.holds(tree.url("a/../b")));
  EXPECT_FALSE(granted.holds(tree.url("..")));
  EXPECT_FALSE(granted.holds(Url()));
  EXPECT_FALSE(granted.holds(Url::text("a")));
  ASSERT_TRUE(granted.add(Grant::disk, Url::file("/")));
  EXPECT_TRUE(granted.holds(tree.url())) << "within another grant";
  EXPECT_FALSE(granted.holds(Url::file("/")));
}

TEST(GrantedFolders, take_only_folders_that_can_be_opened) {
  TempTree tree;
  tree.folder("real").link("link", "real").file("file").fifo("fifo");
  GrantedFolders granted;
  for (const char* path : {"link", "file", "fifo", "none", "real/.."}) {
    EXPECT_FALSE(granted.add(Grant::home, tree.url(path))) << path;
    EXPECT_FALSE(granted.holds(tree.url(path).appending("below"))) << path;
  }
  EXPECT_FALSE(granted.add(Grant::home, Url()));
  EXPECT_FALSE(granted.add(Grant::home, Url::text("real")));
}

TEST(GrantedFolders, stay_the_folder_that_was_granted_until_it_is_granted_anew) {
  TempTree tree;
  tree.folder("grant/old");
  GrantedFolders granted;
  ASSERT_TRUE(granted.add(Grant::home, tree.url("grant")));
  move(tree, "grant", "moved");
  tree.folder("grant/new").folder("moved/added");
  EXPECT_TRUE(leads_to(granted.open_place(tree.url("grant/old")), tree.path("moved/old")));
  EXPECT_FALSE(granted.open_place(tree.url("grant/new"))) << "put in its place by whomever";
  ASSERT_TRUE(granted.add(Grant::home, tree.url("grant")));
  EXPECT_TRUE(leads_to(granted.open_place(tree.url("grant/new")), tree.path("grant/new"))) << "the user's word";
  EXPECT_FALSE(granted.open_place(tree.url("grant/old")));

  GrantedFolders others;
  ASSERT_TRUE(others.add(Grant::home, tree.url("grant")));
  move(tree, "grant", "gone");
  tree.link("grant", "moved");
  EXPECT_FALSE(others.add(Grant::home, tree.url("grant"))) << "a link took its place";
}

TEST(GrantedFolders, the_nearest_grant_opens_what_lies_in_several) {
  TempTree tree;
  tree.folder("disk/home/a");
  GrantedFolders granted;
  ASSERT_TRUE(granted.add(Grant::home, tree.url("disk/home")));
  ASSERT_TRUE(granted.add(Grant::disk, tree.url("disk")));
  move(tree, "disk/home", "disk/renamed");
  tree.link("disk/home", "..");
  EXPECT_TRUE(leads_to(granted.open_place(tree.url("disk/home/a")), tree.path("disk/renamed/a")));
}

TEST(GrantedFolders, protect_the_line_from_the_root_to_each_grant) {
  TempTree tree;
  tree.folder("a/b/home/x/inner");
  GrantedFolders granted;
  const auto names_in = [&](const char* folder) {
    std::vector<std::string> names;
    for (const ProtectedFolder& row : granted.protected_folders()) {
      if (row.url == tree.url(folder)) names.insert(names.end(), row.names.begin(), row.names.end());
    }
    return names;
  };
  const auto is_or_holds_grant = [&](const char* folder) {
    const Descriptor handle(open(tree.path(folder).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return granted.is_or_holds_grant(status_of(handle.get()).identity);
  };
  EXPECT_THAT(names_in("a"), IsEmpty());
  ASSERT_TRUE(granted.add(Grant::applications, tree.url("a/b/home")));
  ASSERT_TRUE(granted.add(Grant::applications, tree.url("a/b/home/x/inner")));
  EXPECT_THAT(names_in("a"), testing::Each("b"));
  EXPECT_THAT(names_in("a/b/home"), UnorderedElementsAre("x"));
  EXPECT_THAT(names_in("a/b/home/x"), UnorderedElementsAre("inner"));
  EXPECT_THAT(names_in("a/b/home/x/inner"), IsEmpty());
  for (const char* folder : {"", "a", "a/b", "a/b/home", "a/b/home/x", "a/b/home/x/inner"}) {
    EXPECT_TRUE(is_or_holds_grant(folder)) << folder;
  }
  tree.folder("a/b/home/x/inner/y").folder("a/c");
  EXPECT_FALSE(is_or_holds_grant("a/b/home/x/inner/y"));
  EXPECT_FALSE(is_or_holds_grant("a/c"));
  EXPECT_FALSE(granted.is_or_holds_grant({})) << "nothing is no folder";
}

}  // namespace
}  // namespace tarnby
