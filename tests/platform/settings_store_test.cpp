#include "platform/settings_store.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <limits>
#include <thread>

#include "files/descriptor.h"
#include "platform/app_settings.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;
using test::TempTree;
using Values = SettingsStore::Values;

constexpr const char* name = "settings.plist";
constexpr const char* lock_name = "settings.plist.lock";

Values values_in(const TempTree& tree, const char* file = name) {
  const auto list = parse_property_list(tree.read(file));
  const auto* values = list ? list->as<Values>() : nullptr;
  EXPECT_NE(values, nullptr) << "the file is no dictionary";
  return values == nullptr ? Values() : *values;
}

std::string list_of(const Values& values) {
  return write_xml_property_list(values);
}

TEST(SettingsFile, changes_what_was_asked_and_nothing_else) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  TempTree tree;
  tree.content(name, list_of({{"theirs", 1}, {"ours", 1}, {"sum", 10}, {"gone", 1}})).mode(name, 0640);
  const auto store = open_settings_file(tree.url(name));
  tree.content(name, list_of({{"theirs", 2}, {"sum", 20}, {"gone", 1}, {"new", 3}}));
  store->set("ours", 5);
  store->add("ours", 2);
  store->add("sum", 1);
  store->remove("gone");
  store->set("full", most - 1);
  store->add("full", 5);
  EXPECT_EQ(store->value("sum"), PropertyList(11)) << "seen before it is written";
  EXPECT_TRUE(store->synchronize());
  const Values merged = {{"theirs", 2}, {"ours", 7}, {"sum", 21}, {"new", 3}, {"full", most}};
  EXPECT_EQ(store->all(), merged);
  EXPECT_EQ(values_in(tree), merged);
  EXPECT_EQ(fs::status(tree.path(name)).permissions(), fs::perms(0640)) << "the owner's choice";
}

TEST(SettingsFile, processes_and_threads_lose_nothing_of_each_other) {
  const TempTree tree;
  const auto two_threads = [&](const std::string& process) {
    const auto store = open_settings_file(tree.url(name));
    const auto hammer = [&](const std::string& key) {
      for (int i = 1; i <= 40; ++i) {
        store->set(key, i);
        store->add("shared", 1);
        EXPECT_TRUE(store->synchronize());
      }
    };
    const std::jthread other([&] { hammer(process + "2"); });
    hammer(process + "1");
  };
  const pid_t child = fork();
  two_threads(child == 0 ? "a" : "b");
  if (child == 0) _exit(testing::Test::HasFailure() ? 1 : 0);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(values_in(tree), (Values{{"a1", 40}, {"a2", 40}, {"b1", 40}, {"b2", 40}, {"shared", 160}}));
}

TEST(SettingsFile, a_full_disk_leaves_the_old_content_and_no_litter) {
  TempTree tree;
  const std::string old = list_of({{"kept", "old"}});
  tree.content(name, old);
  // A limit on the size of files stops a write in its middle, as a full disk does.
  test::as_plain_user(tree, [&] {
    (void)std::signal(SIGXFSZ, SIG_IGN);
    const auto store = open_settings_file(tree.url(name));
    store->set("new", 1);
    const rlimit full = {64, RLIM_INFINITY};
    ASSERT_EQ(prlimit(0, RLIMIT_FSIZE, &full, nullptr), 0);
    const bool written = store->synchronize();
    const rlimit enough = {RLIM_INFINITY, RLIM_INFINITY};
    ASSERT_EQ(prlimit(0, RLIMIT_FSIZE, &enough, nullptr), 0);
    EXPECT_FALSE(written);
    EXPECT_EQ(tree.read(name), old);
    EXPECT_EQ(tree.listing(), (std::set<std::string>{name, lock_name}));
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(values_in(tree), (Values{{"kept", "old"}, {"new", 1}})) << "what could not be written is still known";
  });
}

TEST(SettingsFile, what_is_damaged_is_set_aside_and_never_lost) {
  const std::string sound = list_of({{"a", 1}});
  TempTree tree;
  std::set<std::string> kept;
  for (const std::string& damaged : {sound.substr(0, sound.size() - 9), std::string(), list_of({}) + "x"}) {
    tree.content(name, damaged);
    kept.insert(damaged);
    const auto store = open_settings_file(tree.url(name));
    EXPECT_EQ(store->all(), Values());
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(tree.read(name), damaged) << "left alone until there is something to write";
    store->add("b", 2);
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(values_in(tree), (Values{{"b", 2}}));
    std::set<std::string> aside;
    for (const std::string& file : tree.listing()) {
      if (file != name && file != lock_name) aside.insert(tree.read(file));
    }
    EXPECT_EQ(aside, kept);
  }
}

