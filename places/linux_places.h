#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "files/file_manager.h"
#include "places/desktop_entries.h"
#include "places/names.h"
#include "places/offer.h"
#include "places/owners.h"
#include "places/user_folders.h"
#include "platform/file_metadata.h"

namespace tarnby {

// What a home of the Linux kind offers for removal
//
// Every rule is a row of a table, or a few lines that say which entries a row takes. Three things hold for all of them:
//
//   - The contents of a folder go, never a folder that a program looks for by name.
//   - What lies in a folder for caches and is no cache is known by name, and goes before every rule (`is_kept`).
//   - A place that is a link is not followed: what it leads to lies elsewhere.
//
// The functions look at folders by their names and kinds alone; sizes and running programs are asked later, by others.

/// A home of that kind, as one scan sees it. What is pointed to outlives it.
struct LinuxPlaces {
  const FileManager& files;
  Url home;
  UserFolders folders;
  const DesktopEntries& applications;
  const FileMetadata& metadata;
  RegistryPlaces registry;
  /// Where the system's own folders lie: "/".
  Url system_root;
  /// The present moment.
  Moment now;
};

/// The folders that a row's places lie in.
enum class Root : std::uint8_t { home, cache, config, data, state };

const Url& root_of(const LinuxPlaces& home, Root root);

/// What there is at a location and below it that matches a pattern: names, or names with one "*", separated by slashes.
/// Links are left out. In byte order.
std::vector<Url> matching(const FileManager& files, const Url& root, std::string_view pattern);

/// The record of a program's row, with the files that it locks while it runs.
Owner owner_at(const LinuxPlaces& home, const OwnerRow& row);

/// Whether something in a folder for caches stays, whatever row it belongs to: it is no cache, or others depend on it.
/// @param path its path below the folder for caches, or below a sandbox's.
bool is_kept(std::string_view path);

/// Adds what may go of a folder: its entries, but of one that holds something kept, that one's entries.
/// @param path the folder's path below the folder for caches it lies in, for `is_kept`.
void add_contents(const LinuxPlaces& home, const Url& folder, std::string_view path, std::vector<Url>& to);

/// Rows by category, in the order in which they are shown; those without any location are left out. The types are those
/// of the smart scan. None for a type that such a home has nothing for.
std::vector<Offer> offers_of(const LinuxPlaces& home, std::string_view type);

/// A place of this category that is, or lies behind, a link: it is not looked at. Nowhere when all are where they seem.
Url lies_elsewhere(const LinuxPlaces& home, std::string_view type);

// The categories, each in a file of its own.
std::vector<Offer> cache_offers(const LinuxPlaces& home);
std::vector<Offer> log_offers(const LinuxPlaces& home);
std::vector<Offer> leftover_offers(const LinuxPlaces& home);
std::vector<Offer> browser_offers(const LinuxPlaces& home);
std::vector<Offer> mail_offers(const LinuxPlaces& home);
std::vector<Offer> installer_offers(const LinuxPlaces& home);
std::vector<Offer> trash_offers(const LinuxPlaces& home);

/// Days since the content of an entry changed; none when that cannot be told.
std::optional<std::int64_t> days_unchanged(const LinuxPlaces& home, const Url& entry);

}  // namespace tarnby
