#include "leftovers/full_disk_access.h"

#include <gtest/gtest.h>

#include "tests/support/open_watch.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using Version = std::optional<SystemVersion>;

constexpr SystemVersion mojave = {10, 14};
constexpr SystemVersion catalina = {10, 15};

TEST(FullDiskAccess, tells_by_the_file_of_its_version_and_writes_down_only_what_it_knows) {
  struct Case {
    const char* why;
    Version version;
    /// Of the two probe files; -1: not there.
    int newer_mode;
    int older_mode;
    DiskAccess access;
    /// What "PrivacyFullDisk" holds afterwards, if it was true before and if it was false.
    bool from_true;
    bool from_false;
  };
  const Case cases[] = {
      {"readable", catalina, 0644, -1, DiskAccess::granted, true, true},
      {"unreadable", catalina, 0, -1, DiskAccess::denied, false, false},
      {"a later one is like it", Version({26, 0}), 0, 0644, DiskAccess::denied, false, false},
      {"an older one reads another file", mojave, 0, 0644, DiskAccess::granted, true, true},
      {"never used", catalina, -1, 0, DiskAccess::unknown, true, false},
      {"no switches, readable", {}, 0644, -1, DiskAccess::granted, true, true},
      {"no switches to deny it", {}, 0, -1, DiskAccess::unknown, true, false},
  };
  for (const Case& c : cases) {
    for (const bool before : {true, false}) {
      SCOPED_TRACE(c.why);
      TestPlatform user;
      const auto put = [&](const char* path, int mode) {
        if (mode >= 0) user.tree.content(path, "").mode(path, static_cast<unsigned>(mode));
      };
      put("ada/Library/Safari/CloudTabs.db", c.newer_mode);
      put("ada/Library/Safari/Bookmarks.plist", c.older_mode);
      user.settings.set_boolean("PrivacyFullDisk", before);
      test::as_plain_user(user.tree, [&] {
        EXPECT_EQ(FullDiskAccess(user.platform, c.version).test(), c.access);
        EXPECT_EQ(user.settings.boolean("PrivacyFullDisk"), before ? c.from_true : c.from_false);
      });
    }
  }
  TestPlatform ungranted(TestPlatform::Grants::none);
  EXPECT_FALSE(FullDiskAccess(ungranted.platform, SystemVersion{10, 13}).is_guarded());
  EXPECT_TRUE(FullDiskAccess(ungranted.platform, mojave).is_guarded());
  EXPECT_EQ(FullDiskAccess(ungranted.platform, catalina).test(), DiskAccess::unknown) << "the root is no home";
}

TEST(FullDiskAccess, has_the_user_asked_for_each_personal_folder_once) {
  TestPlatform user;
  const std::string home = user.tree.path("ada/");
  user.tree.folder("ada/Desktop").folder("ada/Documents").folder("ada/Pictures/Photos Library.photoslibrary");
  test::OpenWatch desktop(home + "Desktop");
  test::OpenWatch documents(home + "Documents");
  test::OpenWatch photos(home + "Pictures/Photos Library.photoslibrary");
  FullDiskAccess(user.platform, catalina).privacy_for_directories();
  EXPECT_TRUE(desktop.has_seen_any() && documents.has_seen_any() && photos.has_seen_any());
  EXPECT_TRUE(user.settings.boolean("PrivacyAccess")) << "although there are no Downloads";
}

TEST(FullDiskAccess, knows_a_file_in_a_folder_that_is_guarded_as_well) {
  TestPlatform user;
  user.tree.folder("ada/Library/Safari/CloudTabs.db").folder("ada/Guarded/x").mode("ada/Guarded", 0);
  EXPECT_EQ(FullDiskAccess(user.platform, catalina).test(), DiskAccess::unknown) << "a folder is no probe";
  test::as_plain_user(user.tree, [&] {
    EXPECT_EQ(user.files.readability(user.url("ada/Guarded/x/y")), Readability::absent) << "not even told of";
  });
}

}  // namespace
}  // namespace tarnby
