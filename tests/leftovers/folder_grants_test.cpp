#include "leftovers/folder_grants.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/platform.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

TEST(FolderGrants, judges_the_real_folder_by_its_name_and_stores_it_whatever_it_is) {
  struct Case {
    const char* why;
    Grant grant;
    const char* picked;
    /// The real folder; empty when there is none.
    std::string resolved;
    bool valid;
  };
  const Case cases[] = {
      {"the user's own home, wherever it lies", Grant::home, "other/ada", "other/ada", true},
      {"letter case counts", Grant::home, "Ada", "Ada", false},
      {"a link to the home is the home", Grant::home, "home link", "ada", true},
      {"a link that only has its name is not", Grant::home, "links/ada", "Shared", false},
      {"any folder Applications will do", Grant::applications, "ada/Applications", "ada/Applications", true},
      {"a file is no folder", Grant::home, "files/ada", "", false},
      {"the account's own, whatever its name", Grant::home, "u1000", "u1000", true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    test::TestPlatform user(test::TestPlatform::Grants::none);
    user.tree.folder("ada/Applications").folder("other/ada").folder("Ada").folder("Shared").file("files/ada");
    user.tree.folder("u1000");
    const_cast<Session&>(user.platform.session).account_home = user.url("u1000");
    user.tree.link("home link", "ada").link("links/ada", "../Shared");
    FolderGrants grants(user.platform);
    EXPECT_TRUE(grants.store(c.grant, user.url(c.picked)));
    EXPECT_EQ(grants.check(c.grant).folder, c.resolved.empty() ? Url() : user.url(c.resolved));
    EXPECT_EQ(grants.check(c.grant).is_valid, c.valid);
  }
}

TEST(FolderGrants, refuses_a_home_that_belongs_to_somebody_else) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  test::TestPlatform user;
  constexpr uid_t somebody_else = 12345;
  ASSERT_EQ(chown(user.tree.path("ada").c_str(), somebody_else, static_cast<gid_t>(-1)), 0);
  EXPECT_EQ(FolderGrants(user.platform).check(Grant::home).fault, GrantFault::other_owner);
}

}  // namespace
}  // namespace tarnby
