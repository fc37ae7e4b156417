#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "places/mozilla_profiles.h"
#include "places/trash_info.h"

namespace tarnby {
namespace {

TEST(TrashInfo, gives_the_bytes_of_the_path_and_the_moment) {
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);  // NOLINT(concurrency-mt-unsafe): these tests have one thread
  tzset();
  struct Case {
    const char* why;
    std::string file;
    std::string path;
    std::int64_t seconds;
  };
  const Case cases[] = {
      {"as gio writes it", "[Trash Info]\nPath=/h/%C3%A4%20b%25.txt\nDeletionDate=2024-02-29T12:00:00\n",
       "/h/\xC3\xA4 b%.txt", 1709204400},
      {"a newline, and bytes that are not UTF-8", "[Trash Info]\nPath=/h/a%0Ab%ff\nDeletionDate=2024-07-01T00:00:00\n",
       "/h/a\nb\xFF", 1719784800},
      {"what is no escape stays", "[Trash Info]\nPath=/h/100%/%zz/%4\n", "/h/100%/%zz/%4", -1},
      {"the first counts", "[Trash Info]\nPath=/a\nPath=/b\nDeletionDate=x\nDeletionDate=2024-02-29T12:00:00\n", "/a",
       -1},
      {"other groups say nothing", "[Other]\nPath=/a\nDeletionDate=2024-02-29T12:00:00\n", "", -1},
      {"a NUL", "[Trash Info]\nPath=/a%00b\n", "", -1},
      {"a relative path", "[Trash Info]\nPath=../a\n", "", -1},
      {"no such day", "[Trash Info]\nPath=/a\nDeletionDate=2023-02-29T12:00:00\n", "/a", -1},
      {"no such month", "[Trash Info]\nPath=/a\nDeletionDate=2023-13-01T12:00:00\n", "/a", -1},
      {"a date with a zone", "[Trash Info]\nPath=/a\nDeletionDate=2024-02-29T12:00:00Z\n", "/a", -1},
      {"longer than any", "[Trash Info]\nPath=/a\n" + std::string(100'000, '#'), "", -1},
      {"nothing", "", "", -1},
  };
  for (const Case& c : cases) {
    const TrashInfo info = read_trash_info(c.file);
    EXPECT_EQ(info.original.path(), c.path) << c.why;
    EXPECT_EQ(info.deleted ? info.deleted->time_since_epoch().count() : -1, c.seconds) << c.why;
  }
  unsetenv("TZ");  // NOLINT(concurrency-mt-unsafe): as above
  tzset();
}

TEST(MozillaProfiles, are_folders_below_their_base_each_once) {
  const Url base = Url::file("/h/.mozilla/firefox");
  const auto found = mozilla_profiles(base,
                                      "[Profile1]\nName=default\nIsRelative=1\nPath=a.default\nDefault=1\n\n"
                                      "[Profile0]\nName=default-esr\nIsRelative=1\nPath=b.default-esr\n\n"
                                      "[Profile2]\nName=absolute\nIsRelative=0\nPath=/h/.mozilla/firefox/c/d\n"
                                      "[Profile3]\nPath=/h/elsewhere\n[Profile4]\nPath=../../.ssh\n"
                                      "[Profile5]\nPath=e/../../..\n[Profile6]\nPath=.\n[Profile7]\nPath=\n[Profile8]\n"
                                      "[Profile9]\nPath=/h/.mozilla/firefox\n[Profile10]\nPath=/h/.mozilla/firefox2/x\n"
                                      "[General]\nVersion=2\nPath=general\n[Install3B60]\nDefault=b.default-esr\n",
                                      "[3B60]\nDefault=b.default-esr\nLocked=1\n[77AA]\nDefault=f.only-installed\n");
  const std::vector<std::string> folders = {"a.default", "b.default-esr", "c/d", "f.only-installed"};
  ASSERT_EQ(found.size(), folders.size());
  for (std::size_t at = 0; at < folders.size(); ++at) EXPECT_EQ(found[at].folder, base.appending(folders[at]));
  EXPECT_EQ(found[1].name, "default-esr");
  EXPECT_EQ(found[3].name, "");
  EXPECT_FALSE(found[0].is_used) << "Default=1 stands beside the one that is not used";
  EXPECT_TRUE(found[1].is_used);
  EXPECT_TRUE(mozilla_profiles(base, "", "").empty());
  EXPECT_TRUE(mozilla_profiles(base, std::string(2U << 20U, 'a'), "\xff\xfe").empty());
}

}  // namespace
}  // namespace tarnby
