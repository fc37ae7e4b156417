#include "files/linux_home.h"

#include <fnmatch.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnby {

namespace {

enum class Base { home, cache, config, data, state };

struct BaseRow {
  Base base;
  std::string_view by_default;
  Url LinuxHome::*moved;
};

constexpr BaseRow bases[] = {
    {Base::cache, ".cache", &LinuxHome::cache},
    {Base::config, ".config", &LinuxHome::config},
    {Base::data, ".local/share", &LinuxHome::data},
    {Base::state, ".local/state", &LinuxHome::state},
};

struct NamesRow {
  Base base;
  std::string_view folder;
  std::vector<std::string> names;
};

const std::vector<NamesRow>& never_whole() {
  static const std::vector<NamesRow> rows = {
      {Base::home, "", {".android",    ".aws",
                        ".azure",      ".bun",
                        ".cabal",      ".cache",
                        ".cargo",      ".ccache",
                        ".claws-mail", ".conda",
                        ".config",     ".deno",
                        ".docker",     ".fonts",
                        ".gnupg",      ".gradle",
                        ".icons",      ".ivy2",
                        ".kube",       ".librewolf",
                        ".local",      ".m2",
                        ".mozilla",    ".npm",
                        ".nvm",        ".password-store",
                        ".pki",        ".rustup",
                        ".ssh",        ".steam",
                        ".themes",     ".thunderbird",
                        ".var",        ".waterfox",
                        ".wine",       ".zen",
                        "Desktop",     "Documents",
                        "Downloads",   "Music",
                        "Pictures",    "Public",
                        "Templates",   "Videos",
                        "bin",         "go",
                        "snap"}},
      {Base::home, ".local", {"bin", "lib", "pipx", "share", "state"}},
      {Base::home, ".var", {"app"}},
      {Base::cache, "", {"evolution", "keepassxc", "tracker3"}},
      {Base::config,
       "",
       {"BraveSoftware",
        "Code",
        "GIMP",
        "Thunar",
        "autostart",
        "borg",
        "chromium",
        "darktable",
        "dconf",
        "epiphany",
        "evolution",
        "gcloud",
        "geary",
        "git",
        "google-chrome",
        "gtk-3.0",
        "gtk-4.0",
        "inkscape",
        "keepassxc",
        "libreoffice",
        "microsoft-edge",
        "mimeapps.list",
        "mozilla",
        "mpv",
        "nautilus",
        "opera",
        "pulse",
        "systemd",
        "transmission",
        "user-dirs.dirs",
        "user-dirs.locale",
        "vivaldi",
        "vlc",
        "xfce4"}},
      {Base::data, "", {"Steam",     "Trash",     "akonadi",     "applications",  "containers",
                        "epiphany",  "evolution", "flatpak",     "folks",         "fonts",
                        "geary",     "gegl-0.4",  "gnome-shell", "gvfs-metadata", "icons",
                        "keyrings",  "kwalletd",  "nautilus",    "pipx",          "recently-used.xbel",
                        "rhythmbox", "themes",    "virtualenvs"}},
      {Base::data, "Trash", {"files", "info"}},
  };
  return rows;
}

struct PathRow {
  Base base;
  const char* path;
};

constexpr PathRow never_touched[] = {
    {Base::home, ".ssh"},
    {Base::home, ".gnupg"},
    {Base::home, ".aws"},
    {Base::home, ".azure"},
    {Base::home, ".kube"},
    {Base::home, ".pki"},
    {Base::home, ".password-store"},
    {Base::home, ".gcloud"},
    {Base::home, ".git-credentials"},
    {Base::home, ".netrc"},
    {Base::home, ".docker/config.json"},
    {Base::home, ".docker/contexts"},
    {Base::cache, "rclone/vfs"},  // written, and not uploaded yet
    {Base::cache, "rclone/vfsMeta"},
    {Base::config, "borg"},  // without its keys backups cannot be read
    {Base::config, "gcloud"},
    {Base::config, "git/credentials"},
    {Base::data, "keyrings"},
    {Base::data, "kwalletd"},
};

/// The same wherever they are: programs in a sandbox have little homes of their own, projects theirs.
constexpr std::string_view never_touched_names[] = {".ansible",         ".aws",   ".azure", ".env",  ".gcloud",
                                                    ".git-credentials", ".gnupg", ".idea",  ".kube", ".netrc",
                                                    ".password-store",  ".pki",   ".ssh"};

/// Folders whose own names nobody knows beforehand (glob(7)): profiles, and what sandboxed programs keep.
constexpr PathRow never_whole_patterns[] = {
    {Base::home, ".var/app/*/config"},
    {Base::home, ".var/app/*/data"},
    {Base::home, ".mozilla/firefox"},
    {Base::home, ".mozilla/firefox/*.*"},
    {Base::home, ".librewolf/*.*"},
    {Base::home, ".waterfox/*.*"},
    {Base::home, ".zen/*.*"},
    {Base::home, ".thunderbird/*.*"},
    {Base::config, "mozilla/firefox"},
    {Base::config, "mozilla/firefox/*.*"},
    {Base::config, "*/Default"},
    {Base::config, "*/Profile [0-9]*"},
    {Base::config, "*/Guest Profile"},
    {Base::config, "BraveSoftware/*"},
    {Base::config, "BraveSoftware/*/Default"},
    {Base::config, "BraveSoftware/*/Profile [0-9]*"},
    {Base::config, "libreoffice/*"},
    {Base::config, "libreoffice/*/user"},
};

/// The default place of a base, and the one it has been moved to.
std::vector<Url> places_of(Base base, const LinuxHome& home) {
  const auto* row = std::ranges::find(bases, base, &BaseRow::base);
  if (row == std::end(bases)) return {home.home};
  std::vector<Url> places = {home.home.appending(row->by_default)};
  const Url& moved = home.*row->moved;
  if (moved.is_file_url() && moved != places.front()) places.push_back(moved);
  return places;
}

/// What lies below a folder, relative to it; empty for what does not.
std::string_view relative_to(const Url& folder, const Url& entry) {
  if (entry == folder || !entry.is_within(folder)) return {};
  return std::string_view(entry.path()).substr(folder.path() == "/" ? 1 : folder.path().size() + 1);
}

/// The entry and each folder above it, up to the home.
void keep_with_all_above(const LinuxHome& home, const Url& entry, std::vector<KeptNames>& kept) {
  for (Url url = entry; !relative_to(home.home, url).empty(); url = url.parent()) {
    kept.push_back({url.parent(), {std::string(url.last_path_component())}});
  }
}

bool is_in_trash(const LinuxHome& home, const Url& entry) {
  return std::ranges::any_of(places_of(Base::data, home), [&](const Url& data) {
    const std::string_view path = relative_to(data, entry);
    return path.starts_with("Trash/files/") || path.starts_with("Trash/expunged/");
  });
}

bool has_kept_component(std::string_view path) {
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('/'));
    if (std::ranges::find(never_touched_names, name) != std::end(never_touched_names)) return true;
    path.remove_prefix(std::min(path.size(), name.size() + 1));
  }
  return false;
}

