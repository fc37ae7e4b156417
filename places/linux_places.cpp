#include "places/linux_places.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace tarnby {

namespace {

/// How many levels of folders below an application's own are looked through for something kept. Nothing known lies
/// deeper.
constexpr int depth_of_kept = 2;

bool matches(std::string_view name, std::string_view pattern) {
  const std::size_t star = pattern.find('*');
  if (star == std::string_view::npos) return name == pattern;
  const std::string_view head = pattern.substr(0, star);
  const std::string_view tail = pattern.substr(star + 1);
  return name.size() >= head.size() + tail.size() && name.starts_with(head) && name.ends_with(tail);
}

bool path_matches(std::string_view path, std::string_view pattern) {
  while (true) {
    const std::size_t path_end = path.find('/');
    const std::size_t pattern_end = pattern.find('/');
    if (!matches(path.substr(0, path_end), pattern.substr(0, pattern_end))) return false;
    if (path_end == std::string_view::npos || pattern_end == std::string_view::npos) return path_end == pattern_end;
    path.remove_prefix(path_end + 1);
    pattern.remove_prefix(pattern_end + 1);
  }
}

/// By its path below a folder for caches.
constexpr std::string_view kept_paths[] = {
    // Settings and databases of programs that keep them here.
    "keepassxc",
    "deno/location_data",
    "containers/short-name-aliases.conf",
    "ccache/ccache.conf",
    // Files that were written and not uploaded yet.
    "rclone/vfs",
    "rclone/vfsMeta",
    // Environments and indexes that projects use.
    "pypoetry/virtualenvs",
    "JetBrains/*/LocalHistory",
    "go-build/fuzz",
    // Mail, and what was changed in it and not sent yet.
    "evolution/mail",
    "evolution/addressbook",
    "evolution/calendar",
    "evolution/memos",
    "evolution/sources",
    "evolution/tasks",
    // Songs loaded for journeys.
    "spotify/Storage",
    // What the session and its desktop use while they run.
    "sessions",
    "obexd",
    "wallpaper",
    "gnome-control-center/backgrounds",
    "kwin",
    "plasmashell",
    "drkonqi",
    "icon-cache.kcache",
    "plasma_theme_*.kcache",
    "ksycoca6_*",
    "ksycoca5_*",
    "doc",
    "at-spi",
    "dconf",
    "gdk-pixbuf-loaders.cache",
    // Words that a person has taught an input method.
    "ibus",
    "ibus-table",
    "fcitx*",
    // Indexes of all files, whose service always runs.
    "tracker3",
    "tracker",
    "baloo",
};

/// By its name, wherever it lies in a folder for caches: what web applications store, which secure connections they
/// have seen, environments for programs, locks and settings.
constexpr std::string_view kept_names[] = {
    "CacheStorage", "hsts-storage.sqlite", "LocalHistory", "location_data", "virtualenvs", "venv", ".venv"};

/// A folder that holds one of these is kept whole.
constexpr std::string_view marks_of_kept[] = {"pyvenv.cfg"};

std::string joined(std::string_view path, std::string_view name) {
  return path.empty() ? std::string(name) : std::string(path) + "/" + std::string(name);
}

bool is_marked(const std::vector<Entry>& entries) {
  return std::ranges::any_of(entries, [](const Entry& entry) {
    return std::ranges::find(marks_of_kept, entry.url.last_path_component()) != std::end(marks_of_kept);
  });
}

/// What of a folder may go: all of it, some of it, or nothing.
struct Share {
  bool whole = true;
  std::vector<Url> parts;
};

Share share_of(const LinuxPlaces& home, const Url& folder, std::string_view path, int depth) {
  const std::vector<Entry> entries = home.files.list(folder, Hidden::take);
  if (is_marked(entries)) return {false, {}};
  Share share;
  for (const Entry& entry : entries) {
    const std::string below = joined(path, entry.url.last_path_component());
    if (is_kept(below)) {
      share.whole = false;
    } else if (entry.kind != EntryKind::folder || depth == 0) {
      share.parts.push_back(entry.url.listed_as(entry.kind));
    } else {
      Share inner = share_of(home, entry.url, below, depth - 1);
      if (inner.whole) {
        share.parts.push_back(entry.url.listed_as(entry.kind));
      } else {
        share.whole = false;
        std::ranges::move(inner.parts, std::back_inserter(share.parts));
      }
    }
  }
  return share;
}

struct CategoryRow {
  std::string_view type;
  std::vector<Offer> (*offers)(const LinuxPlaces&);
  /// Where most of it lies.
  std::vector<Url> (*places)(const UserFolders&);
};

constexpr CategoryRow categories[] = {
    {"caches", cache_offers, [](const UserFolders& folders) { return std::vector{folders.cache}; }},
    {"logs", log_offers, [](const UserFolders& folders) { return std::vector{folders.state}; }},
    {"remainders", leftover_offers, [](const UserFolders& folders) { return std::vector{folders.data}; }},
    {"browsers", browser_offers,
     [](const UserFolders& folders) {
       return std::vector{folders.cache, folders.config};
     }},
    {"mails", mail_offers, [](const UserFolders&) { return std::vector<Url>(); }},
    {"installs", installer_offers,
     [](const UserFolders& folders) {
       return std::vector{folders.downloads, folders.desktop, folders.documents};
     }},
    {"trash", trash_offers, [](const UserFolders& folders) { return std::vector{folders.data}; }},
};

/// The link among a folder and those above it in the home; nowhere when there is none.
Url link_on_the_way(const LinuxPlaces& home, Url folder) {
  Url link;
  for (; folder.is_within(home.home) && folder != home.home; folder = folder.parent()) {
    if (home.files.status(folder).kind == EntryKind::link) link = folder;
  }
  return link;
}

}  // namespace

