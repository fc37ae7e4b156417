#include "platform/bundle.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <string>

#include "platform/file_metadata.h"
#include "platform/file_times.h"
#include "tests/support/temp_tree.h"
#include "tools/bundle_files.h"

namespace tarnby {
namespace {

using test::TempTree;
using Values = PropertyList::Dictionary;

constexpr const char* list_place = "A.app/Contents/Info.plist";

std::string list_with(const char* key, const PropertyList& value) {
  return write_xml_property_list(Values{{key, value}});
}

TEST(Bundle, identifier_is_a_text_that_says_something) {
  const std::string sound = list_with("CFBundleIdentifier", "a.b");
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {sound, "a.b"},
      {binary_property_list(Values{{"CFBundleIdentifier", "a.b"}}), "a.b"},
      {list_with("CFBundleIdentifier", ""), std::nullopt},
      {list_with("CFBundleIdentifier", 5), std::nullopt},
      {sound.substr(0, 200), std::nullopt},
  };
  TempTree tree;
  for (const auto& [list, identifier] : cases) {
    tree.content(list_place, list);
    EXPECT_EQ(bundle_identifier(FileManager(), tree.url("A.app")), identifier) << list;
  }
}

TEST(Bundle, is_not_read_through_links) {
  for (const bool granted : {true, false}) {
    SCOPED_TRACE(granted ? "granted" : "not granted");
    TempTree tree;
    tree.content(list_place, list_with("CFBundleIdentifier", "a.b")).file("A.app/Contents/Resources/i.png");
    tree.link("link.app", "A.app").link("B.app/Contents/Info.plist", "../../A.app/Contents/Info.plist");
    tree.link("C.app/Contents", "../A.app/Contents").link("D.app/Contents/Resources/i.png", tree.path(list_place));
    tree.fifo("E.app/Contents/Info.plist").file("F.app").file("G.app/Contents/Info.plist", 16'000'001);
    FileManager files;
    ASSERT_TRUE(!granted || files.granted().add(Grant::applications, tree.url()));
    EXPECT_EQ(Bundle(files, tree.url("A.app")).identifier(), "a.b");
    EXPECT_EQ(Bundle(files, tree.url("A.app")).image_resource("i"), tree.url("A.app/Contents/Resources/i.png"));
    EXPECT_TRUE(Bundle(files, tree.url("A.app")).image_resource("../Info.plist").empty()) << "climbs out";
    for (const char* name : {"link.app", "B.app", "C.app", "D.app", "E.app", "F.app", "G.app", "none.app"}) {
      const Bundle bundle(files, tree.url(name));
      EXPECT_EQ(bundle.identifier(), std::nullopt) << name;
      EXPECT_TRUE(bundle.image_resource("i").empty()) << name;
    }
  }
}

TEST(FileTimes, an_application_was_used_when_its_executable_was_read_after_it_was_written) {
  struct Case {
    const char* executable;
    timespec used;
    timespec changed;
    std::optional<Moment> last_used;
  };
  const Case cases[] = {
      {"run", {1000, 2}, {1000, 1}, Moment(std::chrono::seconds(1000))},
      {"run", {1000, 0}, {2000, 0}, std::nullopt},
      {"../../../run", {2000, 0}, {1000, 0}, std::nullopt},
  };
  for (const Case& c : cases) {
    TempTree tree;
    tree.content(list_place, list_with("CFBundleExecutable", c.executable)).file("A.app/Contents/MacOS/run");
    tree.file("run");
    const timespec times[] = {c.used, c.changed};
    for (const char* path : {"A.app/Contents/MacOS/run", "run"}) {
      ASSERT_EQ(utimensat(AT_FDCWD, tree.path(path).c_str(), times, 0), 0);
    }
    const FileManager files;
    EXPECT_EQ(file_times(files)->last_used_date(tree.url("A.app")), c.last_used)
        << c.executable << " " << c.used.tv_sec;
  }
}

}  // namespace
}  // namespace tarnby
