#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "places/linux_places.h"
#include "places/linux_texts.h"

namespace tarnby {

namespace {

using namespace linux_texts;

/// Caches of one owner, wherever they lie.
struct CacheRow {
  /// The key of a text where there is no owner, else empty: the row is called after its owner.
  const char* label;
  /// An id of the table of owners; empty where nobody minds.
  std::string_view owner;
  Root root;
  /// Patterns below the root: folders whose contents go, and files.
  Names places;
  Grade grade;
  const char* reason;
  const char* after;
  /// Of a folder only these; all of it when empty.
  Names only = {};
  bool starts_ticked = true;
};

constexpr const char* thumbnails_after =
    english("They are made again when you open a folder; with many pictures that takes minutes.");
constexpr const char* shaders_after = english("Games may stutter until they are translated again.");
constexpr const char* backup_after = english("The next backup takes much longer.");
constexpr const char* packages = english("%@ keeps lists of programs and their pictures here.");

constexpr CacheRow rows[] = {
    {english("Thumbnails"),
     "",
     Root::cache,
     {"thumbnails", "gnome-desktop-thumbnailer"},
     Grade::safe,
     english("Small pictures of your files that the file manager has made."),
     thumbnails_after},
    {english("Fonts"),
     "",
     Root::cache,
     {"fontconfig"},
     Grade::safe,
     english("Lists that the system has made of your fonts."),
     made_again},
    {english("Sounds and media"),
     "",
     Root::cache,
     {"gstreamer-1.0", "event-sound-cache.tdb.*"},
     Grade::safe,
     english("Lists that the system has made of its sounds and media plug-ins."),
     made_again},
    {english("Graphics driver"),
     "",
     Root::cache,
     {"mesa_shader_cache", "mesa_shader_cache_db", "nvidia/GLCache", "radv_builtin_shaders*", "qtshadercache-*"},
     Grade::costs_time,
     english("Programs that were translated for the graphics card."),
     shaders_after,
     {},
     false},
    {english("Graphics driver"),
     "",
     Root::home,
     {".nv/ComputeCache", ".nv/GLCache"},
     Grade::costs_time,
     english("Programs that were translated for the graphics card."),
     shaders_after,
     {},
     false},
    {nullptr, "gnome-software", Root::cache, {"gnome-software"}, Grade::costs_time, packages, loaded_again},
    {nullptr, "discover", Root::cache, {"discover"}, Grade::costs_time, packages, loaded_again},
    {english("Lists of programs"),
     "",
     Root::cache,
     {"appstream", "PackageKit", "flatpak/system-cache"},
     Grade::costs_time,
     english("Lists of the programs that can be installed."),
     loaded_again},
    {english("Lists of programs"),
     "",
     Root::data,
     {"flatpak/system-cache"},
     Grade::costs_time,
     english("Lists of the programs that can be installed."),
     loaded_again},
    {nullptr, "gimp", Root::cache, {"gimp", "babl", "gegl-0.4"}, Grade::costs_time, cache, cache_after},
    {nullptr, "evolution", Root::cache, {"evolution/WebKitCache"}, Grade::costs_time, cache, cache_after},
    {nullptr, "geary", Root::cache, {"geary/web-resources/WebKitCache"}, Grade::costs_time, cache, cache_after},
    {nullptr,
     "thunderbird",
     Root::cache,
     {"thunderbird/*"},
     Grade::safe,
     cache,
     cache_after,
     {"cache2", "startupCache", "safebrowsing"}},
    {nullptr,
     "claws-mail",
     Root::home,
     {".claws-mail/imapcache", ".claws-mail/newscache"},
     Grade::costs_time,
     cache,
     english("Messages that lie on the mail server are loaded again.")},
    {nullptr,
     "darktable",
     Root::cache,
     {"darktable/mipmaps-*"},
     Grade::costs_time,
     english("Small versions of your pictures that %@ has made."),
     english("They are made again; with a large collection that takes hours."),
     {},
     false},
    {english("Backups"),
     "",
     Root::cache,
     {"borg", "restic", "duplicity", "deja-dup"},
     Grade::costs_time,
     english("Lists of what the last backups hold."),
     backup_after,
     {},
     false},
    {english("Downloaded models"),
     "",
     Root::cache,
     {"huggingface", "torch", "whisper"},
     Grade::may_lose,
     english("Models that programs have downloaded. Some need an account to be loaded again."),
     loaded_again},
    {english("Browsers for tests"),
     "",
     Root::cache,
     {"ms-playwright", "puppeteer"},
     Grade::may_lose,
     english("Browsers that developers' tools have downloaded."),
     english("Tests fail until they are loaded again by hand.")},
    {nullptr, "spotify", Root::cache, {"spotify"}, Grade::costs_time, cache, cache_after},
    {nullptr,
     "steam",
     Root::data,
     {"Steam/appcache/httpcache", "Steam/appcache/librarycache", "Steam/depotcache", "Steam/config/htmlcache"},
     Grade::costs_time,
     cache,
     cache_after},
};

/// In the folder for caches, but told of elsewhere: by another category, or by the rows of developers' tools.
constexpr std::string_view told_elsewhere[] = {
    "mozilla", "librewolf", "waterfox", "zen", "chromium", "google-chrome", "google-chrome-beta",
    "google-chrome-unstable", "BraveSoftware", "microsoft-edge", "microsoft-edge-beta", "microsoft-edge-dev", "vivaldi",
    "vivaldi-snapshot", "opera", "opera-beta", "opera-developer", "epiphany", "gdm", "mutt", "neomutt",
    // Developers' tools.
    "pip", "uv", "pypoetry", "pdm", "pipenv", "hatch", "pipx", "virtualenv", "yarn", "pnpm", "bun", ".bun", "deno",
    "node-gyp", "electron", "electron-builder", "Cypress", "typescript", "turbo", "node", "go-build", "ccache",
    "sccache", "bazel", "bazelisk", "composer", "cabal", "pre-commit", "containers", "R", "renv", "yay", "paru",
    "JetBrains", "Google", "terraform", "helm", "conda", "mamba", "gopls", "golangci-lint", "mypy", "ruff", "jedi",
    "black", "matplotlib", "org.gradle", "maven", "act", "trivy"};

/// What an application that is built on a browser keeps in its folder for settings and can do without.
constexpr Names embedded_browser_caches = {
    "Cache",       "Code Cache",          "GPUCache",      "DawnCache",         "DawnGraphiteCache",
    "ShaderCache", "DawnWebGPUCache",     "GrShaderCache", "GraphiteDawnCache", "component_crx_cache",
    "CachedData",  "CachedExtensionVSIXs"};

/// Folders for settings that belong to browsers, which have a category of their own.
constexpr std::string_view browser_settings[] = {"chromium",
                                                 "google-chrome",
                                                 "google-chrome-beta",
                                                 "google-chrome-unstable",
                                                 "BraveSoftware",
                                                 "microsoft-edge",
                                                 "microsoft-edge-beta",
                                                 "microsoft-edge-dev",
                                                 "vivaldi",
                                                 "vivaldi-snapshot",
                                                 "opera",
                                                 "opera-beta",
                                                 "opera-developer"};

template <typename List>
bool contains(const List& list, std::string_view name) {
  return std::ranges::find(list, name) != std::end(list);
}

/// By the table, by a desktop entry, or unknown.
Owner owner_by_folder(const LinuxPlaces& home, std::string_view folder) {
  if (const OwnerRow* row = owner_of_folder(folder)) return owner_at(home, *row);
  if (const DesktopEntry* entry = home.applications.of_folder(folder)) {
    // A program that others start shows no executable of its own, so nobody could tell whether it runs.
    const bool has_program = !entry->program_name().empty();
    return {has_program ? Owner::Kind::program : Owner::Kind::unknown,
            entry->id,
            entry->name,
            {std::string(entry->program_name())},
            {}};
  }
  return {};
}

Owner owner_of_row(const LinuxPlaces& home, const CacheRow& row) {
  if (row.owner.empty()) return {Owner::Kind::nobody, {}, {}, {}, {}};
  return owner_at(home, *owner_row(row.owner));
}

/// The part of a path below a folder, without the slash between them.
std::string_view below(const Url& folder, const Url& url) {
  return std::string_view(url.path()).substr(folder.path().size() + 1);
}

void add_locations(const LinuxPlaces& home, const CacheRow& row, std::vector<Url>& to) {
  const Url& root = root_of(home, row.root);
  for (const std::string_view pattern : row.places) {
    for (const Url& place : matching(home.files, root, pattern)) {
      if (place.listed_kind() != EntryKind::folder) {
        to.push_back(place);
      } else if (row.only.empty()) {
        add_contents(home, place, row.root == Root::cache ? below(root, place) : std::string_view(), to);
      } else {
        for (const std::string_view name : row.only)
          std::ranges::move(matching(home.files, place, name), std::back_inserter(to));
      }
    }
  }
}

Offer offer_of(const LinuxPlaces& home, const CacheRow& row) {
  Offer offer;
  offer.owner = owner_of_row(home, row);
  offer.label_is_key = row.label != nullptr;
  offer.label = row.label ? row.label : offer.owner.name;
  offer.subject = offer.owner.name;
  offer.grade = row.grade;
  offer.starts_ticked = row.starts_ticked && row.grade != Grade::may_lose;
  offer.reason = row.reason;
  offer.after = row.after;
  add_locations(home, row, offer.locations);
  return offer;
}

bool is_in_rows(std::string_view folder) {
  return std::ranges::any_of(rows, [&](const CacheRow& row) {
    return row.root == Root::cache && std::ranges::any_of(row.places, [&](std::string_view place) {
             return place.substr(0, place.find('/')) == folder;
           });
  });
}

constexpr const char* unknown_cache =
    english("It lies in the folder for caches, and belongs to no application that is known here.");

/// A row for each folder in the folder for caches that no other row tells of.
void add_others(const LinuxPlaces& home, std::vector<Offer>& offers) {
  std::map<std::string, Offer> by_owner;
  for (const Entry& entry : home.files.list(home.folders.cache, Hidden::take)) {
    const std::string name(entry.url.last_path_component());
    if (entry.kind != EntryKind::folder || is_kept(name) || is_in_rows(name) || contains(told_elsewhere, name))
      continue;
    Owner owner = owner_by_folder(home, name);
    const bool is_known = owner.kind != Owner::Kind::unknown;
    Offer& offer = by_owner[is_known ? owner.name : name];
    if (offer.label.empty()) {
      offer.label = offer.subject = is_known ? owner.name : name;
      offer.owner = std::move(owner);
      offer.starts_ticked = is_known;
      offer.reason = is_known ? cache : unknown_cache;
      offer.after = cache_after;
    }
    add_contents(home, entry.url, name, offer.locations);
  }
  for (auto& [name, offer] : by_owner) offers.push_back(std::move(offer));
}

constexpr const char* sandbox_cache = english("%@ runs in a sandbox and keeps copies here to be faster.");

Offer sandbox_offer(Owner owner) {
  Offer offer;
  offer.label = offer.subject = owner.name;
  offer.owner = std::move(owner);
  offer.reason = sandbox_cache;
  offer.after = cache_after;
  return offer;
}

/// The running sandbox writes into these two, so they stay as folders.
constexpr std::string_view flatpak_folders[] = {"tmp", "fontconfig"};

void add_flatpaks(const LinuxPlaces& home, std::vector<Offer>& offers) {
  for (const Entry& entry : home.files.list(home.home.appending(".var/app"))) {
    if (entry.kind != EntryKind::folder) continue;
    const std::string id(entry.url.last_path_component());
    const DesktopEntry* application = home.applications.of_flatpak(id);
    Offer offer = sandbox_offer({Owner::Kind::flatpak, id, application ? application->name : id, {}, {}});
    for (const Entry& part : home.files.list(entry.url.appending("cache"), Hidden::take)) {
      const std::string_view name = part.url.last_path_component();
      if (contains(flatpak_folders, name)) {
        add_contents(home, part.url, {}, offer.locations);
      } else if (part.kind != EntryKind::folder) {
        if (!is_kept(name)) offer.locations.push_back(part.url.listed_as(part.kind));
      } else if (!contains(told_elsewhere, name)) {
        add_contents(home, part.url, name, offer.locations);
      }
    }
    offers.push_back(std::move(offer));
  }
}

/// Of each revision, and what its revisions share; the link "current" leads to one of them.
void add_snaps(const LinuxPlaces& home, std::vector<Offer>& offers) {
  for (const Entry& entry : home.files.list(home.home.appending("snap"))) {
    if (entry.kind != EntryKind::folder) continue;
    const std::string name(entry.url.last_path_component());
    const DesktopEntry* application = home.applications.of_snap(name);
    Offer offer = sandbox_offer({Owner::Kind::snap, name, application ? application->name : name, {}, {}});
    for (const Url& part : matching(home.files, entry.url, "*/.cache/*")) {
      const std::string_view folder = part.last_path_component();
      if (contains(told_elsewhere, folder) || is_kept(folder)) continue;
      if (part.listed_kind() == EntryKind::folder) {
        add_contents(home, part, folder, offer.locations);
      } else {
        offer.locations.push_back(part);
      }
    }
    offers.push_back(std::move(offer));
  }
}

/// A folder for settings whose owner is built on a browser, told by what every such browser leaves in it. A folder
/// called "Cache" elsewhere among settings is no cache.
bool embeds_browser(const FileManager& files, const Url& folder) {
  return files.status(folder.appending("Local State")).kind == EntryKind::file &&
         (files.is_folder(folder.appending("Local Storage")) ||
          files.status(folder.appending("Preferences")).kind == EntryKind::file);
}

void add_embedded_browsers(const LinuxPlaces& home, std::vector<Offer>& offers) {
  for (const Entry& entry : home.files.list(home.folders.config)) {
    const std::string name(entry.url.last_path_component());
    if (entry.kind != EntryKind::folder || contains(browser_settings, name) || !embeds_browser(home.files, entry.url))
      continue;
    Offer offer;
    offer.owner = owner_by_folder(home, name);
    if (offer.owner.name.empty()) offer.owner.name = name;
    // Whatever the program is called, it holds this lock while it runs.
    for (Url& lock : matching(home.files, entry.url, "Local Storage/leveldb/LOCK")) {
      offer.owner.locks.push_back(std::move(lock));
    }
    offer.label = offer.subject = offer.owner.name;
    offer.grade = Grade::safe;
    offer.starts_ticked = offer.owner.kind != Owner::Kind::unknown;
    offer.reason = cache;
    offer.after = cache_after;
    std::vector<Url> profiles = matching(home.files, entry.url, "Partitions/*");
    profiles.insert(profiles.begin(), entry.url);
    for (const Url& profile : profiles) {
      for (const std::string_view cached : embedded_browser_caches) {
        for (const Url& folder : matching(home.files, profile, cached)) add_contents(home, folder, {}, offer.locations);
      }
    }
    offers.push_back(std::move(offer));
  }
}

/// One row an owner: what several rules have found of one application stands in one row where it is worth the same.
std::vector<Offer> merged(std::vector<Offer> offers) {
  std::vector<Offer> rows_of_owners;
  for (Offer& offer : offers) {
    if (offer.locations.empty()) continue;
    const auto same = std::ranges::find_if(rows_of_owners, [&](const Offer& row) {
      return row.label == offer.label && row.owner.kind == offer.owner.kind && row.owner.id == offer.owner.id &&
             row.grade == offer.grade && row.reason == offer.reason && row.starts_ticked == offer.starts_ticked;
    });
    if (same == rows_of_owners.end()) {
      rows_of_owners.push_back(std::move(offer));
    } else {
      std::ranges::move(offer.locations, std::back_inserter(same->locations));
    }
  }
  return rows_of_owners;
}

}  // namespace

std::vector<Offer> cache_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  for (const CacheRow& row : rows) offers.push_back(offer_of(home, row));
  add_others(home, offers);
  add_embedded_browsers(home, offers);
  add_flatpaks(home, offers);
  add_snaps(home, offers);
  return merged(std::move(offers));
}

}  // namespace tarnby