const Url& root_of(const LinuxPlaces& home, Root root) {
  switch (root) {
    case Root::home:
      return home.home;
    case Root::cache:
      return home.folders.cache;
    case Root::config:
      return home.folders.config;
    case Root::data:
      return home.folders.data;
    case Root::state:
      return home.folders.state;
  }
  return home.home;
}

std::vector<Url> matching(const FileManager& files, const Url& root, std::string_view pattern) {
  const std::size_t end = pattern.find('/');
  const std::string_view first = pattern.substr(0, end);
  const bool is_last = end == std::string_view::npos;
  std::vector<Url> found;
  const auto add = [&](const Url& url, EntryKind kind) {
    if (kind == EntryKind::none || kind == EntryKind::link) return;
    if (is_last) return found.push_back(url.listed_as(kind));
    if (kind == EntryKind::folder)
      std::ranges::move(matching(files, url, pattern.substr(end + 1)), std::back_inserter(found));
  };
  if (first.find('*') == std::string_view::npos) {
    const Url url = root.appending(first);
    add(url, files.status(url).kind);
    return found;
  }
  for (const Entry& entry : files.list(root, Hidden::take)) {
    if (matches(entry.url.last_path_component(), first)) add(entry.url, entry.kind);
  }
  return found;
}

Owner owner_at(const LinuxPlaces& home, const OwnerRow& row) {
  Owner owner = owner_of(row);
  const auto add = [&](const Url& root, const Names& patterns) {
    for (const std::string_view pattern : patterns) {
      std::ranges::move(matching(home.files, root, pattern), std::back_inserter(owner.locks));
    }
  };
  add(home.home, row.locks_in_home);
  add(home.folders.config, row.locks_in_settings);
  return owner;
}

bool is_kept(std::string_view path) {
  return std::ranges::find(kept_names, last_component_of(path)) != std::end(kept_names) ||
         std::ranges::any_of(kept_paths, [&](std::string_view kept) { return path_matches(path, kept); });
}

void add_contents(const LinuxPlaces& home, const Url& folder, std::string_view path, std::vector<Url>& to) {
  if (home.files.stopped_looking()) return;
  if (!path.empty() && is_kept(path)) return;
  Share share = share_of(home, folder, path, depth_of_kept);
  std::ranges::move(share.parts, std::back_inserter(to));
}

std::vector<Offer> offers_of(const LinuxPlaces& home, std::string_view type) {
  const auto* row = std::ranges::find(categories, type, &CategoryRow::type);
  std::vector<Offer> offers = row == std::end(categories) ? std::vector<Offer>() : row->offers(home);
  std::erase_if(offers, [](const Offer& offer) { return offer.locations.empty(); });
  return offers;
}

Url lies_elsewhere(const LinuxPlaces& home, std::string_view type) {
  const auto* row = std::ranges::find(categories, type, &CategoryRow::type);
  if (row == std::end(categories)) return {};
  for (const Url& place : row->places(home.folders)) {
    if (Url link = link_on_the_way(home, place); !link.empty()) return link;
  }
  return {};
}

std::optional<std::int64_t> days_unchanged(const LinuxPlaces& home, const Url& entry) {
  const auto changed = home.metadata.modification_date(entry);
  return changed ? std::optional(days_between(*changed, home.now)) : std::nullopt;
}

}  // namespace tarnby
