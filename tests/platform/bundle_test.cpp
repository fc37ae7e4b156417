#include "platform/bundle.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <string>

#include "platform/file_metadata.h"
#include "platform/linux/file_times.h"
#include "tools/bundle_files.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using namespace std::chrono_literals;
using test::TempTree;
using Values = PropertyList::Dictionary;

constexpr const char* list_place = "A.app/Contents/Info.plist";

std::string list_with(const char* key, const PropertyList& value) {
  return write_xml_property_list(Values{{key, value}});
}

TEST(Bundle, identifier_is_a_text_that_says_something) {
  struct Case {
    const char* why;
    std::string list;
    std::optional<std::string> identifier;
  };
  const Case cases[] = {
      {"as it should be", list_with("CFBundleIdentifier", "a.b"), "a.b"},
      {"in the binary form", binary_property_list(Values{{"CFBundleIdentifier", "a.b"}}), "a.b"},
      {"none", list_with("CFBundleName", "A"), std::nullopt},
      {"empty", list_with("CFBundleIdentifier", ""), std::nullopt},
      {"a number", list_with("CFBundleIdentifier", 5), std::nullopt},
      {"white space is a text", list_with("CFBundleIdentifier", " "), " "},
      {"deeper down is not the bundle's", list_with("a", Values{{"CFBundleIdentifier", "a.b"}}), std::nullopt},
      {"a list that is no dictionary", write_xml_property_list("CFBundleIdentifier"), std::nullopt},
      {"cut off", list_with("CFBundleIdentifier", "a.b").substr(0, 200), std::nullopt},
      {"nothing", "", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TempTree tree;
    tree.content(list_place, c.list);
    EXPECT_EQ(bundle_identifier(FileManager(), tree.url("A.app")), c.identifier);
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
    for (const char* name : {"link.app", "B.app", "C.app", "D.app", "E.app", "F.app", "G.app", "none.app"}) {
      const Bundle bundle(files, tree.url(name));
      EXPECT_EQ(bundle.identifier(), std::nullopt) << name;
      EXPECT_TRUE(bundle.image_resource("i").empty()) << name;
    }
    EXPECT_EQ(Bundle(files, Url()).identifier(), std::nullopt);
  }
}

TEST(Bundle, finds_an_image_by_its_name_then_by_the_best_kind_there_is) {
  struct Case {
    const char* why;
    std::vector<std::string> there;
    std::string name;
    std::string found;
  };
  const Case cases[] = {
      {"with its extension", {"i.png", "i.icns"}, "i.png", "i.png"},
      {"without: the best kind", {"i.pdf", "i.png", "i.icns"}, "i", "i.icns"},
      {"without: the next best", {"i.ico", "i.tif", "i.tiff", "i.jpg"}, "i", "i.tiff"},
      {"a file of just that name is not meant", {"i"}, "i", ""},
      {"what looks like an extension may be part of the name", {"i.2.icns"}, "i.2", "i.2.icns"},
      {"unless it is there as it is", {"i.2", "i.2.icns"}, "i.2", "i.2"},
      {"in a folder of its own", {"sub/i.icns"}, "sub/i", "sub/i.icns"},
      {"a dot in that folder's name is no extension", {"v.1/i.icns"}, "v.1/i", "v.1/i.icns"},
      {"empty", {".icns"}, "", ""},
      {"climbing out", {"i.icns"}, "../Resources/i.icns", ""},
      {"climbing out of the bundle", {"i.icns"}, "../../../secret.png", ""},
      {"a folder is no image", {"i.icns/x", "i.png"}, "i.icns", ""},
      {"a folder is no image, the next may be", {"i.icns/x", "i.png"}, "i", "i.png"},
      {"another kind of file", {"i.txt"}, "i", ""},
      {"cut off by a NUL", {"i.icns"}, std::string("i.icns\0x", 8), ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TempTree tree;
    tree.folder("A.app/Contents/Resources").file("secret.png");
    for (const std::string& file : c.there) tree.file("A.app/Contents/Resources/" + file);
    const FileManager files;
    const Url found = Bundle(files, tree.url("A.app")).image_resource(c.name);
    EXPECT_EQ(found, c.found.empty() ? Url() : tree.url("A.app/Contents/Resources/" + c.found));
  }
}

void set_times(const TempTree& tree, const char* path, timespec used, timespec changed) {
  const timespec times[] = {used, changed};
  ASSERT_EQ(utimensat(AT_FDCWD, tree.path(path).c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

TEST(FileTimes, an_application_was_used_when_its_executable_was_read_after_it_was_written) {
  struct Case {
    const char* why;
    std::string executable;
    timespec used;
    timespec changed;
    std::optional<Moment> last_used;
  };
  const Case cases[] = {
      {"read later", "run", {2000, 0}, {1000, 0}, Moment(2000s)},
      {"read within the same second", "run", {1000, 2}, {1000, 1}, Moment(1000s)},
      {"never read since", "run", {1000, 0}, {1000, 0}, std::nullopt},
      {"written later", "run", {1000, 0}, {2000, 0}, std::nullopt},
      {"before the epoch", "run", {-5, 500}, {-10, 0}, Moment(-5s)},
      {"none named", "", {2000, 0}, {1000, 0}, std::nullopt},
      {"not there", "walk", {2000, 0}, {1000, 0}, std::nullopt},
      {"the folder is no executable", ".", {2000, 0}, {1000, 0}, std::nullopt},
      {"nor is the one above", "..", {2000, 0}, {1000, 0}, std::nullopt},
      {"outside the bundle", "../../../run", {2000, 0}, {1000, 0}, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TempTree tree;
    tree.content(list_place, list_with("CFBundleExecutable", c.executable));
    tree.file("A.app/Contents/MacOS/run").file("run");
    for (const char* path : {"A.app/Contents/MacOS/run", "A.app/Contents/MacOS", "A.app/Contents", "run"}) {
      set_times(tree, path, c.used, c.changed);
    }
    const FileManager files;
    EXPECT_EQ(file_times(files)->last_used_date(tree.url("A.app")), c.last_used);
  }
}

TEST(FileTimes, the_content_changed_when_the_bundle_folder_did) {
  TempTree tree;
  tree.folder("A.app/Contents").file("file.app").link("link.app", "A.app");
  set_times(tree, "A.app/Contents", {9000, 0}, {9000, 0});
  set_times(tree, "A.app", {9000, 0}, {1234, 999'999'999});
  const FileManager files;
  const auto times = file_times(files);
  EXPECT_EQ(times->content_change_date(tree.url("A.app")), Moment(1234s));
  for (const char* name : {"file.app", "link.app", "none.app", "A.app/.."}) {
    EXPECT_EQ(times->content_change_date(tree.url(name)), std::nullopt) << name;
  }
  EXPECT_EQ(times->content_change_date(Url()), std::nullopt);
}

TEST(DaysBetween, counts_whole_days_downwards) {
  const Moment start{1'000'000s};
  EXPECT_EQ(days_between(start, start), 0);
  EXPECT_EQ(days_between(start, start + 24h - 1s), 0);
  EXPECT_EQ(days_between(start, start + 24h), 1);
  EXPECT_EQ(days_between(start, start + 48h - 1s), 1);
  EXPECT_EQ(days_between(start, start - 1s), -1) << "a clock that was set back is no reason to call a thing old";
  EXPECT_EQ(days_between(start, start - 24h), -1);
}

}  // namespace
}  // namespace tarnby
