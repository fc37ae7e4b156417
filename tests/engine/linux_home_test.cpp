#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <string>

#include "engine/why_left.h"
#include "platform/platform.h"
#include "tests/engine/test_engine.h"
#include "tools/linux_home_files.h"

namespace tarnby::test {
namespace {

using testing::Contains;

using enum Fate;

class LinuxHome : public testing::Test {
 protected:
  void make_home() {
    for (const LinuxHomeFile& row : linux_home_files()) user.tree.content("ada/" + std::string(row.path), "content");
    user.tree.folder("ada/.config/Signal/Local Storage");
  }

  /// Everything in any group that this takes, removed as the window and the terminal do it.
  std::vector<Removal> remove(RowsTaken taken) {
    std::vector<std::string_view> types;
    for (const Category& category : smart_categories()) types.push_back(category.type);
    engine.cleaner.files = select_groups(engine.cleaner, types, taken).files;
    return engine.cleaner.remove_files();
  }

  std::vector<std::string> labels(std::string_view type) const {
    std::vector<std::string> found;
    for (const CleanerEntry& entry : (engine.cleaner.*category_row(type)->item)->items)
      found.push_back(label_of(entry));
    return found;
  }

  std::shared_ptr<OfferedItem> row(std::string_view type, std::string_view label) const {
    for (const CleanerEntry& entry : (engine.cleaner.*category_row(type)->item)->items) {
      const auto& item = std::get<std::shared_ptr<OfferedItem>>(entry);
      if (item->offer.label == label && !item->offer.label_suffix) return item;
    }
    ADD_FAILURE() << "no row \"" << label << "\" in " << type;
    return std::make_shared<OfferedItem>();
  }

