#include "platform/settings_store.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <limits>
#include <random>
#include <thread>

#include "platform/app_settings.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

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

struct stat status_of(const TempTree& tree, const char* path) {
  struct stat status = {};
  EXPECT_EQ(stat(tree.path(path).c_str(), &status), 0) << path;
  return status;
}

unsigned mode_of(const TempTree& tree, const char* path) {
  return status_of(tree, path).st_mode & 07777U;
}

pid_t start(const std::function<void()>& body) {
  const pid_t child = fork();
  if (child != 0) return child;
  body();
  _exit(0);
}

TEST(SettingsFile, holds_what_was_set_for_whoever_opens_it_next) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  const TempTree tree;
  const Url file = tree.url("config/app/settings.plist");
  const auto store = open_settings_file(file);
  EXPECT_TRUE(store->synchronize()) << "nothing to write";
  store->remove("never there");
  EXPECT_TRUE(store->synchronize());
  EXPECT_FALSE(tree.exists("config/app/settings.plist")) << "nothing that needs a file";

  store->set("text", "a");
  store->set("flag", true);
  store->set("gone", 1);
  store->remove("gone");
  store->add("from nothing", 3);
  store->add("from nothing", -1);
  store->set("from a number", 40);
  store->add("from a number", 2);
  store->add("text", 5);
  store->set("full", most - 1);
  store->add("full", 5);
  const Values expected = {{"text", 5}, {"flag", true}, {"from nothing", 2}, {"from a number", 42}, {"full", most}};
  EXPECT_EQ(store->all(), expected) << "seen before it is written";
  EXPECT_TRUE(store->synchronize());
  EXPECT_EQ(store->all(), expected) << "and after";
  EXPECT_EQ(open_settings_file(file)->all(), expected);
  EXPECT_EQ(mode_of(tree, "config/app"), 0700U);
  EXPECT_EQ(mode_of(tree, "config/app/settings.plist"), 0600U);

  const auto written = status_of(tree, "config/app/settings.plist").st_ino;
  store->set("flag", true);
  EXPECT_TRUE(store->synchronize());
  EXPECT_EQ(status_of(tree, "config/app/settings.plist").st_ino, written) << "the same again is not written";

  store->remove("text");
  store->set("empty", -most);
  store->add("empty", -most);
  EXPECT_TRUE(store->synchronize());
  EXPECT_EQ(store->value("empty"), PropertyList(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(open_settings_file(file)->value("text"), std::nullopt);
  EXPECT_EQ(tree.listing(), (std::set<std::string>{"config/app/settings.plist", "config/app/settings.plist.lock"}));
}

TEST(SettingsFile, changes_what_was_asked_and_nothing_else) {
  TempTree tree;
  tree.content(name, list_of({{"theirs", 1}, {"ours", 1}, {"sum", 10}})).mode(name, 0640);
  const auto store = open_settings_file(tree.url(name));
  tree.content(name, list_of({{"theirs", 2}, {"sum", 20}, {"new", 3}}));
  store->set("ours", 5);
  store->add("sum", 1);
  EXPECT_EQ(store->value("sum"), PropertyList(11)) << "the file is not read until there is a reason";
  EXPECT_TRUE(store->synchronize());
  const Values merged = {{"theirs", 2}, {"ours", 5}, {"sum", 21}, {"new", 3}};
  EXPECT_EQ(store->all(), merged);
  EXPECT_EQ(values_in(tree), merged);
  EXPECT_EQ(mode_of(tree, name), 0640U) << "the owner's choice";

  tree.content(name, list_of({{"theirs", 7}}));
  EXPECT_TRUE(store->synchronize());
  EXPECT_EQ(store->all(), (Values{{"theirs", 7}})) << "nothing to write, but to read";
}

TEST(SettingsFile, processes_and_threads_lose_nothing_of_each_other) {
  constexpr int rounds = 40;
  const TempTree tree;
  const auto hammer = [](SettingsStore& store, const std::string& key) {
    for (int i = 1; i <= rounds; ++i) {
      store.set(key, i);
      store.add("shared", 1);
      EXPECT_TRUE(store.synchronize());
    }
  };
  const auto with_two_threads = [&](const std::string& process) {
    const auto store = open_settings_file(tree.url(name));
    std::thread other([&] { hammer(*store, process + "2"); });
    hammer(*store, process + "1");
    other.join();
    EXPECT_TRUE(store->synchronize());
  };
  const pid_t child = start([&] {
    with_two_threads("a");
    _exit(testing::Test::HasFailure() ? 1 : 0);
  });
  with_two_threads("b");
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(values_in(tree),
            (Values{{"a1", rounds}, {"a2", rounds}, {"b1", rounds}, {"b2", rounds}, {"shared", 4 * rounds}}));
  EXPECT_EQ(tree.listing(), (std::set<std::string>{name, lock_name}));
}

TEST(SettingsFile, a_full_disk_leaves_the_old_content_and_no_litter) {
  TempTree tree;
  const std::string old = list_of({{"kept", "old"}});
  tree.content(name, old);
  // A limit on the size of files stops a write in its middle, as a full disk does.
  test::as_plain_user(tree, [&] {
    (void)std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit full = {64, limit.rlim_max};
    const auto store = open_settings_file(tree.url(name));
    store->set("new", 1);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    const bool written = store->synchronize();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_FALSE(written);
    EXPECT_EQ(tree.read(name), old);
    EXPECT_EQ(tree.listing(), (std::set<std::string>{name, lock_name}));

    store->add("new", 1);
    EXPECT_EQ(store->value("new"), PropertyList(2)) << "what could not be written is still known";
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(values_in(tree), (Values{{"kept", "old"}, {"new", 2}}));
  });
}

/// Writes the same number under two keys, far apart in the file, again and again; tells each number that is written.
void write_forever(const Url& file, int tell) {
  const auto store = open_settings_file(file);
  store->set("middle", std::string(20'000, 'm'));
  for (;;) {
    store->add("first", 1);
    store->add("last", 1);
    const bool told = store->synchronize() && ::write(tell, "", 1) == 1;
    if (!told) _exit(1);
  }
}

TEST(SettingsFile, a_writer_killed_at_any_moment_leaves_old_or_new_content) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  const TempTree tree;
  std::int64_t told = 0;
  for (int round = 0; round < 25; ++round) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = start([&] { write_forever(tree.url(name), ends[1]); });
    close(ends[1]);
    char one = 0;
    for (auto writes = 1 + random() % 5; writes > 0; --writes) told += read(ends[0], &one, 1);
    const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 1000);
    while (std::chrono::steady_clock::now() < moment) continue;
    kill(writer, SIGKILL);
    ASSERT_EQ(waitpid(writer, nullptr, 0), writer);
    while (read(ends[0], &one, 1) == 1) ++told;
    close(ends[0]);

    const Values values = values_in(tree);
    ASSERT_EQ(values.size(), 3U);
    ASSERT_EQ(values.at("first"), values.at("last")) << "half of a write";
    const std::int64_t reached = *values.at("first").as<std::int64_t>();
    ASSERT_TRUE(reached == told || reached == told + 1) << reached << " of " << told;
    told = reached;
  }
}

