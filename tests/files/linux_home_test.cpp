#include "files/linux_home.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "files/file_manager.h"
#include "tests/support/own_mounts.h"
#include "tests/support/temp_tree.h"

namespace tarnby {
namespace {

using test::TempTree;
using testing::Each;
using Paths = std::vector<std::string>;
using Listing = std::set<std::string>;

/// A granted Linux home "me" in which people use "mine/downloads" for what they load down.
struct Home {
  TempTree tree;
  FileManager files;

  void grant(bool is_moved = false) {
    ASSERT_TRUE(files.granted().add(Grant::home, tree.url("me")));
    LinuxHome home = {.home = tree.url("me"), .own = {tree.url("me/mine/downloads")}};
    if (is_moved) {
      home.cache = tree.url("me/dirs/cache");
      home.config = tree.url("me/dirs/config");
      home.data = tree.url("me/dirs/data");
      home.state = tree.url("me/dirs/state");
    }
    files.granted().guard_linux_home(home);
  }
  /// The error of each removal, held to what was said about it before.
  std::vector<int> remove(const Paths& paths) {
    std::vector<Url> urls;
    for (const std::string& path : paths) urls.push_back(tree.url("me/" + path));
    const std::vector<bool> refused = files.refuses_to_remove(urls);
    const auto removals = files.remove(urls);
    std::vector<int> errors;
    for (std::size_t i = 0; i < urls.size(); ++i) {
      errors.push_back(removals[i].error.value());
      EXPECT_EQ(refused[i], errors[i] == EPERM) << paths[i];
    }
    return errors;
  }
};

/// Where the base folders lie by default, and where they may have been moved to.
struct Bases {
  const char* cache;
  const char* config;
  const char* data;
  const char* state;
};
constexpr Bases by_default = {".cache", ".config", ".local/share", ".local/state"};
constexpr Bases moved = {"dirs/cache", "dirs/config", "dirs/data", "dirs/state"};

/// Paths of the home, separated by blanks, with CACHE, CONFIG, DATA, STATE for the base folders.
Paths paths_of(const std::string& text, const Bases& bases) {
  const std::pair<std::string, const char*> names[] = {
      {"CACHE", bases.cache}, {"CONFIG", bases.config}, {"DATA", bases.data}, {"STATE", bases.state}};
  Paths paths;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    for (const auto& [name, place] : names) {
      if (word.starts_with(name)) word.replace(0, name.size(), place);
    }
    paths.push_back(word);
  }
  return paths;
}

const char* const never_whole =
    "CACHE CONFIG DATA STATE .local .local/bin .var .var/app snap .mozilla .mozilla/firefox "
    ".mozilla/firefox/ab12.default "
    ".thunderbird .thunderbird/x.default .docker .cargo .rustup .m2 .gradle .npm .wine .steam .nvm .android "
    ".claws-mail "
    ".ccache Desktop Documents Downloads Music Pictures Public Templates Videos bin go mine mine/downloads "
    "CONFIG/systemd CONFIG/autostart CONFIG/dconf CONFIG/pulse CONFIG/gtk-3.0 CONFIG/gtk-4.0 CONFIG/mozilla "
    "CONFIG/mozilla/firefox/ab.default-esr CONFIG/google-chrome CONFIG/chromium CONFIG/chromium/Default "
    "CONFIG/BraveSoftware CONFIG/BraveSoftware/Brave-Browser CONFIG/microsoft-edge CONFIG/libreoffice "
    "CONFIG/libreoffice/4/user CONFIG/Code CONFIG/keepassxc CONFIG/user-dirs.dirs CONFIG/mimeapps.list CONFIG/GIMP "
    "CONFIG/evolution CONFIG/geary CONFIG/xfce4 CONFIG/Thunar CONFIG/transmission CONFIG/vlc CONFIG/mpv "
    "CONFIG/darktable CONFIG/inkscape CONFIG/epiphany CONFIG/nautilus DATA/Trash DATA/Trash/files DATA/Trash/info "
    "DATA/applications DATA/flatpak DATA/icons DATA/fonts DATA/themes DATA/evolution DATA/akonadi DATA/containers "
    "DATA/Steam DATA/gnome-shell DATA/gvfs-metadata DATA/geary DATA/epiphany DATA/nautilus DATA/rhythmbox DATA/folks "
    "DATA/gegl-0.4 DATA/recently-used.xbel CACHE/keepassxc CACHE/evolution CACHE/tracker3 .var/app/org.a.B/data "
    ".var/app/org.a.B/config";

const char* const never_at_all =
    ".ssh .gnupg .aws .azure .kube .pki .password-store .gcloud .git-credentials .netrc .docker/config.json "
    "CONFIG/borg CONFIG/gcloud DATA/keyrings DATA/kwalletd CACHE/rclone/vfs snap/chromium/3/.pki work/.env work/.idea "
    "work/deep/.ansible";

TEST(LinuxHome, keeps_what_it_cannot_do_without_and_everything_that_opens_doors) {
  for (const Bases& bases : {by_default, moved}) {
    SCOPED_TRACE(bases.cache);
    Home home;
    Paths kept = paths_of(never_whole, bases);
    for (const std::string& path : kept) home.tree.file("me/" + path + "/inside/1");
    for (const std::string& path : paths_of(never_at_all, bases)) {
      home.tree.file("me/" + path + "/inside/1");
      for (const char* below : {"", "/inside", "/inside/1"}) kept.push_back(path + below);
    }
    home.grant(bases.cache == std::string(moved.cache));
    const Listing all = home.tree.listing();
    EXPECT_THAT(home.remove(kept), Each(EPERM));
    EXPECT_EQ(home.tree.listing(), all);
  }
}

TEST(LinuxHome, gives_what_programs_can_make_again_and_what_was_thrown_away) {
  for (const Bases& bases : {by_default, moved}) {
    SCOPED_TRACE(bases.cache);
    Home home;
    const Paths given = paths_of(
        "CACHE/mozilla CACHE/chromium/Default CACHE/thumbnails/normal CACHE/keepassxc2 CONFIG/chromium/GPUCache "
        "CONFIG/chromium/Default/GPUCache .npm/_cacache go/pkg/mod/x@v1 .var/app/org.a.B .cargo/registry/src "
        "Downloads/x "
        "mine/downloads/x DATA/Trash/files/.env DATA/Trash/files/old/.ssh DATA/Trash/info/x .ssh2 "
        "CONFIG/mozilla/firefox/ab.x/minidumps",
        bases);
    for (const std::string& path : given) home.tree.file("me/" + path + "/inside/.env/1");
    home.grant(bases.cache == std::string(moved.cache));
    EXPECT_THAT(home.remove(given), Each(0));
  }
  TempTree tree;
  tree.file("me/.config/chromium/1").file("me/.ssh/1");
  FileManager files;
  ASSERT_TRUE(files.granted().add(Grant::home, tree.url("me")));
  const Url urls[] = {tree.url("me/.config"), tree.url("me/.ssh")};
  EXPECT_THAT(files.refuses_to_remove(urls), Each(false)) << "a home of the other kind has rules of its own";
}

TEST(LinuxHome, keeps_them_by_whatever_path_they_are_reached) {
  Home home;
  home.tree.file("me/old/way/1").file("me/old/2").file("me/.ssh/keys/1").file("me/mine/downloads/1");
  home.tree.file("me/other/way/1").file("me/safe/x");
  const bool ran = test::with_own_mounts([&] {
    home.grant();
    const auto bind = [&](const char* from, const char* to) {
      return mount(home.tree.path(from).c_str(), home.tree.path(to).c_str(), nullptr, MS_BIND, nullptr);
    };
    ASSERT_EQ(bind("me/.ssh", "me/other/way"), 0);
    EXPECT_THAT(home.remove({"other/way", "other/way/keys", "other/way/keys/1"}), Each(EPERM));
    ASSERT_EQ(bind("me", "me/old/way"), 0);
    EXPECT_THAT(home.remove({"old/way/.ssh", "old/way/mine/downloads", "old/way/.ssh/keys"}), Each(EPERM));
    EXPECT_THAT(home.remove({"old/way/safe"}), Each(0));
    EXPECT_TRUE(home.tree.exists("me/.ssh/keys/1") && home.tree.exists("me/mine/downloads/1"));
    home.tree.file("me/last/file");
    ASSERT_EQ(rename(home.tree.path("me/mine/downloads").c_str(), home.tree.path("me/last/moved").c_str()), 0);
    const Url last = home.tree.url("me/last");
    EXPECT_EQ(home.files.remove({&last, 1}).front().error.value(), EPERM) << "moved there since it was looked at";
    EXPECT_TRUE(home.tree.exists("me/last/moved/1") && !home.tree.exists("me/last/file"));
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

}  // namespace
}  // namespace tarnby
