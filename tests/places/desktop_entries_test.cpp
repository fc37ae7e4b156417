#include "places/desktop_entries.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using Words = std::vector<std::string>;

std::string entry(std::string_view lines) {
  return "[Desktop Entry]\nType=Application\n" + std::string(lines);
}

TEST(DesktopEntry, tells_what_its_group_says_in_the_language_of_the_person) {
  const std::vector<std::string> languages = {"de-AT", "en-US"};
  const auto read = read_desktop_entry(
      "# made by hand\n[Desktop Entry]\nType=Application\nName=Web\nName[fr]=Toile\nName[de]=Netz\nName=Second\n"
      "Exec=env A=b \"/opt/my web/web\" --new %U\nTryExec=/opt/web\nStartupWMClass=Web-Win\nIcon=web\nNoDisplay=true\n"
      "X-SnapInstanceName=web_a\nX-AppImage-Version=1.2\n\n[Desktop Action new]\nName=New\nExec=other\nHidden=true\n"
      "[Desktop Entry]\nX-Flatpak=late\n",
      languages);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->name, "Netz");
  EXPECT_EQ(read->type, "Application");
  EXPECT_EQ(read->command, (Words{"env", "A=b", "/opt/my web/web", "--new"}));
  EXPECT_EQ(read->program(), "/opt/my web/web");
  EXPECT_EQ(read->program_name(), "web");
  EXPECT_EQ(read->try_exec, "/opt/web");
  EXPECT_EQ(read->window_class, "Web-Win");
  EXPECT_EQ(read->icon, "web");
  EXPECT_EQ(read->snap, "web_a");
  EXPECT_EQ(read->flatpak, "") << "what stands behind other groups is not looked at";
  EXPECT_TRUE(read->is_of_appimage);
  EXPECT_TRUE(read->is_not_displayed);
  EXPECT_FALSE(read->is_hidden) << "an action says nothing of the entry";

  EXPECT_FALSE(read_desktop_entry("", languages));
  EXPECT_FALSE(read_desktop_entry("Name=x\n[Other]\nName=y\n", languages));
  EXPECT_FALSE(read_desktop_entry(entry(std::string(300'000, '#')), languages));
}

TEST(DesktopEntry, commands_are_split_and_never_carried_out) {
  const std::pair<const char*, Words> cases[] = {
      {"", {}},
      {"  vlc  --started-from-file\t%U ", {"vlc", "--started-from-file"}},
      {R"("/opt/a b/c" "d\"e" "\$HOME" "\`x\`" "\\")", {"/opt/a b/c", "d\"e", "$HOME", "`x`", "\\"}},
      {R"("a\z" a\ b)", {"a\\z", "a b"}},
      {R"(env WINEPREFIX="/h/my wine" wine)", {"env", "WINEPREFIX=/h/my wine", "wine"}},
      {R"(sh -c 'rm -rf "$HOME"; $(id) `id` | x')", {"sh", "-c", R"(rm -rf "$HOME"; $(id) `id` | x)"}},
      {"/h/100%%/a.AppImage %f", {"/h/100%/a.AppImage"}},
      {"a --x=%u b%c", {"a", "--x=", "b"}},
      {R"(a "" %)", {"a", "", "%"}},
      {R"(a "not closed)", {}},
      {R"(a 'not closed)", {}},
      {"a \\", {"a", "\\"}},
      {"% a", {"a"}},
  };
  for (const auto& [command, words] : cases) EXPECT_EQ(words_of_command(command), words) << command;
  std::string many;
  for (int word = 0; word < 2'000; ++word) many += "a ";
  EXPECT_EQ(words_of_command(many), Words());
}

TEST(DesktopEntry, programs_that_start_others_are_nobodys) {
  const std::pair<const char*, const char*> cases[] = {
      {"/usr/bin/gimp-2.10 %U", "gimp-2.10"},
      {"/usr/bin/flatpak run --command=x org.x.Y", ""},
      {"env BAMF=/x /snap/bin/firefox %u", "firefox"},
      {"env -i A=b C=d", ""},
      {"sh -c 'gimp'", ""},
      {"/", ""},
      {"", ""},
  };
  for (const auto& [command, name] : cases) {
    EXPECT_EQ(read_desktop_entry(entry("Exec=" + std::string(command)), {})->program_name(), name) << command;
  }
}

class Menu : public testing::Test {
 protected:
  DesktopEntries read() const {
    return DesktopEntries::read({{tree.url("data/applications"), tree.url("flatpak"), tree.url("share")}, {}, true},
                                {});
  }
  /// The id of what owns a folder of that name, or "none".
  std::string owner(std::string_view folder) const {
    const DesktopEntries entries = read();
    const DesktopEntry* found = entries.of_folder(folder);
    return found == nullptr ? "none" : found->id;
  }
  test::TempTree tree;
};

TEST_F(Menu, folders_are_known_by_id_then_by_program_then_by_window) {
  tree.content("share/firefox-esr.desktop", entry("Exec=/usr/lib/firefox-esr/firefox-esr %u\nStartupWMClass=Fx-Win\n"));
  tree.content("share/kde/org.kde.Okular.desktop", entry("Exec=okular %U\nTryExec=okular-bin\n"));
  tree.content("share/game.desktop", entry("Exec=steam steam://rungameid/1\n"));
  tree.content("share/z-steam.desktop", entry("Exec=/usr/bin/steam %U\n"));
  tree.content("share/window.desktop", entry("Exec=/usr/bin/other\nStartupWMClass=okular\n"));
  const std::pair<const char*, const char*> cases[] = {
      {"firefox-esr", "firefox-esr.desktop"},
      {"FX-WIN", "firefox-esr.desktop"},
      {"Firefox-ESR", "firefox-esr.desktop"},
      {"kde-org.kde.Okular", "kde-org.kde.Okular.desktop"},
      {"okular", "kde-org.kde.Okular.desktop"},
      {"okular-bin", "kde-org.kde.Okular.desktop"},
      {"steam", "z-steam.desktop"},
      {"mozilla", "none"},
      {"", "none"},
      {"other", "window.desktop"},
  };
  for (const auto& [folder, id] : cases) EXPECT_EQ(owner(folder), id) << folder;
}

TEST_F(Menu, earlier_folders_override_and_what_a_user_hid_is_installed_all_the_same) {
  tree.content("data/applications/gimp.desktop", entry("Hidden=true\n"));
  tree.content("share/gimp.desktop", entry("Exec=gimp-2.10\nName=GIMP\n"));
  tree.content("share/vlc.desktop", entry("Exec=vlc\nName=Theirs\n"));
  tree.content("data/applications/vlc.desktop", entry("Exec=/opt/vlc\nName=Mine\n"));
  const DesktopEntries entries = read();
  ASSERT_EQ(entries.entries().size(), 2U);
  EXPECT_TRUE(entries.by_id("gimp.desktop")->is_hidden);
  EXPECT_EQ(entries.by_id("vlc.desktop")->name, "Mine");
  EXPECT_EQ(entries.by_id("vlc.desktop")->file, tree.url("data/applications/vlc.desktop"));
  EXPECT_EQ(entries.of_folder("gimp-2.10")->name, "GIMP");
}

TEST_F(Menu, flatpaks_and_snaps_are_found_behind_the_links_that_list_them) {
  tree.content("app/org.x.Y/export/org.x.Y.desktop", entry("X-Flatpak=org.x.Y\nExec=/usr/bin/flatpak run org.x.Y\n"));
  tree.link("flatpak/org.x.Y.desktop", "../app/org.x.Y/export/org.x.Y.desktop");
  tree.link("flatpak/org.x.Gone.desktop", "../app/org.x.Gone/export/org.x.Gone.desktop");
  tree.content("share/a_helper.desktop", entry("X-SnapInstanceName=a\nNoDisplay=true\nExec=/snap/bin/a.helper\n"));
  tree.content("share/a_a.desktop", entry("X-SnapInstanceName=a\nExec=/snap/bin/a\n"));
  const DesktopEntries entries = read();
  ASSERT_NE(entries.of_flatpak("org.x.Y"), nullptr);
  EXPECT_EQ(entries.of_flatpak("org.x.Y")->id, "org.x.Y.desktop");
  EXPECT_EQ(entries.of_flatpak("org.x.Gone"), nullptr);
  EXPECT_EQ(entries.of_snap("a")->id, "a_a.desktop");
  EXPECT_EQ(entries.of_folder("flatpak"), nullptr) << "what starts others is not theirs";
  EXPECT_TRUE(entries.is_complete()) << "a link that leads nowhere lists nothing";
}

TEST_F(Menu, only_plain_files_are_read_and_what_cannot_be_read_is_told) {
  tree.content("share/good.desktop", entry("Exec=good\n")).content("share/readme.txt", entry("Exec=no\n"));
  tree.content("share/not-an-entry.desktop",
               "\x7f"
               "ELF")
      .content("share/.desktop", entry("Exec=no\n"));
  tree.fifo("share/fifo.desktop").folder("share/folder.desktop").link("share/up", ".").link("share/up2", "../share");
  EXPECT_EQ(read().entries().size(), 1U);
  EXPECT_TRUE(read().is_complete()) << "the places that are missing are no fault, nor is what is no entry";

  tree.content("share/long.desktop", entry(std::string(300'000, '#')));
  EXPECT_FALSE(read().is_complete());
  tree.content("share/long.desktop", "");
  tree.link("share/self.desktop", "self.desktop");
  EXPECT_FALSE(read().is_complete()) << "a link in a circle";
  ASSERT_EQ(unlink(tree.path("share/self.desktop").c_str()), 0);
  EXPECT_TRUE(read().is_complete());
  test::as_plain_user(tree, [&] {
    tree.mode("share/good.desktop", 0000);
    EXPECT_FALSE(read().is_complete()) << "an entry that may not be read";
    tree.mode("share/good.desktop", 0600).mode("share", 0000);
    EXPECT_FALSE(read().is_complete()) << "a folder that may not be read";
    tree.mode("share", 0700);
  });
}

TEST_F(Menu, places_are_the_homes_then_flatpaks_then_the_systems) {
  tree.content("root/etc/flatpak/installations.d/more.conf",
               "[Installation \"a\"]\nPath=/a\n[Installation \"b\"]\nPath=b\n");
  tree.content("root/etc/flatpak/installations.d/off.bak", "[Installation \"c\"]\nPath=/c\n");
  const RegistryPlaces places = registry_places(Url::file("/h/.local/share"), tree.url("root"));
  const auto in_root = [&](std::string_view path) { return tree.url("root").appending(path); };
  EXPECT_EQ(places.flatpak_installations,
            (std::vector<Url>{Url::file("/h/.local/share/flatpak"), in_root("var/lib/flatpak"), Url::file("/a")}));
  ASSERT_EQ(places.applications.size(), 7U);
  EXPECT_EQ(places.applications[0], Url::file("/h/.local/share/applications"));
  EXPECT_EQ(places.applications[3], Url::file("/a/exports/share/applications"));
  EXPECT_EQ(places.applications[5], in_root("usr/share/applications"));
  EXPECT_TRUE(places.is_complete);
  EXPECT_TRUE(registry_places(Url(), tree.url("nothing")).is_complete);
  tree.content("root/etc/flatpak/installations.d/more.conf", std::string(2U << 20U, '#'));
  EXPECT_FALSE(registry_places(Url(), tree.url("root")).is_complete) << "nobody knows where that one lies";
}

}  // namespace
}  // namespace tarnby
