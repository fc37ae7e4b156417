#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "places/linux_places.h"
#include "text/localization.h"

namespace tarnby {

namespace {

enum class Family : std::uint8_t { mozilla, chromium, webkit };

/// A browser and its folders. Its profiles are all the folders in these, whatever their names.
struct BrowserRow {
  std::string_view owner;
  Family family;
  /// Below the home folder, the folder for settings and the folder for caches.
  Names in_home;
  Names in_settings;
  Names in_caches;
  /// Its sandboxed twins.
  Names flatpaks = {};
  Names snaps = {};
};

constexpr BrowserRow browsers[] = {
    {"firefox",
     Family::mozilla,
     {".mozilla/firefox"},
     {"mozilla/firefox"},
     {"mozilla/firefox"},
     {"org.mozilla.firefox"},
     {"firefox"}},
    {"librewolf",
     Family::mozilla,
     {".librewolf"},
     {"librewolf/librewolf"},
     {"librewolf"},
     {"io.gitlab.librewolf-community"}},
    {"waterfox", Family::mozilla, {".waterfox"}, {}, {"waterfox"}, {"net.waterfox.waterfox"}},
    {"zen", Family::mozilla, {".zen"}, {}, {"zen"}, {"app.zen_browser.zen"}},
    {"chromium", Family::chromium, {}, {"chromium"}, {"chromium"}, {"org.chromium.Chromium"}, {"chromium"}},
    {"google-chrome",
     Family::chromium,
     {},
     {"google-chrome", "google-chrome-beta", "google-chrome-unstable"},
     {"google-chrome", "google-chrome-beta", "google-chrome-unstable"},
     {"com.google.Chrome", "com.google.ChromeDev"}},
    {"brave",
     Family::chromium,
     {},
     {"BraveSoftware/Brave-Browser", "BraveSoftware/Brave-Browser-Beta", "BraveSoftware/Brave-Browser-Nightly"},
     {"BraveSoftware/Brave-Browser", "BraveSoftware/Brave-Browser-Beta", "BraveSoftware/Brave-Browser-Nightly"},
     {"com.brave.Browser"},
     {"brave"}},
    {"microsoft-edge",
     Family::chromium,
     {},
     {"microsoft-edge", "microsoft-edge-beta", "microsoft-edge-dev"},
     {"microsoft-edge", "microsoft-edge-beta", "microsoft-edge-dev"},
     {"com.microsoft.Edge"}},
    {"vivaldi",
     Family::chromium,
     {},
     {"vivaldi", "vivaldi-snapshot"},
     {"vivaldi", "vivaldi-snapshot"},
     {"com.vivaldi.Vivaldi"},
     {"vivaldi"}},
    {"opera",
     Family::chromium,
     {},
     {"opera", "opera-beta", "opera-developer"},
     {"opera", "opera-beta", "opera-developer"},
     {"com.opera.Opera"},
     {"opera"}},
    {"epiphany", Family::webkit, {}, {}, {"epiphany"}, {"org.gnome.Epiphany"}},
};

/// What of a browser's folders is worth the same. Patterns begin below the browser's folder for settings or caches, in
/// which each profile is a folder.
struct PartRow {
  Family family;
  /// Added to the browser's name in the row's label; null for the caches, which are called after the browser alone.
  const char* label;
  Grade grade;
  bool starts_ticked;
  Names in_settings;
  Names in_caches;
  const char* reason;
  const char* after;
};

constexpr const char* pages = english("Pages and pictures that %@ has kept.");
constexpr const char* pages_after =
    english("Pages load a little slower once. Bookmarks, passwords, history and extensions stay.");
constexpr const char* site_data = english("What web sites have stored in %@.");
constexpr const char* site_data_after = english(
    "Sites may forget drafts and settings, and web applications no longer work offline. Logins, bookmarks and "
    "extensions stay.");

// What belongs to extensions, and logins, bookmarks, cookies and history, is in no row: nothing below a profile goes
// but what is named here.
constexpr PartRow parts[] = {
    {Family::mozilla,
     nullptr,
     Grade::safe,
     true,
     {"*/startupCache/*", "*/shader-cache/*", "*/thumbnails/*", "*/minidumps/*", "*/datareporting/archived/*",
      "*/saved-telemetry-pings/*", "Crash Reports/pending/*", "Crash Reports/submitted/*"},
     {"*/cache2/*", "*/startupCache/*", "*/safebrowsing/*", "*/thumbnails/*", "*/activity-stream.*"},
     pages,
     pages_after},
    {Family::mozilla,
     english("data of web sites"),
     Grade::may_lose,
     false,
     {"*/storage/default/http*/cache", "*/storage/default/http*/ls", "*/storage/default/http*/idb",
      "*/storage/default/http*/fs"},
     {},
     site_data,
     site_data_after},
    {Family::chromium,
     nullptr,
     Grade::safe,
     true,
     {"ShaderCache/*", "GrShaderCache/*", "GraphiteDawnCache/*", "GPUPersistentCache/*", "component_crx_cache/*",
      "extensions_crx_cache/*", "Crash Reports/attachments/*", "Crash Reports/completed/*", "Crash Reports/new/*",
      "Crash Reports/pending/*", "*/GPUCache/*", "*/DawnCache/*", "*/DawnGraphiteCache/*", "*/DawnWebGPUCache/*",
      "*/Code Cache/*", "*/Cache/*", "*/Shared Dictionary/cache/*"},
     {"*/Cache/*", "*/Code Cache/*"},
     pages,
     pages_after},
    {Family::chromium,
     english("models and page files"),
     Grade::costs_time,
     true,
     {"OptGuideOnDeviceModel*/*", "OnDeviceHeadSuggestModel/*", "WasmTtsEngine/*", "*/blob_storage/*"},
     {},
     english("Models that %@ has downloaded for its helpers, and files of open pages."),
     english("%@ downloads the models again unless that is switched off in its settings.")},
    {Family::chromium,
     english("data of web sites"),
     Grade::may_lose,
     false,
     {"*/Service Worker/CacheStorage/*", "*/Service Worker/ScriptCache/*", "*/IndexedDB/http*"},
     {},
     site_data,
     site_data_after},
    {Family::webkit,
     nullptr,
     Grade::costs_time,
     true,
     {},
     {"WebKitCache/*", "adblock/*", "icondatabase/*"},
     pages,
     pages_after},
    {Family::webkit,
     english("data of web sites"),
     Grade::may_lose,
     false,
     {},
     {"CacheStorage/*"},
     site_data,
     site_data_after},
};

/// The folders of one installation of a browser.
struct Installation {
  Owner owner;
  std::vector<Url> settings;
  std::vector<Url> caches;
};

void append(const Url& root, const Names& names, std::vector<Url>& to) {
  for (const std::string_view name : names) to.push_back(root.appending(name));
}

/// The plain one, and one for each sandbox, which is a little home of its own.
std::vector<Installation> installations_of(const LinuxPlaces& home, const BrowserRow& row) {
  const OwnerRow& program = *owner_row(row.owner);
  std::vector<Installation> found;
  Installation& plain = found.emplace_back(Installation{owner_at(home, program), {}, {}});
  append(home.home, row.in_home, plain.settings);
  append(home.folders.config, row.in_settings, plain.settings);
  append(home.folders.cache, row.in_caches, plain.caches);
  for (const std::string_view id : row.flatpaks) {
    const Url box = home.home.appending(".var/app").appending(id);
    Installation& sandbox = found.emplace_back(Installation{
        {Owner::Kind::flatpak, std::string(id), program.name + std::string(" (Flatpak)"), {}, {}}, {}, {}});
    append(box, row.in_home, sandbox.settings);
    append(box.appending("config"), row.in_settings, sandbox.settings);
    append(box.appending("cache"), row.in_caches, sandbox.caches);
  }
  for (const std::string_view name : row.snaps) {
    Installation& sandbox = found.emplace_back(
        Installation{{Owner::Kind::snap, std::string(name), program.name + std::string(" (Snap)"), {}, {}}, {}, {}});
    for (const Url& box : matching(home.files, home.home.appending("snap").appending(name), "*")) {
      if (box.listed_kind() != EntryKind::folder) continue;
      append(box, row.in_home, sandbox.settings);
      append(box, row.in_settings, sandbox.settings);  // Chromium's lies beside the other folders
      append(box.appending(".config"), row.in_settings, sandbox.settings);
      append(box.appending(".cache"), row.in_caches, sandbox.caches);
    }
  }
  return found;
}

void add_matching(const LinuxPlaces& home, const std::vector<Url>& roots, const Names& patterns, std::vector<Url>& to) {
  for (const Url& root : roots) {
    if (!home.files.is_folder(root)) continue;
    for (const std::string_view pattern : patterns) {
      std::ranges::move(matching(home.files, root, pattern), std::back_inserter(to));
    }
  }
}

Offer offer_of(const LinuxPlaces& home, const Installation& installation, const PartRow& part) {
  Offer offer;
  offer.label = offer.subject = installation.owner.name;
  offer.label_suffix = part.label;
  offer.owner = installation.owner;
  offer.grade = part.grade;
  offer.starts_ticked = part.starts_ticked;
  offer.reason = part.reason;
  offer.after = part.after;
  add_matching(home, installation.settings, part.in_settings, offer.locations);
  add_matching(home, installation.caches, part.in_caches, offer.locations);
  return offer;
}

}  // namespace

std::vector<Offer> browser_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  for (const BrowserRow& browser : browsers) {
    for (const Installation& installation : installations_of(home, browser)) {
      for (const PartRow& part : parts) {
        if (part.family == browser.family) offers.push_back(offer_of(home, installation, part));
      }
    }
  }
  return offers;
}

}  // namespace tarnby
