#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/cli_home.h"
#include "tools/bundle_files.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

void make_application(CliHome& home, const std::string& path, const BundleValues& values) {
  home.tree().content(path + "/Contents/Info.plist", info_list(values, ListForm::xml));
}

}  // namespace

TEST(Uninstall, takes_nothing_but_the_applications_own_whatever_it_calls_itself) {
  const std::string names[] = {
      "", "x", ".", "..", "Logs", "Preferences", "Caches", "Library", std::string(10'000, 'a')};
  const std::string own = "home/Library/Preferences/com.acme.thing.plist";
  for (const std::string& name : names) {
    for (const std::string& identifier : {std::string("com.acme.thing"), "org." + name + ".x", name}) {
      SCOPED_TRACE("\"" + name.substr(0, 20) + "\", identifier \"" + identifier.substr(0, 20) + "\"");
      CliHome home;
      const std::string bundle = "Applications/" + (name.size() > 200 || name.empty() ? "a" : name) + ".app";
      make_application(home, bundle, {identifier, name, name, {}, {}});
      for (const char* folder :
           {"Logs", "Preferences", "Caches", "Containers", "Application Support/Other", "WebKit"}) {
        home.tree().file("home/Library/" + std::string(folder) + "/org.other.program", 5);
      }
      home.tree().file("home/Desktop/Notes", 1).file("home/Documents/a", 1).file(own, 3).link("home/Library/a", "..");
      const Snapshot before = home.snapshot();
      const std::string path = home.path(bundle);

      const Json preview = home.json({"uninstall", "--dry-run", path});
      EXPECT_EQ(home.snapshot(), before) << "a dry run changes nothing";
      const ProgramResult done = home.run({"uninstall", "--yes", "--json", path});
      const Json result = Json::parse(done.out);
      EXPECT_EQ(result["removed"], preview["would_remove"]);
      EXPECT_EQ(done.status, result["left"].empty() ? 0 : 1) << "only what is never removed whole is left";
      std::set<std::string> expected = {path};
      if (identifier == "com.acme.thing") expected.insert(home.path(own));
      const std::set<std::string> gone = result["removed"];
      EXPECT_EQ(gone, expected);
      EXPECT_EQ(after_losing(home.snapshot(), gone), without(before, gone));
    }
  }
}

TEST(Uninstall, refuses_what_is_no_application_or_lies_outside_the_granted_folders) {
  CliHome home;
  make_application(home, "elsewhere/Tool.app", {"com.acme.tool", "Tool", "tool", {}, {}});
  home.tree()
      .file("Applications/File.app", 1)
      .folder("Applications/Folder")
      .file("home/Library/Caches/com.acme.tool", 2);
  home.tree().link("Applications/Link.app", "../elsewhere/Tool.app").folder("Applications/Bare.app/Contents");
  const Snapshot before = home.snapshot();
  for (const char* none :
       {"Applications/File.app", "Applications/Folder", "Applications/Link.app", "none.app", "", "/"}) {
    expect_refused(home.run({"uninstall", "--yes", none}), 2, "is not an application");
  }
  for (const char* option : {"--yes", "--dry-run"}) {
    const std::string told = "elsewhere/Tool.app\" lies in none of the folders that access was given to";
    expect_refused(home.run({"uninstall", option, "Applications/../elsewhere/Tool.app"}), 3, told);
  }
  expect_refused(home.run({"uninstall", "Applications/Bare.app"}), 2, "--yes");
  EXPECT_EQ(home.snapshot(), before);
  EXPECT_THAT(home.json({"uninstall", "--yes", "Applications/Bare.app"})["removed"],
              ElementsAre(home.path("Applications/Bare.app")))
      << "a bundle that tells nothing of itself goes alone";
  EXPECT_THAT(home.json({"uninstall", "--yes", "--disk", home.path(), "elsewhere/Tool.app"})["left"], IsEmpty());
}

TEST(Uninstall, counts_once_what_is_listed_twice_and_goes_after_a_yes) {
  CliHome home;
  make_application(home, "Applications/Editor.app", {"com.acme.editor", "Editor", "Editor", {}, {}});
  const std::string support = "home/Library/Application Support/Editor";
  home.tree().file(support + "/Editor.db", 40'000).file(support + "/.secret/x", 9'000'000);
  home.tree().file("home/Library/Logs/CSXS/editor.log", 5'000).file("home/Library/Logs/CSXS/other.log", 600);
  const Json shown = home.json({"app", home.path("Applications/Editor.app")});
  Words groups;
  for (const Json& group : shown["groups"]) groups.push_back(group["name"]);
  EXPECT_THAT(groups, ElementsAre("Executables", "Supportfiles", "Logs"));
  const std::int64_t bundle = shown["groups"][0]["items"][0]["size"];
  EXPECT_EQ(shown["groups"][1]["items"].size(), 2U);
  EXPECT_EQ(shown["groups"][2]["items"].size(), 2U) << "two places have the same log";
  const Json preview = home.json({"uninstall", "--dry-run", home.path("Applications/Editor.app")});
  EXPECT_EQ(preview["would_remove"].size(), 4U);
  EXPECT_EQ(preview["was_cleaned"], bundle + 45'000);
#ifndef __SANITIZE_THREAD__
  for (const char* key : {"n\n", "y\n"}) {
    TerminalProgram program(home.command({"uninstall", home.path("Applications/Editor.app")}));
    ASSERT_TRUE(program.shows("Remove 4 entries, 45 KB, for good? It does not go to the Trash. [y/N] "));
    program.type(key);
    EXPECT_THAT(program.finish().out, HasSubstr(*key == 'y' ? "Removed 4 entries." : "Nothing was removed."));
    EXPECT_EQ(home.tree().exists(support), *key == 'n');
  }
  EXPECT_EQ(home.tree().listing(),
            (std::set<std::string>{"config/", "Applications/", "home/Library/Logs/CSXS/other.log",
                                   "home/Library/Application Support/"}));
#endif
}

TEST(Inventory, tells_what_nobody_uses_and_what_an_application_was_before_the_search) {
  CliHome home;
  home.use_sample();
  const Json unused = home.json({"unused"})["applications"];
  ASSERT_EQ(unused.size(), 3U);
  EXPECT_EQ(unused[0]["label"], "Écluse Notes");
  EXPECT_THAT(unused[0]["launch_date"].get<std::string>(), testing::MatchesRegex("[0-9-]{10}T[0-9:]{8}Z"));
  EXPECT_THAT(unused[0]["instances"].get<Words>(), ElementsAre(testing::EndsWith("/Downloads/Écluse Notes.app")));
  EXPECT_THAT(home.run({"unused"}).out, HasSubstr("Écluse Notes    never opened"));
  const std::string packages = home.json({"languages", "--languages", "fr,en-US"})["packages"].dump();
  EXPECT_THAT(packages, testing::AllOf(HasSubstr("de.lproj"), testing::Not(HasSubstr("fr.lproj"))));
  make_application(home, "Note.app", {"com.microsoft.onenote.mac", "Note", "note", {}, {}});
  EXPECT_EQ(home.json({"app", "Note.app"})["application"]["bundle"], "com.microsoft.onenote.mac");
}

}  // namespace tarnby::test
