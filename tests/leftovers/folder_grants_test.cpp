#include "leftovers/folder_grants.h"

#include <gtest/gtest.h>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;

TEST(FolderGrants, judges_the_real_folder_by_its_name_and_stores_it_whatever_it_is) {
  struct Case {
    const char* why;
    Grant grant;
    const char* picked;
    /// The real folder; empty when there is none.
    const char* resolved;
    bool valid;
  };
  const Case cases[] = {
      {"the user's own home", Grant::home, "ada", "ada", true},
      {"wherever it lies", Grant::home, "other/ada", "other/ada", true},
      {"somebody else's", Grant::home, "Shared", "Shared", false},
      {"letter case counts", Grant::home, "other/Ada", "other/Ada", false},
      {"a link to the home is the home", Grant::home, "home link", "ada", true},
      {"a link that only has its name is not", Grant::home, "links/ada", "Shared", false},
      {"the Applications folder", Grant::applications, "Applications", "Applications", true},
      {"one inside the home will do", Grant::applications, "ada/Applications", "ada/Applications", true},
      {"letter case counts here, too", Grant::applications, "other/applications", "other/applications", false},
      {"the home is no Applications folder", Grant::applications, "ada", "ada", false},
      {"a disk may have any name", Grant::disk, "Shared", "Shared", true},
      {"a folder that is gone", Grant::home, "gone/ada", "", false},
      {"a disk that is gone", Grant::disk, "gone", "", false},
      {"a file is no folder", Grant::home, "files/ada", "", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada(TestPlatform::Grants::none);
    for (const char* path : {"ada/Applications", "other/ada", "other/Ada", "other/applications", "Shared"}) {
      ada.tree.folder(path);
    }
    ada.tree.link("home link", "ada").link("links/ada", "../Shared").file("files/ada");
    FolderGrants grants(ada.platform);
    EXPECT_FALSE(grants.check(c.grant).is_valid) << "nothing is stored yet";
    EXPECT_TRUE(grants.store(c.grant, ada.url(c.picked)));
    const GrantState state = grants.check(c.grant);
    EXPECT_EQ(state.folder, *c.resolved == '\0' ? Url() : ada.url(c.resolved));
    EXPECT_EQ(state.is_valid, c.valid);

    PlainMainQueue queue;
    Platform next(ada.platform.session, nullptr, queue);
    EXPECT_EQ(next.bookmarks.resolve(c.grant), state.folder) << "the next run finds it, right or wrong";
  }
}

TEST(FolderGrants, no_home_is_right_for_a_user_without_a_name) {
  TestPlatform ada;
  Session nobody = ada.platform.session;
  nobody.user_name.clear();
  PlainMainQueue queue;
  Platform platform(nobody, nullptr, queue);
  FolderGrants grants(platform);
  for (const Url& folder : {ada.url("ada"), Url::file("/")}) {
    EXPECT_TRUE(grants.store(Grant::home, folder));
    const GrantState state = grants.check(Grant::home);
    EXPECT_EQ(state.folder, folder);
    EXPECT_FALSE(state.is_valid) << "not even the root, which has no name either";
  }
}

}  // namespace
}  // namespace tarnby
