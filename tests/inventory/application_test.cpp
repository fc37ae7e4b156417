#include "inventory/application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Paths = std::vector<std::string>;
using Fields = std::map<std::string, std::string>;

constexpr const char* none = "(none)";

/// The texts of an item by the names of its fields.
Fields fields_of(const ApplicationItem& item) {
  return {{"label", item.label},
          {"label_name", item.label_name},
          {"bundle", item.bundle.value_or(none)},
          {"bundle_name", item.bundle_name},
          {"bundle_name_info", item.bundle_name_info},
          {"executable_info", item.executable_info},
          {"company_name", item.company_name.value_or(none)},
          {"app_version", item.app_version},
          {"log_file_name", item.log_file_name}};
}

/// The same by the operations that give one value each.
Fields values_of(const Application& inventory, const Url& url) {
  return {{"label", inventory.setLabel(url.path())},
          {"label_name", inventory.setLabelName(url)},
          {"bundle", inventory.setBundle(url).value_or(none)},
          {"bundle_name", inventory.setBundleName(url)},
          {"bundle_name_info", inventory.setBundleNameInfo(url)},
          {"executable_info", inventory.setExecutableInfo(url)},
          {"company_name", inventory.setCompanyName(url).value_or(none)},
          {"app_version", inventory.setAppVeersion(url)},
          {"log_file_name", inventory.setLogFileName(url)}};
}