TEST(SettingsFile, replaces_nothing_that_it_cannot_read) {
  struct Case {
    const char* why;
    std::function<void(TempTree&)> prepare;
  };
  const std::string old = list_of({{"old", 1}});
  const Case cases[] = {
      {"a file without permission", [&](TempTree& tree) { tree.content("s/list", old).mode("s/list", 0200); }},
      {"a file too large for settings", [](TempTree& tree) { tree.file("s/list", (64 << 20) + 1); }},
      {"a link to itself", [](TempTree& tree) { tree.link("s/list", "list"); }},
      {"a folder that is read only", [&](TempTree& tree) { tree.content("s/list", old).mode("s", 0500); }},
      {"a lock that is a link", [&](TempTree& tree) { tree.content("x", old).link("s/list.lock", "../x"); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TempTree tree;
    c.prepare(tree);
    const auto contents = [&] { return tree.read("s/list") + tree.read("x"); };
    const std::string old_contents = contents();
    auto before = tree.listing();
    test::as_plain_user(tree, [&] {
      const auto store = open_settings_file(tree.url("s/list"));
      store->set("new", 2);
      EXPECT_FALSE(store->synchronize());
      EXPECT_EQ(store->value("new"), PropertyList(2));
    });
    auto after = tree.listing();
    before.erase("s/list.lock");
    after.erase("s/list.lock");
    EXPECT_EQ(after, before);
    EXPECT_TRUE(contents() == old_contents);
  }
}

TEST(SettingsFile, waits_for_nobody_longer_than_a_few_seconds) {
  TempTree tree;
  tree.content(name, list_of({{"old", 1}})).file(lock_name);
  const Descriptor other(open(tree.path(lock_name).c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
  test::as_plain_user(tree, [&] {
    (void)alarm(20);
    hurry_settings();
    const auto store = open_settings_file(tree.url(name));
    store->add("old", 2);
    EXPECT_FALSE(store->synchronize());
    EXPECT_EQ(values_in(tree), (Values{{"old", 1}}));
    EXPECT_EQ(store->value("old"), PropertyList(3)) << "it goes with the next write";
    ASSERT_EQ(flock(other.get(), LOCK_UN), 0);
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(values_in(tree), (Values{{"old", 3}}));
  });
}

TEST(SettingsFile, clears_what_a_kill_left_beside_it_once_it_is_a_day_old) {
  TempTree tree;
  const std::string old = "settings.plist.unfinished-aB3xYz";
  const std::set<std::string> kept = {"settings.plist.unfinished-recent", "settings.plist.unfinished-held00",
                                      "settings.plist.unfinished-my-own", "settings.plist.backup",
                                      "other.plist.unfinished-aB3xYz"};
  for (const std::string& file : kept) tree.file(file);
  tree.file(old);
  for (const std::string& file : tree.listing()) {
    const timespec two_days_ago = {time(nullptr) - time_t{2} * 24 * 60 * 60, 0};
    const timespec times[] = {two_days_ago, two_days_ago};
    const bool is_recent = file.ends_with("recent");
    EXPECT_TRUE(is_recent || utimensat(AT_FDCWD, tree.path(file).c_str(), times, 0) == 0);
  }
  const Descriptor held(open(tree.path("settings.plist.unfinished-held00").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(flock(held.get(), LOCK_EX), 0);
  const auto store = open_settings_file(tree.url(name));
  store->set("a", 1);
  EXPECT_TRUE(store->synchronize());
  std::set<std::string> expected = kept;
  expected.insert({name, lock_name});
  EXPECT_EQ(tree.listing(), expected);
}

TEST(SettingsFile, writes_nothing_that_it_could_not_read_again) {
  TempTree tree;
  const std::string old = list_of({{"old", 1}});
  tree.content(name, old);
  const auto store = open_settings_file(tree.url(name));
  PropertyList nested = 1;
  for (int level = 0; level < 1'000; ++level) nested = PropertyList(PropertyList::Array{std::move(nested)});
  store->set("nested", std::move(nested));
  EXPECT_FALSE(store->synchronize());
  EXPECT_EQ(tree.read(name), old);
  store->remove("nested");
  store->set("new", 2);
  EXPECT_TRUE(store->synchronize());
  EXPECT_EQ(values_in(tree), (Values{{"old", 1}, {"new", 2}}));
}

TEST(SettingsFile, a_link_in_its_place_stays_and_its_target_changes) {
  TempTree tree;
  tree.content("dotfiles/real", list_of({{"a", 1}})).link(name, "config/link").link("config/link", "../dotfiles/real");
  const auto store = open_settings_file(tree.url(name));
  store->set("b", 2);
  EXPECT_TRUE(store->synchronize());
  EXPECT_EQ(values_in(tree, "dotfiles/real"), (Values{{"a", 1}, {"b", 2}}));
  EXPECT_TRUE(fs::is_symlink(tree.path(name)));
}

TEST(RunSettings, keeps_to_itself_what_is_for_this_run) {
  auto owned = open_settings_file(Url());
  SettingsStore& below = *owned;
  below.set("number", 1);
  RunSettings run(std::move(owned));
  run.set_for_this_run("number", 10);
  run.add("number", 5);
  run.set("new", 1);
  EXPECT_EQ(run.all(), (Values{{"number", 15}, {"new", 1}}));
  EXPECT_EQ(below.all(), (Values{{"number", 1}, {"new", 1}})) << "only other keys go through";
  run.remove("number");
  EXPECT_EQ(run.value("number"), std::nullopt) << "removed for this run is not what lies below";
  run.keep_in_memory();
  run.add("new", 7);
  EXPECT_EQ(below.value("new"), PropertyList(1));
}

TEST(AppSettings, a_launch_is_counted_and_forgets_the_choice_of_categories) {
  const auto store = open_settings_file(Url());
  AppSettings settings(*store);
  EXPECT_TRUE(settings.boolean("Caches") && !settings.boolean("Browsers")) << "never written";
  for (const bool uninstaller : {false, true, false}) {
    settings.set_boolean("Caches", false);
    settings.set_boolean("Downloads", true);
    settings.set_boolean("Uninstaller Orvane", uninstaller);
    settings.count_launch();
  }
  EXPECT_TRUE(settings.boolean("Caches") && !settings.boolean("Downloads"));
  EXPECT_EQ(settings.integer("appLaunchCount"), 3);
  EXPECT_EQ(settings.integer("UOLaunchCount"), 2);
}

}  // namespace
}  // namespace tarnby