  TestPlatform user;
  Engine engine{user};
};

TEST_F(LinuxHome, what_is_ticked_at_first_takes_what_it_should_and_nothing_else) {
  make_home();
  user.processes();
  engine.scan();
  EXPECT_EQ(engine.cleaner.layout(), HomeKind::linux_desktop);
  remove(RowsTaken::ticked_at_first);
  for (const LinuxHomeFile& row : linux_home_files()) {
    EXPECT_EQ(user.tree.exists("ada/" + std::string(row.path)), row.fate != goes) << row.path;
  }
}

TEST_F(LinuxHome, what_is_no_rubbish_stays_though_everything_is_ticked) {
  make_home();
  user.processes();
  engine.scan();
  remove(RowsTaken::all_that_may_go);
  for (const LinuxHomeFile& row : linux_home_files()) {
    EXPECT_EQ(user.tree.exists("ada/" + std::string(row.path)), row.fate == stays) << row.path;
  }
  for (const char* folder : {".cache", ".cache/thumbnails", ".var/app/org.example.Viewer/cache/tmp",
                             ".local/share/Trash/files", ".local/share/Trash/info", "Downloads"}) {
    EXPECT_TRUE(user.tree.exists("ada/" + std::string(folder))) << folder << ": programs look for it by name";
  }
  engine.scan();
  EXPECT_EQ(select_groups(engine.cleaner, std::vector<std::string_view>{"caches", "logs", "browsers", "trash"},
                          RowsTaken::all_that_may_go)
                .files,
            std::vector<Url>())
      << "a second scan finds nothing to remove";
}

TEST_F(LinuxHome, nothing_of_a_program_that_runs_is_taken) {
  make_home();
  user.processes({"/usr/lib/firefox-esr/firefox-esr"});
  engine.scan();
  EXPECT_EQ(row("browsers", "Firefox")->running, Running::yes);
  EXPECT_FALSE(row("browsers", "Firefox")->starts_ticked());
  EXPECT_EQ(row("browsers", "Chromium")->running, Running::no);
  remove(RowsTaken::all_that_may_go);
  EXPECT_TRUE(user.tree.exists("ada/.cache/mozilla/firefox/p1.default-esr/cache2/entries/A"));
  EXPECT_FALSE(user.tree.exists("ada/.cache/chromium/Default/Cache/Cache_Data/f_1"));
}

TEST_F(LinuxHome, a_program_that_starts_between_look_and_removal_keeps_its_files) {
  make_home();
  user.processes();
  engine.scan();
  user.process(900, "/usr/lib/chromium/chromium");
  const std::vector<Removal> removals = remove(RowsTaken::ticked_at_first);
  EXPECT_TRUE(user.tree.exists("ada/.cache/chromium/Default/Cache/Cache_Data/f_1"));
  EXPECT_FALSE(user.tree.exists("ada/.cache/mozilla/firefox/p1.default-esr/cache2/entries/A"));
  const auto left = left_of(user.files, engine.cleaner.files, removals);
  ASSERT_FALSE(left.empty());
  for (const LeftEntry& entry : left) EXPECT_EQ(entry.reason, LeftReason::owner_runs) << entry.url.path();
}

TEST_F(LinuxHome, where_nobody_can_tell_what_runs_nothing_with_an_owner_goes) {
  make_home();
  engine.scan();
  EXPECT_EQ(row("browsers", "Firefox")->running, Running::unknown);
  remove(RowsTaken::all_that_may_go);
  EXPECT_TRUE(user.tree.exists("ada/.cache/mozilla/firefox/p1.default-esr/cache2/entries/A"));
  EXPECT_TRUE(user.tree.exists("ada/.var/app/org.example.Viewer/cache/pages/1"));
  EXPECT_FALSE(user.tree.exists("ada/.cache/thumbnails/large/1f.png")) << "nobody minds when thumbnails go";
}

TEST_F(LinuxHome, the_junk_run_takes_only_what_is_ticked_at_first) {
  make_home();
  user.processes();
  for (const Category& category : junk_categories()) user.settings.set_boolean(category.setting, true);
  engine.cleaner.clean_with_complete_handler([] {});
  EXPECT_GT(engine.cleaner.apps_caches_item->size, 0);
  ASSERT_TRUE(engine.cleaner.browser_mozilla_item);
  const auto& all = engine.cleaner.browser_item->files;
  for (const Url& file : engine.cleaner.browser_mozilla_item->files) {
    EXPECT_THAT(all, Contains(file)) << "people choose from what is in the category";
  }
  EXPECT_EQ(engine.cleaner.browser_safari_item, nullptr);
  engine.cleaner.cleanup_with_complete_handler([] {});
  for (const LinuxHomeFile& row : linux_home_files()) {
    const bool is_installer = std::string_view(row.path).starts_with("Downloads/");
    EXPECT_EQ(user.tree.exists("ada/" + std::string(row.path)), row.fate != goes || is_installer) << row.path;
  }
}

TEST_F(LinuxHome, what_is_told_is_what_the_disk_gives_back) {
  user.processes();
  user.tree.content("ada/.cache/vlc/art/cover", std::string(100'000, 'x'));
  user.tree.content("ada/.cache/vlc/art/small", "x").file("ada/.cache/vlc/art/hole", 50'000'000);
  user.tree.folder("ada/Pictures");
  ASSERT_EQ(::link(user.tree.path("ada/.cache/vlc/art/cover").c_str(), user.tree.path("ada/Pictures/cover").c_str()),
            0);
  engine.scan();
  const auto vlc = row("caches", "VLC");
  EXPECT_GE(vlc->size, 100'000);
  EXPECT_LT(vlc->frees, 50'000) << "neither the hole nor what has another name is given back";
  std::int64_t given_back = 0;
  for (const Removal& removal : remove(RowsTaken::ticked_at_first)) given_back += removal.bytes;
  EXPECT_EQ(given_back, vlc->frees);
  EXPECT_TRUE(user.tree.exists("ada/Pictures/cover"));
}

TEST_F(LinuxHome, data_of_sandboxes_is_left_over_only_where_every_installation_says_so) {
  user.processes();
  user.tree.folder("ada/.config");
  constexpr std::int64_t before_spring = 1'580'000'000;
  constexpr std::int64_t yesterday = 1'599'920'000;
  const std::pair<const char*, std::int64_t> data[] = {
      {"org.gone.App", before_spring},  {"org.half.App", before_spring}, {"org.here.App", before_spring},
      {"org.third.App", before_spring}, {"org.lately.App", yesterday},   {"justafolder.d", before_spring}};
  for (const auto& [id, changed] : data) {
    const std::string file = "ada/.var/app/" + std::string(id) + "/data/game.save";
    user.tree.content(file, "x");
    user.times(file, changed, changed);
  }
  user.tree.link("system/var/lib/flatpak/app/org.here.App/current", "x86_64/stable");
  user.tree.folder("system/var/lib/flatpak/app/org.half.App/x86_64");  // an install that failed
  user.tree.content("system/etc/flatpak/installations.d/big.conf",
                    "[Installation \"big\"]\nPath=" + user.tree.path("big") + "\n");
  user.tree.link("big/app/org.third.App/current", "x86_64/stable");
  engine.scan();
  EXPECT_THAT(labels("remainders"), testing::UnorderedElementsAre("org.gone.App", "org.half.App"));
  EXPECT_FALSE(row("remainders", "org.gone.App")->starts_ticked());
}

TEST_F(LinuxHome, where_an_installation_may_not_be_read_nothing_of_sandboxes_is_left_over) {
  user.processes();
  user.tree.folder("ada/.config");
  constexpr std::int64_t before_spring = 1'580'000'000;
  user.tree.content("ada/.var/app/org.gone.App/data/game.save", "x").folder("system/var/lib/flatpak/app");
  user.times("ada/.var/app/org.gone.App/data/game.save", before_spring, before_spring);
  user.tree.mode("system/var/lib/flatpak/app", 0000);
  as_plain_user(user.tree, [&] {
    engine.scan();
    EXPECT_THAT(labels("remainders"), testing::IsEmpty()) << "it may hold anything";
  });
  user.tree.mode("system/var/lib/flatpak/app", 0755);
}

TEST_F(LinuxHome, a_place_that_is_a_link_is_told_and_not_followed) {
  user.processes();
  user.tree.folder("ada/.config").content("elsewhere/vlc/art", "x").link("ada/.cache", user.tree.path("elsewhere"));
  engine.scan();
  EXPECT_THAT(labels("caches"), testing::IsEmpty());
  ASSERT_TRUE(engine.cleaner.problem_of("caches"));
  EXPECT_EQ(engine.cleaner.problem_of("caches")->kind, LookProblem::Kind::elsewhere);
  EXPECT_EQ(engine.cleaner.problem_of("caches")->name, "~/.cache");
  EXPECT_FALSE(engine.cleaner.problem_of("installs"));
}

TEST_F(LinuxHome, the_trash_is_told_by_the_names_that_things_had) {
  user.processes();
  user.tree.folder("ada/.config").content("ada/.local/share/Trash/files/a.2.txt", "x");
  user.tree.content("ada/.local/share/Trash/info/a.2.txt.trashinfo",
                    "[Trash Info]\nPath=/home/ada/Documents/%C3%A4%20b%25.txt\nDeletionDate=2026-01-02T03:04:05\n");
  user.tree.content("ada/.local/share/Trash/files/without-info", "x");
  user.settings.set_boolean("Trash", false);
  engine.scan();
  EXPECT_THAT(labels("trash"), testing::UnorderedElementsAre("ä b%.txt", "without-info"));
  EXPECT_FALSE(row("trash", "without-info")->starts_ticked()) << "the switch of the settings says so";
}

TEST_F(LinuxHome, the_trash_keeps_the_note_of_what_could_not_be_removed) {
  user.processes();
  user.tree.folder("ada/.config").content("ada/.local/share/Trash/files/locked/in/file", "x");
  user.tree.content("ada/.local/share/Trash/info/locked.trashinfo", "[Trash Info]\nPath=/home/ada/locked\n");
  user.tree.mode("ada/.local/share/Trash/files/locked/in", 0555);
  as_plain_user(user.tree, [&] {
    engine.scan();
    remove(RowsTaken::ticked_at_first);
    EXPECT_TRUE(user.tree.exists("ada/.local/share/Trash/files/locked/in/file"));
    EXPECT_TRUE(user.tree.exists("ada/.local/share/Trash/info/locked.trashinfo")) << "so that it can be put back";
  });
  user.tree.mode("ada/.local/share/Trash/files/locked/in", 0755);
}

}  // namespace
}  // namespace tarnby::test