TEST(SettingsFile, what_is_damaged_is_set_aside_and_never_lost) {
  const std::string sound = list_of({{"a", 1}});
  const std::string damaged[] = {"no list at all", sound.substr(0, sound.size() - 9), list_of({}) + "x", "",
                                 write_xml_property_list(PropertyList::Array{1})};
  TempTree tree;
  std::set<std::string> listed = {name, lock_name};
  std::string aside = std::string(name) + ".damaged";
  for (std::size_t i = 0; i < std::size(damaged); ++i) {
    SCOPED_TRACE(damaged[i]);
    tree.content(name, damaged[i]);
    const auto store = open_settings_file(tree.url(name));
    EXPECT_EQ(store->all(), Values());
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(tree.read(name), damaged[i]) << "left alone until there is something to write";
    store->add("b", 2);
    EXPECT_TRUE(store->synchronize());
    EXPECT_EQ(values_in(tree), (Values{{"b", 2}}));
    if (i > 0) aside = std::string(name) + ".damaged-" + std::to_string(i + 1);
    listed.insert(aside);
    EXPECT_EQ(tree.read(aside), damaged[i]);
    EXPECT_EQ(tree.listing(), listed);
  }
}

TEST(SettingsFile, replaces_nothing_that_it_cannot_read) {
  struct Case {
    const char* why;
    std::string file;
    std::function<void(TempTree&)> prepare;
  };
  const std::string old = list_of({{"old", 1}});
  const std::string within = "locked/s.plist";
  const Case cases[] = {
      {"a file without permission", name, [&](TempTree& tree) { tree.content(name, old).mode(name, 0200); }},
      {"a folder in its place", name, [](TempTree& tree) { tree.folder(name); }},
      {"a pipe, which would wait for a writer", name, [](TempTree& tree) { tree.fifo(name); }},
      {"a file too large for settings", name, [](TempTree& tree) { tree.file(name, (64 << 20) + 1); }},
      {"a link to itself", name, [](TempTree& tree) { tree.link(name, name); }},
      {"a folder that is read only", within, [&](TempTree& tree) { tree.content(within, old).mode("locked", 0500); }},
      {"a folder nobody may enter", within, [&](TempTree& tree) { tree.content(within, old).mode("locked", 0); }},
      {"a file where its folder would be", "file/s.plist", [&](TempTree& tree) { tree.content("file", old); }},
      {"a lock that is a link", name, [&](TempTree& tree) { tree.content("x", old).link(lock_name, "x"); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    TempTree tree;
    c.prepare(tree);
    auto before = tree.listing();
    test::as_plain_user(tree, [&] {
      const auto store = open_settings_file(tree.url(c.file));
      store->set("new", 2);
      EXPECT_FALSE(store->synchronize());
      EXPECT_EQ(store->value("new"), PropertyList(2));
      EXPECT_FALSE(store->synchronize());
    });
    auto after = tree.listing();
    before.erase(lock_name);
    after.erase(lock_name);
    EXPECT_EQ(after, before);
    if (tree.exists("locked")) tree.mode("locked", 0700);
    for (const std::string& file : {std::string(name), within, std::string("file"), std::string("x")}) {
      struct stat status = {};
      if (lstat(tree.path(file).c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
      if (status.st_size > 64 << 20) continue;
      tree.mode(file, 0600);
      EXPECT_EQ(tree.read(file), old);
    }
  }
  const auto nowhere = open_settings_file(Url());
  EXPECT_TRUE(nowhere->synchronize());
  nowhere->add("count", 1);
  EXPECT_FALSE(nowhere->synchronize());
  EXPECT_EQ(nowhere->value("count"), PropertyList(1));
}

TEST(SettingsFile, a_value_that_could_not_be_read_back_is_not_written) {
  TempTree tree;
  tree.content(name, list_of({{"a", 1}}));
  PropertyList deep = 1;
  for (int i = 0; i < 64; ++i) deep = PropertyList::Array{std::move(deep)};
  const auto store = open_settings_file(tree.url(name));
  store->set("deep", std::move(deep));
  EXPECT_FALSE(store->synchronize());
  EXPECT_EQ(values_in(tree), (Values{{"a", 1}}));
  store->set("deep", 2);
  EXPECT_TRUE(store->synchronize());
}

TEST(SettingsFile, a_link_in_its_place_stays_and_its_target_changes) {
  TempTree tree;
  tree.content("dotfiles/real.plist", list_of({{"a", 1}}))
      .link(name, "config/link")
      .link("config/link", "../dotfiles/real.plist");
  tree.link("dangling", "dotfiles/new.plist");
  for (const char* link : {name, "dangling"}) {
    const auto store = open_settings_file(tree.url(link));
    store->set("b", 2);
    EXPECT_TRUE(store->synchronize());
  }
  EXPECT_EQ(values_in(tree, "dotfiles/real.plist"), (Values{{"a", 1}, {"b", 2}}));
  EXPECT_EQ(values_in(tree, "dotfiles/new.plist"), (Values{{"b", 2}}));
  struct stat status = {};
  ASSERT_EQ(lstat(tree.path(name).c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
}

TEST(RunSettings, keeps_to_itself_what_is_for_this_run) {
  auto owned = open_settings_file(Url());
  SettingsStore& below = *owned;
  below.set("number", 1);
  below.set("text", "below");
  below.set("other", true);
  RunSettings run(std::move(owned));

  run.set_for_this_run("number", 10);
  run.add("number", 5);
  run.set("new", 1);
  run.add("new", 1);
  run.remove("other");
  EXPECT_EQ(run.all(), (Values{{"number", 15}, {"text", "below"}, {"new", 2}}));
  EXPECT_EQ(below.all(), (Values{{"number", 1}, {"text", "below"}, {"new", 2}})) << "only other keys go through";
  run.remove("number");
  EXPECT_EQ(run.value("number"), std::nullopt) << "removed for this run is not what lies below";
  run.add("number", 2);
  EXPECT_EQ(run.value("number"), PropertyList(2));
  EXPECT_FALSE(run.synchronize()) << "the result of the store below";

  run.keep_in_memory();
  const Values before = below.all();
  run.set("text", "here");
  run.add("new", 7);
  run.remove("number");
  EXPECT_TRUE(run.synchronize());
  EXPECT_EQ(below.all(), before);
  EXPECT_EQ(run.all(), (Values{{"text", "here"}, {"new", 9}}));
}

TEST(AppSettings, reads_by_type_and_falls_back_to_launch_defaults) {
  struct Case {
    const char* why;
    std::optional<PropertyList> flag;
    bool as_plain;
    bool as_category;
    std::int64_t as_integer;
  };
  const Case cases[] = {
      {"never written", {}, false, true, 0}, {"false", false, false, false, 0},
      {"true", true, true, true, 1},         {"a whole number for a flag", 2, true, true, 2},
      {"0 for a flag", 0, false, false, 0},  {"another kind", "1", false, true, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const auto store = open_settings_file(Url());
    const AppSettings settings(*store);
    for (const char* key : {"Caches", "LargeFiles", "Browsers"}) {
      if (c.flag) store->set(key, *c.flag);
    }
    EXPECT_EQ(settings.boolean("LargeFiles"), c.as_plain);
    EXPECT_EQ(settings.boolean("Browsers"), c.as_plain) << "a category that is off at launch";
    EXPECT_EQ(settings.boolean("Caches"), c.as_category);
    EXPECT_EQ(settings.integer("Caches"), c.as_integer);
  }
  std::set<std::string_view> keys;
  for (const SettingRow& row : setting_rows()) {
    EXPECT_TRUE(keys.insert(row.key).second) << row.key << " is there twice";
    EXPECT_TRUE(!row.launch_default || row.type == SettingType::boolean) << row.key;
  }
}

TEST(AppSettings, a_launch_is_counted_and_forgets_the_choice_of_categories) {
  const TempTree tree;
  const Url file = tree.url(name);
  const auto launch = [&](bool uninstaller) {
    const auto store = open_settings_file(file);
    AppSettings settings(*store);
    settings.set_boolean("Caches", false);
    settings.set_boolean("Downloads", true);
    settings.set_boolean("LargeFiles", true);
    settings.set_boolean("Uninstaller Orvane", uninstaller);
    settings.count_launch();
  };
  for (const bool uninstaller : {false, true, false}) launch(uninstaller);
  EXPECT_EQ(values_in(tree), (Values{{"Caches", true},
                                     {"Logs", true},
                                     {"Remainders", true},
                                     {"Browsers", false},
                                     {"Mails", true},
                                     {"Downloads", false},
                                     {"Trash", true},
                                     {"LargeFiles", true},
                                     {"Uninstaller Orvane", false},
                                     {"appLaunchCount", 3},
                                     {"UOLaunchCount", 2}}));
}

}  // namespace
}  // namespace tarnby
