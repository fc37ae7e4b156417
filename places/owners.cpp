#include "places/owners.h"

#include <algorithm>
#include <iterator>

namespace tarnby {

namespace {

constexpr OwnerRow rows[] = {
    {"firefox",
     "Firefox",
     {"firefox", "firefox-esr", "firefox-bin"},
     {"mozilla"},
     {".mozilla/firefox/*/.parentlock"},
     {"mozilla/firefox/*/.parentlock"}},
    {"librewolf",
     "LibreWolf",
     {"librewolf", "librewolf-bin"},
     {"librewolf"},
     {".librewolf/*/.parentlock"},
     {"librewolf/librewolf/*/.parentlock"}},
    {"waterfox", "Waterfox", {"waterfox", "waterfox-bin"}, {"waterfox"}, {".waterfox/*/.parentlock"}, {}},
    {"zen", "Zen", {"zen", "zen-bin"}, {"zen"}, {".zen/*/.parentlock"}, {}},
    {"thunderbird",
     "Thunderbird",
     {"thunderbird", "thunderbird-bin", "thunderbird-esr"},
     {"thunderbird"},
     {".thunderbird/*/.parentlock"},
     {}},
    {"chromium",
     "Chromium",
     {"chromium", "chromium-browser"},
     {"chromium"},
     {},
     {"chromium/*/Local Storage/leveldb/LOCK"}},
    {"google-chrome",
     "Google Chrome",
     {"chrome", "google-chrome", "google-chrome-stable", "google-chrome-beta", "google-chrome-unstable"},
     {"google-chrome", "google-chrome-beta", "google-chrome-unstable"},
     {},
     {"google-chrome/*/Local Storage/leveldb/LOCK", "google-chrome-beta/*/Local Storage/leveldb/LOCK",
      "google-chrome-unstable/*/Local Storage/leveldb/LOCK"}},
    {"brave",
     "Brave",
     {"brave", "brave-browser"},
     {"BraveSoftware"},
     {},
     {"BraveSoftware/*/*/Local Storage/leveldb/LOCK"}},
    {"microsoft-edge",
     "Microsoft Edge",
     {"msedge", "microsoft-edge", "microsoft-edge-stable", "microsoft-edge-beta", "microsoft-edge-dev"},
     {"microsoft-edge", "microsoft-edge-beta", "microsoft-edge-dev"},
     {},
     {"microsoft-edge/*/Local Storage/leveldb/LOCK", "microsoft-edge-beta/*/Local Storage/leveldb/LOCK",
      "microsoft-edge-dev/*/Local Storage/leveldb/LOCK"}},
    {"vivaldi",
     "Vivaldi",
     {"vivaldi", "vivaldi-bin", "vivaldi-stable", "vivaldi-snapshot"},
     {"vivaldi", "vivaldi-snapshot"},
     {},
     {"vivaldi/*/Local Storage/leveldb/LOCK", "vivaldi-snapshot/*/Local Storage/leveldb/LOCK"}},
    {"opera",
     "Opera",
     {"opera", "opera-beta", "opera-developer"},
     {"opera", "opera-beta", "opera-developer"},
     {},
     {"opera/*/Local Storage/leveldb/LOCK", "opera-beta/*/Local Storage/leveldb/LOCK",
      "opera-developer/*/Local Storage/leveldb/LOCK"}},
    {"epiphany", "GNOME Web", {"epiphany", "epiphany-browser", "WebKitNetworkProcess"}, {"epiphany"}},
    {"evolution", "Evolution", {"evolution"}, {"evolution"}},
    {"geary", "Geary", {"geary"}, {"geary"}},
    {"claws-mail", "Claws Mail", {"claws-mail"}, {".claws-mail"}},
    {"libreoffice",
     "LibreOffice",
     {"soffice.bin", "oosplash"},
     {"libreoffice"},
     {},
     {"libreoffice/4/user/uno_packages/cache/uno_packages.pmap"}},
    {"gimp", "GIMP", {"gimp", "gimp-2.10", "gimp-2.99", "gimp-3.0"}, {"gimp", "babl", "gegl-0.4", "GIMP"}},
    {"inkscape", "Inkscape", {"inkscape"}, {"inkscape"}},
    {"darktable", "darktable", {"darktable"}, {"darktable"}},
    {"shotwell", "Shotwell", {"shotwell"}, {"shotwell"}},
    {"vlc", "VLC", {"vlc"}, {"vlc"}},
    {"mpv", "mpv", {"mpv"}, {"mpv"}},
    {"totem", "Videos", {"totem"}, {"totem"}},
    {"rhythmbox", "Rhythmbox", {"rhythmbox"}, {"rhythmbox"}},
    {"spotify", "Spotify", {"spotify"}, {"spotify"}},
    {"transmission", "Transmission", {"transmission-gtk", "transmission-qt"}, {"transmission"}},
    {"gnome-software", "Software", {"gnome-software"}, {"gnome-software"}},
    {"discover", "Discover", {"plasma-discover"}, {"discover"}},
    {"steam", "Steam", {"steam", "steamwebhelper"}, {"Steam"}},
    {"lutris", "Lutris", {"lutris"}, {"lutris"}},
    {"wine", "Wine", {"wineserver", "wine", "wine64"}, {"wine", "winetricks"}},
    {"code", "Visual Studio Code", {"code"}, {"Code", "vscode-cpptools"}},
    {"neovim", "Neovim", {"nvim"}, {"nvim"}},
};

}  // namespace

const OwnerRow* owner_row(std::string_view id) {
  const auto* row = std::ranges::find(rows, id, &OwnerRow::id);
  return row == std::end(rows) ? nullptr : row;
}

const OwnerRow* owner_of_folder(std::string_view folder) {
  const auto* row = std::ranges::find_if(rows, [&](const OwnerRow& owner) { return owner.folders.contain(folder); });
  return row == std::end(rows) ? nullptr : row;
}

Owner owner_of(const OwnerRow& row) {
  return {Owner::Kind::program, std::string(row.id), row.name, {row.programs.begin(), row.programs.end()}, {}};
}

}  // namespace tarnby
