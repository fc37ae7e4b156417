#include "leftovers/folder_grants.h"

#include <gtest/gtest.h>

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
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    test::TestPlatform ada(test::TestPlatform::Grants::none);
    ada.tree.folder("ada/Applications").folder("other/ada").folder("Ada").folder("Shared").file("files/ada");
    ada.tree.link("home link", "ada").link("links/ada", "../Shared");
    FolderGrants grants(ada.platform);
    EXPECT_TRUE(grants.store(c.grant, ada.url(c.picked)));
    EXPECT_EQ(grants.check(c.grant).folder, c.resolved.empty() ? Url() : ada.url(c.resolved));
    EXPECT_EQ(grants.check(c.grant).is_valid, c.valid);
  }
}

}  // namespace
}  // namespace tarnby
