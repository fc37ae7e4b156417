#include "files/granted_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::TempTree;

/// True when `handle` leads to where the path leads by itself.
bool leads_to(const Descriptor& handle, const std::string& path) {
  struct stat expected = {};
  EXPECT_EQ(stat(path.c_str(), &expected), 0) << path;
  return handle && status_of(handle.get()).identity == Identity{expected.st_dev, expected.st_ino};
}

TEST(GrantedFolders, opens_below_a_grant_without_links_and_elsewhere_as_a_person_would) {
  struct Case {
    const char* why;
    std::string path;
    std::string leads_to;  // empty: nowhere
  };
  const Case cases[] = {
      {"below the grant", "grant/a/b", "grant/a/b"},
      {"a link at the end", "grant/link", ""},
      {"a link on the way", "grant/link/b", ""},
      {"a link that leads back into the grant is a link all the same", "grant/a/up/a", ""},
      {"a file on the way", "grant/file/b", ""},
      {"a FIFO", "grant/fifo", ""},
      {"up and down again", "grant/a/../a/b", ""},
      {"up outside any grant", "other/../other", ""},
      {"a link on the way outside", "way/b", "other/b"},
      {"a link at the end outside", "way", ""},
      {"a link below the grant, by another path, is followed on the way only", "way_in/link/b", "other/b"},
      {"a link at the end, by another path", "way_in/link", ""},
  };
  TempTree tree;
  tree.folder("grant/a/b").link("grant/link", "../other").link("grant/a/up", "..").file("grant/file");
  tree.fifo("grant/fifo").folder("other/b").link("way", "other").link("way_in", "grant");
  GrantedFolders granted;
  ASSERT_TRUE(granted.add(Grant::home, tree.url("grant")));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Descriptor handle = granted.open_path_handle(tree.url(c.path));
    const Descriptor folder = granted.open_folder(tree.url(c.path));
    EXPECT_EQ(bool(handle), !c.leads_to.empty());
    EXPECT_EQ(bool(folder), !c.leads_to.empty());
    if (c.leads_to.empty()) continue;
    EXPECT_TRUE(leads_to(handle, tree.path(c.leads_to)));
    EXPECT_TRUE(leads_to(folder, tree.path(c.leads_to)));
  }
  for (const char* path : {"way_in", "grant/file", "grant/fifo", "none", "grant/.."}) {
    EXPECT_FALSE(granted.add(Grant::disk, tree.url(path))) << path << " is no folder to grant";
  }
}

TEST(GrantedFolders, stay_the_folder_that_was_granted_until_it_is_granted_anew) {
  TempTree tree;
  tree.folder("disk/grant/old");
  GrantedFolders granted;
  ASSERT_TRUE(granted.add(Grant::home, tree.url("disk/grant")));
  ASSERT_TRUE(granted.add(Grant::disk, tree.url("disk")));
  ASSERT_EQ(rename(tree.path("disk/grant").c_str(), tree.path("disk/moved").c_str()), 0);
  tree.folder("disk/grant/new");
  EXPECT_TRUE(leads_to(granted.open_path_handle(tree.url("disk/grant/old")), tree.path("disk/moved/old")))
      << "the nearest";
  EXPECT_FALSE(granted.open_path_handle(tree.url("disk/grant/new"))) << "put in its place by somebody else";
  ASSERT_TRUE(granted.add(Grant::home, tree.url("disk/grant")));
  EXPECT_TRUE(leads_to(granted.open_path_handle(tree.url("disk/grant/new")), tree.path("disk/grant/new")))
      << "the user's word";
  EXPECT_FALSE(granted.open_path_handle(tree.url("disk/grant/old")));
}

}  // namespace
}  // namespace tarnby
