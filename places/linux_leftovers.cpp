#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include "places/linux_places.h"
#include "text/localization.h"

namespace tarnby {

namespace {

/// Whoever has written here lately still uses it, whatever the lists of the system say.
constexpr std::int64_t days_of_rest = 30;

bool is_there(const FileManager& files, const Url& url) {
  return files.exists(url);
}

/// False when a folder exists and may not be looked at: then nothing may be concluded from what is missing in it.
bool can_be_told(const FileManager& files, const Url& folder) {
  const LookWatch watch;  // the group tells of it, too
  (void)files.list(folder);
  return !watch.missed().anything();
}

/// All that a sandboxed application has kept, which is not installed any more.
Offer data_of_removed(Owner owner, const Url& folder) {
  Offer offer;
  offer.label = offer.subject = owner.name;
  offer.owner = std::move(owner);
  offer.grade = Grade::may_lose;
  offer.starts_ticked = false;
  offer.reason = english("Settings and data of %@, which is not installed any more and was not used for a month.");
  offer.after = english("If you install it again it begins anew: saved games, logins and documents in it are lost.");
  offer.least_days_unchanged = days_of_rest;
  offer.locations.push_back(folder.listed_as(EntryKind::folder));
  return offer;
}

// Flatpak

constexpr std::string_view letters_of_ids = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.";

bool is_flatpak_id(std::string_view name) {
  return std::ranges::count(name, '.') >= 2 && name.front() != '.' && name.back() != '.' &&
         name.find_first_not_of(letters_of_ids) == std::string_view::npos;
}

/// A failed install leaves the application's folder without "current", and so does no install that works.
bool is_installed(const LinuxPlaces& home, const std::string& id) {
  return std::ranges::any_of(home.registry.flatpak_installations, [&](const Url& installation) {
    return is_there(home.files, installation.appending("app").appending(id).appending("current"));
  });
}

bool knows_flatpaks(const LinuxPlaces& home) {
  return home.registry.is_complete &&
         std::ranges::all_of(home.registry.flatpak_installations, [&](const Url& installation) {
           return can_be_told(home.files, installation.appending("app"));
         });
}

void add_flatpak_data(const LinuxPlaces& home, std::vector<Offer>& offers) {
  if (!knows_flatpaks(home)) return;
  for (const Entry& entry : home.files.list(home.home.appending(".var/app"))) {
    const std::string id(entry.url.last_path_component());
    if (entry.kind != EntryKind::folder || !is_flatpak_id(id) || is_installed(home, id)) continue;
    offers.push_back(data_of_removed({Owner::Kind::flatpak, id, id, {}, {}}, entry.url));
  }
}

// Snap

Url snap_packages(const LinuxPlaces& home) {
  return home.system_root.appending("var/lib/snapd/snaps");
}

bool is_revision(std::string_view name) {
  if (name.starts_with('x')) name.remove_prefix(1);
  return !name.empty() && name.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Of an installed snap the data of revisions that it cannot go back to.
void add_old_revisions(const LinuxPlaces& home, const Url& snap, std::vector<Offer>& offers) {
  const std::string name(snap.last_path_component());
  const std::string current(last_component_of(home.files.link_text(snap.appending("current"))));
  if (!is_revision(current)) return;
  Offer offer;
  const DesktopEntry* application = home.applications.of_snap(name);
  offer.label = offer.subject = application ? application->name : name;
  offer.label_suffix = english("old versions");
  offer.owner = {Owner::Kind::snap, name, offer.label, {}, {}};
  offer.reason = english("Data of versions of %@ that are not installed any more.");
  offer.after = english("The version that is installed keeps its own data.");
  for (const Entry& revision : home.files.list(snap)) {
    const std::string number(revision.url.last_path_component());
    if (revision.kind != EntryKind::folder || !is_revision(number) || number == current) continue;
    const std::string package = std::string(name).append("_").append(number).append(".snap");
    if (is_there(home.files, snap_packages(home).appending(package))) continue;
    offer.locations.push_back(revision.url.listed_as(EntryKind::folder));
  }
  offers.push_back(std::move(offer));
}

bool has_package(const std::vector<Entry>& packages, const std::string& name) {
  return std::ranges::any_of(
      packages, [&](const Entry& package) { return package.url.last_path_component().starts_with(name + "_"); });
}

void add_snaps(const LinuxPlaces& home, std::vector<Offer>& offers) {
  // Without snapd nobody can tell which snaps there were.
  if (!is_there(home.files, snap_packages(home)) || !can_be_told(home.files, snap_packages(home))) return;
  const std::vector<Entry> packages = home.files.list(snap_packages(home));
  for (const Entry& entry : home.files.list(home.home.appending("snap"))) {
    if (entry.kind != EntryKind::folder) continue;
    const std::string name(entry.url.last_path_component());
    const bool is_known = has_package(packages, name) || home.applications.of_snap(name) != nullptr ||
                          is_there(home.files, home.system_root.appending("snap").appending(name));
    if (is_known) {
      add_old_revisions(home, entry.url, offers);
      continue;
    }
    offers.push_back(data_of_removed({Owner::Kind::snap, name, name, {}, {}}, entry.url));
  }
}

// Menu entries

/// What may come and go with a disk says nothing when it is not there.
constexpr std::string_view places_of_disks[] = {"/media/", "/run/media/", "/mnt/", "/net/", "/run/user/"};

bool may_be_on_another_disk(std::string_view path) {
  return std::ranges::any_of(places_of_disks, [&](std::string_view place) { return path.starts_with(place); });
}

/// True when the entry names its program by a path at which, for certain, nothing is.
bool is_dead(const LinuxPlaces& home, const DesktopEntry& entry) {
  if (!entry.flatpak.empty() || !entry.snap.empty() || entry.type != "Application") return false;
  const std::string path(entry.try_exec.starts_with('/') ? entry.try_exec : entry.program());
  if (!path.starts_with('/') || may_be_on_another_disk(path)) return false;
  const LookWatch told_by_nobody(LookWatch::Tells::here);
  const Status program = home.files.status(Url::file(path));
  return program.kind == EntryKind::none && program.error == ENOENT && home.files.is_folder(Url::file(path).parent());
}

void add_menu_entries(const LinuxPlaces& home, std::vector<Offer>& offers) {
  const Url folder = home.folders.data.appending("applications");
  for (const DesktopEntry& entry : home.applications.entries()) {
    if (entry.file.parent() != folder || !is_dead(home, entry)) continue;
    Offer offer;
    offer.label = entry.name.empty() ? entry.id : entry.name;
    offer.subject = std::string(last_component_of(entry.try_exec.starts_with('/') ? entry.try_exec : entry.program()));
    offer.owner.kind = Owner::Kind::nobody;
    offer.reason = english("A menu entry whose program “%@” is not there any more.");
    offer.after = english("The entry disappears from the menu.");
    for (const Url& file : matching(home.files, folder, entry.file.last_path_component()))
      offer.locations.push_back(file);
    offers.push_back(std::move(offer));
  }
}

}  // namespace

std::vector<Offer> leftover_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  // Where a list of what is installed could not be read, nobody can tell what has been removed.
  if (!home.registry.is_complete || !home.applications.is_complete()) return offers;
  add_flatpak_data(home, offers);
  add_snaps(home, offers);
  add_menu_entries(home, offers);
  return offers;
}

}  // namespace tarnby
