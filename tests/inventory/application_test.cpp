#include "inventory/application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAre;

using Paths = std::vector<std::string>;

constexpr const char* none = "(none)";

TEST(Application, describes_a_bundle_by_its_list) {
  struct Case {
    const char* why;
    PropertyList::Dictionary list;
    /// Name for labels, identifier, its last part, name, executable, company, version, log.
    Paths texts;
  };
  const std::string empty = "empty_string";
  const Case cases[] = {
      {"nothing known: the fallbacks", {}, {empty, none, empty, empty, empty, none, "1.0", "null_string"}},
      {"everything known",
       {{"CFBundleIdentifier", "com.example.editor.pro"},
        {"CFBundleName", "My Great App"},
        {"CFBundleExecutable", "editor"},
        {"CFBundleShortVersionString", "2.1"},
        {"CFBundleVersion", "210"},
        {"LogName", "editor.log"}},
       {"My_Great_App", "com.example.editor.pro", "pro", "My Great App", "editor", "example", "2.1", "editor.log"}},
      {"an identifier of one part is its own company, the build number stands in for a version that is no text",
       {{"CFBundleIdentifier", "editor"}, {"CFBundleShortVersionString", 2.5}, {"CFBundleVersion", "210"}},
       {empty, "editor", "editor", empty, empty, "editor", "210", "null_string"}},
      {"an empty identifier is none, other empty texts stay",
       {{"CFBundleIdentifier", ""}, {"CFBundleName", ""}, {"CFBundleShortVersionString", ""}, {"LogName", ""}},
       {"", none, empty, "", empty, none, "", ""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    user.tree.content("Applications/Writer.app/Contents/Info.plist", write_xml_property_list(c.list));
    const auto item = Application(user.platform).application(user.url("Applications/Writer.app"));
    const Paths texts = {item->label_name,       item->bundle.value_or(none), item->bundle_name,
                         item->bundle_name_info, item->executable_info,       item->company_name.value_or(none),
                         item->app_version,      item->log_file_name};
    EXPECT_EQ(texts, c.texts);
    EXPECT_EQ(item->label, "Writer");
  }
}

TEST(Application, finds_the_icon_that_the_list_names) {
  struct Case {
    const char* why;
    const char* value;
    Paths resources;
    const char* icon;
  };
  const Case cases[] = {
      {"a bare name gets the usual extensions, icns first", "App", {"App.png", "App.icns"}, "App.icns"},
      {"what begins with .i is cut off, from the first dot on", "App.v2.icns", {"App.v2.icns", "App.tiff"}, "App.tiff"},
      {"capitals are not .i", "App.ICNS", {"App.ICNS", "App.icns"}, "App.ICNS"},
      {"nothing is left of .icns", ".icns", {".icns"}, none},
      {"not outside the resources", "../../outside", {"x"}, none},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform user;
    const std::string resources = "A.app/Contents/Resources/";
    user.application("A.app", BundleValues{{}, {}, {}, c.value, {}}).tree.file("A.app/outside.icns");
    for (const std::string& name : c.resources) user.tree.file(resources + name);
    const Image icon = Application(user.platform).application(user.url("A.app"))->app_icon;
    EXPECT_EQ(icon ? user.relative(icon.url) : none, c.icon == none ? none : resources + c.icon);
  }
}

/// The paths of what the inventory lists, in order.
Paths listed(TestPlatform& user, const std::map<const char*, std::int64_t>& settings = {}) {
  for (const auto& [key, value] : settings) user.settings.set_integer(key, value);
  Application inventory(user.platform);
  inventory.installedApplications([](bool done) { EXPECT_TRUE(done); });
  Paths paths;
  for (const auto& item : *inventory.items) paths.push_back(user.relative(item->url));
  return paths;
}

TEST(Application, lists_what_lies_where_applications_belong_sorted_by_label) {
  TestPlatform user;
  for (const char* path :
       {"Applications/b.app", "Applications/V/C.app", "Applications/V/Sub/A.app", "Applications/V/Sub/Deep/No.app",
        "Applications/b.app/Contents/No.app", "Applications/Utilities/No.app", "Applications/Utilities/Tools/E.app",
        "Applications/Utilities/Tools/Sub/F.app", "Applications/Utilities/Tools/Sub/Deep/No.app",
        "Applications/V/Utilities/G.app", "Applications/.hidden/No.app", "ada/Applications/B.app",
        "ada/Applications/Sub/I.app", "ada/Documents/deep/J.app", "ada/Documents/deep/J.app/Contents/No.app",
        "ada/dev/L.framework/No.app", "ada/.cache/K.app", "ada/No.APP"}) {
    user.application(path, "com.example.app");
  }
  user.tree.file("Applications/File.app").link("Applications/Link.app", "b.app").link("Applications/Linked", "V");
  const Paths usual = {"Applications/V/Sub/A.app", "Applications/b.app", "ada/Applications/B.app",
                       "Applications/V/C.app", "Applications/V/Utilities/G.app"};
  EXPECT_EQ(listed(user), usual) << "two folders deep below Applications; in the home only what is in its own";
  EXPECT_EQ(listed(user, {{"includeUtilities", 2}, {"include_user_apps", -1}}), usual) << "only 1 asks for more";
  EXPECT_THAT(listed(user, {{"includeUtilities", 1}}),
              ElementsAre(usual[0], usual[1], usual[2], usual[3], "Applications/Utilities/Tools/E.app",
                          "Applications/Utilities/Tools/Sub/F.app", usual[4]))
      << "Utilities gives those in its folders, never those directly in it";
  EXPECT_THAT(listed(user, {{"includeUtilities", 0}, {"include_user_apps", 1}}),
              ElementsAre(usual[0], usual[2], usual[1], usual[2], usual[3], usual[4], "ada/Applications/Sub/I.app",
                          "ada/Documents/deep/J.app", "ada/.cache/K.app"))
      << "the user's own: hidden ones, none inside a package or framework, and those of ~/Applications twice";

  TestPlatform nobody(TestPlatform::Grants::none);
  nobody.application("Applications/A.app", "com.example.a").application("ada/Applications/B.app", "com.example.b");
  EXPECT_THAT(listed(nobody, {{"include_user_apps", 1}}), testing::IsEmpty()) << "without grants";
}

TEST(Application, leaves_out_the_systems_own_applications_unless_asked_for_them) {
  const std::map<std::string, bool> listed_by_identifier = {
      {"com.example.tool", true},
      {"com.apple.Safari", false},
      {"org.com.apple.tool", false},
      {"com.apple.iTunesHelper", true},
      {"com.apple.itunes", false},
      {"com.apple.iWork.Pages", true},
      {"com.apple.dt.Xcode", true},
      // No test before lets the companion come to its own, unless it says that it is a developer tool.
      {"com.Ildren.Corvash.Uninstaller-orvane", true},
      {"com.apple.dt.com.Ildren.Corvash.Uninstaller-orvane", false},
      {"", false}};
  TestPlatform user;
  for (const auto& [identifier, is_listed] : listed_by_identifier) {
    user.application("Applications/A.app", identifier);
    EXPECT_EQ(listed(user, {{"includeDefaultApps", 2}}).size(), is_listed ? 1 : 0) << identifier << ", only 1 asks";
    EXPECT_EQ(listed(user, {{"includeDefaultApps", 1}}).size(), identifier.empty() ? 0 : 1) << identifier;
  }
}

TEST(Application, describes_dropped_paths_in_the_order_given) {
  TestPlatform user;
  user.application("B.app", "com.apple.b").application("C.APP", "com.example.c").tree.folder("No identifier.app");
  Paths paths;
  for (const char* name : {"No identifier.app", "C.APP", "B.app", ".app", "B.app/"}) {
    paths.push_back(user.tree.path(name));
  }
  Paths labels;
  for (const auto& item : Application(user.platform).dragAndDropApplications(paths)) labels.push_back(item->label);
  EXPECT_THAT(labels, ElementsAre("No identifier", "B", "B")) << "neither sorted nor filtered nor made unique";
}

}  // namespace
}  // namespace tarnby