bool fits(const LinuxHome& home, const PathRow& row, const Url& entry) {
  return std::ranges::any_of(places_of(row.base, home), [&](const Url& place) {
    const std::string path(relative_to(place, entry));
    return !path.empty() && fnmatch(row.path, path.c_str(), FNM_PATHNAME) == 0;
  });
}

}  // namespace

std::vector<KeptNames> never_whole_in(const LinuxHome& home) {
  std::vector<KeptNames> kept;
  for (const NamesRow& row : never_whole()) {
    for (const Url& place : places_of(row.base, home)) kept.push_back({place.appending(row.folder), row.names});
  }
  for (const BaseRow& row : bases) {
    for (const Url& place : places_of(row.base, home)) keep_with_all_above(home, place, kept);
  }
  for (const Url& folder : home.own) keep_with_all_above(home, folder, kept);
  return kept;
}

std::vector<Url> never_touched_in(const LinuxHome& home) {
  std::vector<Url> kept;
  for (const PathRow& row : never_touched) {
    for (const Url& place : places_of(row.base, home)) kept.push_back(place.appending(row.path));
  }
  return kept;
}

bool is_kept_by_name(const LinuxHome& home, const Url& entry) {
  const std::string_view path = relative_to(home.home, entry);
  if (path.empty() || is_in_trash(home, entry)) return false;
  if (has_kept_component(path)) return true;
  const auto is_kept = [&](const Url& kept) { return entry.is_within(kept); };
  const auto is_pattern = [&](const PathRow& row) { return fits(home, row, entry); };
  return std::ranges::any_of(never_touched_in(home), is_kept) || std::ranges::any_of(never_whole_patterns, is_pattern);
}

}  // namespace tarnby