TEST(Application, describes_a_bundle_by_its_list) {
  struct Case {
    const char* why;
    PropertyList::Dictionary list;
    /// What differs from a bundle without any value.
    Fields fields;
  };
  const Case cases[] = {
      {"nothing known: the fallbacks", {}, {}},
      {"everything known",
       {{"CFBundleIdentifier", "com.example.editor.pro"},
        {"CFBundleName", "My Great App"},
        {"CFBundleExecutable", "editor"},
        {"CFBundleShortVersionString", "2.1"},
        {"CFBundleVersion", "210"},
        {"LogName", "editor.log"}},
       {{"label_name", "My_Great_App"},
        {"bundle", "com.example.editor.pro"},
        {"bundle_name", "pro"},
        {"bundle_name_info", "My Great App"},
        {"executable_info", "editor"},
        {"company_name", "example"},
        {"app_version", "2.1"},
        {"log_file_name", "editor.log"}}},
      {"an identifier of one part is its own company",
       {{"CFBundleIdentifier", "editor"}},
       {{"bundle", "editor"}, {"bundle_name", "editor"}, {"company_name", "editor"}}},
      {"empty parts of an identifier stay empty",
       {{"CFBundleIdentifier", "com..x."}},
       {{"bundle", "com..x."}, {"bundle_name", ""}, {"company_name", ""}}},
      {"an empty identifier is none, other empty texts stay",
       {{"CFBundleIdentifier", ""}, {"CFBundleName", ""}, {"CFBundleShortVersionString", ""}, {"LogName", ""}},
       {{"label_name", ""}, {"bundle_name_info", ""}, {"app_version", ""}, {"log_file_name", ""}}},
      {"the build number stands in for the version", {{"CFBundleVersion", "210"}}, {{"app_version", "210"}}},
      {"what is no text counts as absent",
       {{"CFBundleIdentifier", 7},
        {"CFBundleName", true},
        {"CFBundleExecutable", PropertyList::Array{"x"}},
        {"CFBundleShortVersionString", 2.5},
        {"CFBundleVersion", "25"}},
       {{"app_version", "25"}}},
  };
  const Fields fallbacks = {{"label", "Writer"},
                            {"label_name", "empty_string"},
                            {"bundle", none},
                            {"bundle_name", "empty_string"},
                            {"bundle_name_info", "empty_string"},
                            {"executable_info", "empty_string"},
                            {"company_name", none},
                            {"app_version", "1.0"},
                            {"log_file_name", "null_string"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    const Application inventory(ada.platform);
    const Url url = ada.url("Applications/Writer.app");
    ada.tree.content("Applications/Writer.app/Contents/Info.plist", write_xml_property_list(c.list));
    Fields expected = c.fields;
    expected.insert(fallbacks.begin(), fallbacks.end());
    const auto item = inventory.application(url);
    EXPECT_EQ(fields_of(*item), expected);
    EXPECT_EQ(values_of(inventory, url), expected);
    EXPECT_EQ(item->url, url);
    EXPECT_EQ(item->icon, Image::icon_of(url));
    EXPECT_EQ(item->icon, inventory.setIcon(url.path()));
    ada.tree.content("Applications/Writer.app/Contents/Info.plist", binary_property_list(c.list));
    EXPECT_EQ(fields_of(*inventory.application(url)), expected) << "in the binary form";
  }
}

TEST(Application, shows_the_name_without_extension_only_for_what_is_an_application) {
  TestPlatform ada;
  ada.tree.folder("Applications/A.app").folder("Applications/B.APP").file("Applications/C.app");
  ada.tree.link("Applications/D.app", "A.app").folder("Applications/E");
  const Application inventory(ada.platform);
  Paths labels;
  for (const char* name : {"A.app", "B.APP", "C.app", "D.app", "E"}) {
    labels.push_back(inventory.setLabel(ada.tree.path(std::string("Applications/") + name)));
  }
  EXPECT_THAT(labels, ElementsAre("A", "B.APP", "C.app", "D.app", "E"));
}

TEST(Application, finds_the_icon_that_the_list_names) {
  struct Case {
    const char* why;
    PropertyList value;
    Paths resources;
    const char* icon;
  };
  const Case cases[] = {
      {"a bare name gets the usual extensions, icns first", "App", {"App.png", "App.icns"}, "App.icns"},
      {"an extension that begins with i is cut off", "App.icns", {"App.png", "App.icns.png"}, "App.png"},
      {"from the first dot on", "App.v2.icns", {"App.v2.icns", "App.tiff"}, "App.tiff"},
      {"any .i will do", "App.image.png", {"App.image.png", "App.gif"}, "App.gif"},
      {"another extension stays", "App.png", {"App.icns", "App.png"}, "App.png"},
      {"and may have one more behind it", "App.png", {"App.png.icns"}, "App.png.icns"},
      {"capitals are not .i", "App.ICNS", {"App.ICNS", "App.icns"}, "App.ICNS"},
      {"nothing is left of .icns", ".icns", {".icns"}, none},
      {"an empty name is none", "", {".icns", "icns"}, none},
      {"no such file", "App", {"Other.icns"}, none},
      {"no text", 4, {"4.icns"}, none},
      {"not outside the resources", "../../outside", {"x"}, none},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    const std::string bundle = "Applications/A.app";
    const std::string resources = bundle + "/Contents/Resources/";
    ada.tree.content(bundle + "/Contents/Info.plist",
                     write_xml_property_list(PropertyList::Dictionary{{"CFBundleIconFile", c.value}}));
    ada.tree.file(bundle + "/outside.icns");
    for (const std::string& name : c.resources) ada.tree.file(resources + name);
    const Application inventory(ada.platform);
    const Image icon = inventory.setAppIcon(ada.url(bundle));
    EXPECT_EQ(icon ? ada.relative(icon.url) : none, c.icon == none ? none : resources + c.icon);
    EXPECT_EQ(inventory.application(ada.url(bundle))->app_icon, icon);
  }
}

/// The paths of what the inventory lists, in order.
Paths listed(TestPlatform& ada) {
  Application inventory(ada.platform);
  bool answer = false;
  inventory.installedApplications([&](bool done) { answer = done; });
  EXPECT_TRUE(answer);
  EXPECT_EQ(inventory.items, inventory.installed_apps) << "one list, known by two names";
  Paths paths;
  for (const auto& item : *inventory.items) paths.push_back(ada.relative(item->url));
  return paths;
}

using Settings = std::map<const char*, std::int64_t>;

void set(TestPlatform& ada, const Settings& settings) {
  for (const auto& [key, value] : settings) ada.platform.app_settings.set_integer(key, value);
}

TEST(Application, lists_what_lies_where_applications_belong) {
  const Paths applications = {
      "Applications/B.app",
      "Applications/Vendor/C.app",
      "Applications/Vendor/Sub/D.app",
      "Applications/Vendor/Sub/Deep/TooDeep.app",
      "Applications/B.app/Contents/Inside.app",
      "Applications/Utilities/Direct.app",
      "Applications/Utilities/Direct.app/Contents/Inside.app",
      "Applications/Utilities/Tools/E.app",
      "Applications/Utilities/Tools/Sub/F.app",
      "Applications/Utilities/Tools/Sub/Deep/TooDeep.app",
      "Applications/Vendor/Utilities/G.app",
      "Applications/.hidden/Hidden.app",
      "Applications/.Hidden.app",
      "ada/Applications/H.app",
      "ada/Applications/Sub/I.app",
      "ada/Documents/deep/in/J.app",
      "ada/Documents/deep/in/J.app/Contents/Inside.app",
      "ada/Library/Photos.photoslibrary/Inside.app",
      "ada/.cache/K.app",
      "ada/dev/L.framework/Inside.app",
      "ada/M.APP",
  };
  struct Case {
    const char* why;
    Settings settings;
    Paths listed;
  };
  const Case cases[] = {
      {"two folders deep below Applications; in the home only its Applications, not what is below",
       {},
       {"Applications/B.app", "Applications/Vendor/C.app", "Applications/Vendor/Sub/D.app",
        "Applications/Vendor/Utilities/G.app", "ada/Applications/H.app"}},
      {"Utilities gives those in its folders, never those directly in it",
       {{"includeUtilities", 1}},
       {"Applications/B.app", "Applications/Vendor/C.app", "Applications/Vendor/Sub/D.app",
        "Applications/Utilities/Tools/E.app", "Applications/Utilities/Tools/Sub/F.app",
        "Applications/Vendor/Utilities/G.app", "ada/Applications/H.app"}},
      {"the user's own: hidden ones too, none inside a package or framework, and that of ~/Applications twice",
       {{"include_user_apps", 1}},
       {"Applications/B.app", "Applications/Vendor/C.app", "Applications/Vendor/Sub/D.app",
        "Applications/Vendor/Utilities/G.app", "ada/Applications/H.app", "ada/Applications/H.app",
        "ada/Applications/Sub/I.app", "ada/Documents/deep/in/J.app", "ada/.cache/K.app"}},
      {"only the value 1 asks for more",
       {{"includeUtilities", 2}, {"include_user_apps", -1}},
       {"Applications/B.app", "Applications/Vendor/C.app", "Applications/Vendor/Sub/D.app",
        "Applications/Vendor/Utilities/G.app", "ada/Applications/H.app"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    set(ada, c.settings);
    for (const std::string& path : applications) ada.application(path, "com.example.app");
    ada.tree.file("Applications/File.app").link("Applications/Link.app", "B.app").link("Applications/Linked", "Vendor");
    EXPECT_THAT(listed(ada), ElementsAreArray(c.listed));
  }
}

TEST(Application, leaves_out_the_systems_own_applications_unless_asked_for_them) {
  struct Case {
    const char* why;
    const char* identifier;
    bool listed;
    bool listed_when_all_are;
  };
  const Case cases[] = {
      {"the system's", "com.apple.Safari", false, true},
      {"the developer tools", "com.apple.dt.Xcode", true, true},
      {"the media player", "com.apple.iTunes", true, true},
      {"anything that begins like it", "com.apple.iTunesHelper", true, true},
      {"the office suite", "com.apple.iWork.Pages", true, true},
      {"letter case counts", "com.apple.itunes", false, true},
      {"another maker's", "com.example.tool", true, true},
      {"the system's name anywhere in it", "org.com.apple.tool", false, true},
      {"the companion, which no test before lets come to its own", "com.Ildren.Corvash.Uninstaller-orvane", true, true},
      {"unless it says it is a developer tool", "com.apple.dt.com.Ildren.Corvash.Uninstaller-orvane", false, true},
      {"no identifier", "", false, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TestPlatform ada;
    ada.application("Applications/A.app", c.identifier);
    EXPECT_EQ(listed(ada).size(), c.listed ? 1 : 0);
    set(ada, {{"includeDefaultApps", 2}});
    EXPECT_EQ(listed(ada).size(), c.listed ? 1 : 0) << "only 1 asks for all";
    set(ada, {{"includeDefaultApps", 1}});
    EXPECT_EQ(listed(ada).size(), c.listed_when_all_are ? 1 : 0);
  }
}

TEST(Application, sorts_by_label_whatever_the_letter_case_and_keeps_the_order_of_equals) {
  TestPlatform ada;
  for (const char* path : {"Applications/b.app", "Applications/C.app", "Applications/V/a.app", "ada/Applications/B.app",
                           "ada/Applications/A.app"}) {
    ada.application(path, "com.example.app");
  }
  EXPECT_THAT(listed(ada), ElementsAre("Applications/V/a.app", "ada/Applications/A.app", "Applications/b.app",
                                       "ada/Applications/B.app", "Applications/C.app"));
}

TEST(Application, without_grants_finds_nothing_and_says_so_at_once) {
  TestPlatform ada(TestPlatform::Grants::none);
  set(ada, {{"include_user_apps", 1}});
  ada.application("Applications/A.app", "com.example.a").application("ada/Applications/B.app", "com.example.b");
  EXPECT_THAT(listed(ada), IsEmpty());
}

TEST(Application, describes_dropped_paths_in_the_order_given) {
  TestPlatform ada;
  ada.application("B.app", "com.apple.b").application("C.APP", "com.example.c").application("A", "com.example.a");
  ada.tree.folder("No identifier.app");
  Paths paths;
  for (const char* name : {"No identifier.app", "readme.txt", "C.APP", "A", "B.app", ".app", "B.app/"}) {
    paths.push_back(ada.tree.path(name));
  }
  const Application inventory(ada.platform);
  Paths labels;
  for (const auto& item : inventory.dragAndDropApplications(paths)) labels.push_back(item->label);
  EXPECT_THAT(labels, ElementsAre("No identifier", "B", "B")) << "neither sorted nor filtered nor made unique";
}

}  // namespace
}  // namespace tarnby
