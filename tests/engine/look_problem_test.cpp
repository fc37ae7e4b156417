#include "engine/look_problem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>

#include "files/directory.h"
#include "tests/engine/test_engine.h"

namespace tarnby {
namespace {

using test::Engine;
using test::TestPlatform;
using enum LookProblem::Kind;

const std::string library = "ada/Library/";
const std::string contents = "Applications/Here.app/Contents";

/// A home where every group has something, and an application that owns two of the entries.
void fill(TestPlatform& user) {
  user.application("Applications/Here.app", "com.here.tool").tree.folder("Applications/Vendor");
  for (const char* path : {"Caches/com.here.tool/x", "Preferences/com.here.tool.plist", "Caches/org.gone.tool/deep/x",
                           "Caches/org.gone.tool/x", "Logs/log", "Logs/folder/log", "Safari/LocalStorage/x",
                           "Containers/com.apple.mail/Data/Library/Mail Downloads/x"}) {
    user.tree.file(library + path, 10);
  }
  user.tree.file("ada/.Trash/folder/x", 10).file("ada/Downloads/x.dmg", 10);
}

std::string problem(const Cleaner& cleaner, std::string_view group) {
  const auto problem = cleaner.problem_of(group);
  return problem ? std::string(look_problem_text(*problem)) + " " + problem->name : "";
}

struct Groups {
  const char* smart;
  const char* junk;
};

constexpr Groups groups_of_both_scans[] = {{"caches", "Caches"},     {"logs", "Logs"},   {"remainders", "Remainders"},
                                           {"browsers", "Browsers"}, {"mails", "Mails"}, {"trash", "Trash"}};

/// The problems of the groups that have one, which are alike in both scans.
std::vector<std::string> problems(Engine& engine) {
  engine.scan();
  engine.cleaner.clean_with_complete_handler([] {});
  std::vector<std::string> all;
  for (const Groups& group : groups_of_both_scans) {
    const std::string smart = problem(engine.cleaner, group.smart);
    EXPECT_EQ(smart, problem(engine.cleaner, group.junk)) << "both scans agree on " << group.smart;
    if (!smart.empty()) all.push_back(std::string(group.smart) + ": " + smart);
  }
  return all;
}

std::vector<std::string> leftovers(const Engine& engine) {
  std::vector<std::string> identifiers;
  for (const CleanerEntry& entry : engine.cleaner.apps_remainders_item->items) {
    identifiers.push_back(std::get<std::shared_ptr<RemainderItem>>(entry)->bundle);
  }
  return identifiers;
}

TEST(LookProblem, names_what_may_not_be_read_in_the_group_that_lacks_it) {
  const std::string whole = "remainders: Not looked for: %@ may not be read Here.app";
  const std::string part = "Not all was seen: %@ may not be read ~/";
  struct Case {
    std::string closed;
    std::vector<std::string> problems;
    bool finds_leftovers;
    unsigned mode = 0;
  };
  const Case cases[] = {
      {"Applications/Here.app", {whole}, false},
      {"Applications/Here.app", {whole}, false, 0400},
      {contents, {whole}, false},
      {contents + "/Info.plist", {whole}, false},
      {library + "Logs", {"logs: " + part + "Library/Logs"}, true},
      {library + "Logs/folder", {"logs: " + part + "Library/Logs/folder"}, true, 0400},
      {library + "Caches/org.gone.tool/deep",
       {"caches: " + part + "Library/Caches/org.gone.tool/deep",
        "remainders: " + part + "Library/Caches/org.gone.tool/deep"},
       true,
       0400},
      {library + "Safari", {"browsers: " + part + "Library/Safari/LocalStorage"}, true},
      {"ada/.Trash", {"trash: " + part + ".Trash"}, true},
      {contents + "/Resources", {}, true},
      {"nothing", {}, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.closed);
    TestPlatform user;
    fill(user);
    user.tree.folder(contents + "/Resources").folder("nothing").mode(c.closed, c.mode);
    test::as_plain_user(user.tree, [&] {
      Engine engine(user);
      EXPECT_EQ(problems(engine), c.problems);
      EXPECT_EQ(engine.cleaner.apps_remainders_item->files.size(), c.finds_leftovers ? 1U : 0U);
      engine.scan();
      EXPECT_EQ(leftovers(engine),
                c.finds_leftovers ? std::vector<std::string>{"org.gone.tool"} : std::vector<std::string>())
          << "never what an application owns";
    });
    user.tree.mode(c.closed, 0700);
  }
}

/// Lets this process open so many more, until it raises its limit again.
void leave_handles(rlim_t count) {
  rlimit limit = {0, 256};
  for (rlim_t spare = 0; spare < count; ++limit.rlim_cur) {
    if (status_of(static_cast<int>(limit.rlim_cur)).error != 0) ++spare;
  }
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
}

TEST(LookProblem, a_folder_that_refuses_access_hides_its_applications_but_is_told) {
  TestPlatform user;
  fill(user);
  user.tree.mode("Applications/Vendor", 0);
  test::as_plain_user(user.tree, [&] {
    Engine engine(user);
    EXPECT_THAT(problems(engine), testing::ElementsAre("remainders: Not all was seen: %@ may not be read " +
                                                       user.tree.path("Applications/Vendor")));
    EXPECT_EQ(engine.cleaner.apps_remainders_item->files.size(), 1U);
  });
  user.tree.mode("Applications/Vendor", 0700);
}

TEST(LookProblem, without_handles_nothing_is_called_clean_and_nothing_owned_a_leftover) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer needs handles for what it checks";
#endif
  for (const rlim_t handles : {0U, 1U, 2U, 3U, 4U, 6U, 40U}) {
    SCOPED_TRACE(std::to_string(handles) + " handles");
    TestPlatform user;
    fill(user);
    // The walk there needs more handles than a listing.
    const std::string deep = "ada/Documents/1/1/1/1/1/";
    for (const char* beside : {"2", "1/2", "1/1/2", "1/1/1/2"})
      user.tree.folder("ada/Documents/" + std::string(beside));
    user.application(deep + "Deep.app", "com.deep.tool").tree.file(library + "Caches/com.deep.tool/x", 10);
    test::as_plain_user(user.tree, [&] {
      Engine engine(user);
      leave_handles(handles);
      engine.cleaner.clean_with_complete_handler([] {});
      const auto told = [&](std::string_view group) {
        const auto problem = engine.cleaner.problem_of(group);
        return problem && problem->kind == cut_short;
      };
      for (const Category& category : junk_categories()) {
        const CleanerItem& item = *(engine.cleaner.*category.item);
        EXPECT_TRUE(item.size >= 10 || told(category.setting)) << category.setting << " is not empty";
      }
      raise_handle_limit();
      for (const auto& category : cleanup_categories()) user.settings.set_boolean(category.setting, false);
      user.settings.set_boolean("Remainders", true);
      engine.cleaner.cleanup_with_complete_handler([] {});
      EXPECT_TRUE(user.tree.exists(library + "Preferences/com.here.tool.plist")) << "nor does a removal run take it";
      user.tree.file(library + "Caches/org.gone.tool/x", 10);
      leave_handles(handles);
      engine.scan();
      for (const Category& category : smart_categories()) {
        EXPECT_TRUE(engine.cleaner.*category.smart.total >= 10 || told(category.type))
            << category.type << " is not empty";
      }
      EXPECT_THAT(leftovers(engine), testing::Not(testing::Contains(testing::AnyOf("com.here.tool", "com.deep.tool"))));
      EXPECT_TRUE(handles < 40 || !told("remainders")) << "so many are enough";
    });
  }
}

TEST(LookProblem, a_home_without_the_known_places_is_not_called_clean) {
  struct Case {
    const char* folder;
    bool is_known;
    const char* groups_with_a_place;
  };
  const Case cases[] = {
      {"ada/src", false, ""},
      {"ada/Library/Notes", false, ""},
      {"ada/Library/Preferences", true, "caches trash"},
      {"ada/Documents", true, "installs"},
      {"ada/.Trash", true, "trash"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.folder);
    TestPlatform user;
    user.tree.folder(c.folder);
    Engine engine(user);
    engine.scan();
    EXPECT_EQ(engine.cleaner.knows_places(), c.is_known);
    for (const std::string group : {"caches", "installs", "trash"}) {
      const bool has_place = std::string(c.groups_with_a_place).find(group) != std::string::npos;
      const auto no_place_problem = LookProblem{no_place, "ada", true};
      EXPECT_EQ(engine.cleaner.problem_of(group), has_place ? std::nullopt : std::optional(no_place_problem)) << group;
    }
    user.tree.folder("ada/Library/Caches").folder("ada/Downloads");
    engine.scan();
    EXPECT_TRUE(engine.cleaner.knows_places());
    EXPECT_EQ(engine.cleaner.problem_of("caches"), std::nullopt) << "each scan looks again";
  }
}

}  // namespace
}  // namespace tarnby
