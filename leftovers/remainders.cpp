#include "leftovers/remainders.h"

#include <algorithm>
#include <unordered_set>

#include "files/bytes.h"
#include "inventory/application_search.h"
#include "inventory/unused_applications.h"
#include "places/macos_home.h"
#include "platform/platform.h"
#include "text/folded_index.h"

namespace tarnby {

namespace {

std::string saved_state_name(const Url& entry) {
  const auto name = entry.last_path_component();
  const auto suffix = name.find(".savedState");
  return suffix == std::string_view::npos ? std::string() : std::string(name.substr(0, suffix));
}

std::string name_without_extension(const Url& entry) {
  std::string_view name = entry.last_path_component();
  const auto extension = path_extension_of(name);
  if (!extension.empty()) name.remove_suffix(extension.size() + 1);
  return std::string(name);
}

/// What an entry of such a place is named after.
std::string owner_name(const Url& entry, macos_home::NamedBy named_by) {
  switch (named_by) {
    case macos_home::NamedBy::identifier:
      return std::string(entry.last_path_component());
    case macos_home::NamedBy::identifier_and_saved_state:
      return saved_state_name(entry);
    case macos_home::NamedBy::identifier_and_extension:
      return name_without_extension(entry);
  }
  return {};
}

/// True when a name may be the identifier of a removed application: two dots or more, and not one of the system's own,
/// which contain "apple" in lower case. "Apple" with a capital is a name like others; pinned by
/// Remainders.takes_names_that_look_like_identifiers_and_that_nobody_owns.
bool may_be_identifier(std::string_view name) {
  return name.find("apple") == std::string_view::npos && std::count(name.begin(), name.end(), '.') >= 2;
}

/// The entries of one place, with their names ready for matching.
struct Listing {
  FoldedText folder;
  std::vector<Url> entries;
  std::vector<FoldedText> names;
};

using Identifiers = std::unordered_set<std::string>;

/// Applications of the system own nothing here: their names are never candidates.
void add_owned(Identifiers& owned, std::string identifier) {
  if (identifier.find("com.apple") == std::string::npos) owned.insert(std::move(identifier));
}

Identifiers identifiers_of(const FileManager& files, std::span<const Url> applications, KnownApplications& known) {
  Identifiers owned;
  for (const Url& application : applications) {
    if (files.stopped_looking()) known.folders.stopped = true;
    if (known.folders.stopped) break;
    const LookWatch bundle(LookWatch::Tells::here);
    if (auto identifier = bundle_identifier(files, application)) add_owned(owned, std::move(*identifier));
    known.note_bundle(application, bundle.missed());
  }
  return owned;
}

/// The cache search has just read every bundle's identifier; they are not read again.
Identifiers identifiers_of(const Cache& cache) {
  Identifiers owned;
  for (const auto& [identifier, application] : cache.bundles) add_owned(owned, identifier);
  return owned;
}

std::vector<std::size_t> united(const std::vector<std::size_t>& some, const std::vector<std::size_t>& others) {
  std::vector<std::size_t> all;
  std::set_union(some.begin(), some.end(), others.begin(), others.end(), std::back_inserter(all));
  return all;
}

std::string capitalised(std::string_view text) {
  return upper_first(lower_case(text));
}

}  // namespace

/// An identifier that no application owns, with the entries whose paths contain it.
struct Remainders::Orphan {
  std::string identifier;
  std::vector<Url> files;
};

Remainders& Remainders::sharedRemainder() {
  static Remainders remainders(Platform::shared(), Cache::sharedCache());
  return remainders;
}

Remainders::Remainders(Platform& platform, const Cache& cache)
    : appDelegate(platform.application_delegate),
      app_settings(&platform.app_settings),
      defaultManager(&platform.files),
      url_applications(platform.bookmarks.resolve_and_access(Grant::applications)),
      url_home(platform.bookmarks.resolve_and_access(Grant::home)),
      url_library(url_home.appending(macos_home::library)),
      cache_(cache),
      platform_(platform) {}

std::vector<Remainders::Orphan> Remainders::orphans(const std::unordered_set<std::string>& owned) const {
  std::vector<Listing> listings;
  std::vector<Orphan> found;
  std::unordered_set<std::string> met;
  for (const macos_home::LeftoverPlace& place : macos_home::leftover_places) {
    const Url folder = url_library.appending(place.beneath_library);
    Listing listing{FoldedText(folder.path()), defaultManager->list_urls(folder), {}};
    for (const Url& entry : listing.entries) {
      listing.names.emplace_back(entry.last_path_component());
      std::string name = owner_name(entry, place.named_by);
      if (!may_be_identifier(name) || owned.contains(name)) continue;
      if (met.insert(name).second) found.push_back({std::move(name), {}});
    }
    listings.push_back(std::move(listing));
  }
  std::vector<FoldedText> identifiers;
  identifiers.reserve(found.size());
  for (const Orphan& orphan : found) identifiers.emplace_back(orphan.identifier);
  const FoldedIndex index(std::move(identifiers));
  // An identifier holds no "/", so it occurs in a path when it occurs in the folder's path or in the entry's name.
  for (const Listing& listing : listings) {
    const auto in_folder = index.parts_in(listing.folder);
    for (std::size_t at = 0; at < listing.entries.size(); ++at) {
      // Then applications may have been missed as well, and what they own would be called left over.
      if (defaultManager->stopped_looking()) return {};
      for (const std::size_t orphan : united(in_folder, index.parts_in(listing.names[at]))) {
        found[orphan].files.push_back(listing.entries[at]);
      }
    }
  }
  return found;
}

/// The applications that the plain search goes by.
std::vector<Url> Remainders::find_applications() {
  const LookWatch folders(LookWatch::Tells::here);
  std::vector<Url> applications;
  add_granted_applications(*defaultManager, url_applications, applications);
  for (const std::string_view place : macos_home::owner_places) {
    add_applications_in(*defaultManager, url_home.appending(place), 1, applications);
  }
  known_applications_ = {folders.missed(), {}};
  return applications;
}

std::vector<Url> Remainders::remianders() {
  installedApplications = find_applications();
  const Identifiers owned = identifiers_of(*defaultManager, installedApplications, known_applications_);
  if (!known_applications_.are_all()) return {};
  std::vector<Url> files;
  for (const Orphan& orphan : orphans(owned)) {
    files.insert(files.end(), orphan.files.begin(), orphan.files.end());
  }
  return files;
}

RemainderItems Remainders::smart_remianders() {
  installedApplications = cache_.applications_urls;
  RemainderItems items;
  known_applications_ = cache_.known_applications();
  auto found = known_applications_.are_all() ? orphans(identifiers_of(cache_)) : std::vector<Orphan>();
  for (Orphan& orphan : found) {
    const std::int64_t size = overall_size_of_files(orphan.files);
    totalRemaidersSize = add_bytes(totalRemaidersSize, size);
    if (size <= 0) continue;
    auto item = std::make_shared<RemainderItem>();
    item->label = setLabel(orphan.identifier);
    item->bundle = std::move(orphan.identifier);
    item->files = std::move(orphan.files);
    item->size = size;
    items.push_back(std::move(item));
  }
  platform_.text.sort_by_label(items, [](const auto& item) -> const std::string& { return item->label; });
  remaindersItems = items;
  return items;
}

std::string Remainders::setLabel(std::string_view identifier) const {
  const std::string_view last = identifier.substr(identifier.rfind('.') + 1);
  const auto second = identifier.find('.') + 1;
  const std::string_view company = identifier.substr(second, identifier.find('.', second) - second);
  return upper_first(last) + " by " + capitalised(company);
}

/// As the inventory's search for unused applications, but what lies inside another bundle is known by extensions in
/// lower case only; pinned by Remainders.calls_applications_unused_after_thirty_days.
bool Remainders::is_unused(const Url& application) const {
  const auto identifier = bundle_identifier(*defaultManager, application);
  if (!identifier || identifier->find("com.apple") != std::string::npos) return false;
  const std::string& path = application.path();
  if (path.find(".app/") != std::string::npos || path.find(".framework/") != std::string::npos) return false;
  return counts_as_unused(platform_.metadata.last_used_date(application),
                          platform_.metadata.content_change_date(application), platform_.now());
}

void Remainders::unused_apps() {
  std::vector<Url> unused;
  std::copy_if(installedApplications.begin(), installedApplications.end(), std::back_inserter(unused),
               [&](const Url& application) { return is_unused(application); });
  unusedApps = std::move(unused);
}

std::int64_t Remainders::overall_size_of_direcory(const Url& folder) {
  return platform_.measurer.overall_size_of_direcory(folder);
}

std::int64_t Remainders::overall_size_of_files(std::span<const Url> urls) {
  return platform_.measurer.overall_size_of_files(urls);
}

}  // namespace tarnby
