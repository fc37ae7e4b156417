#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/url.h"
#include "places/desktop_entry.h"

namespace tarnby {

/// Where the system and its package formats list what is installed. Read, never removed; the only places outside the
/// granted folders that are looked at.
struct RegistryPlaces {
  /// The folders "applications" of desktop entries; of entries of one id that in the earliest folder counts.
  std::vector<Url> applications;
  /// The flatpak installations: the user's, the system's, and those of the administrator. "app/ID/current" in one is
  /// what says that a flatpak is installed.
  std::vector<Url> flatpak_installations;
  /// False when an installation may exist that is not listed, since what names it could not be read.
  bool is_complete = true;
};

/// The places of this machine: `data_folder` ("~/.local/share") with its flatpaks, the system's flatpaks, those that
/// `Path=` of /etc/flatpak/installations.d/*.conf names, /usr/local/share, /usr/share, snapd's. XDG_DATA_DIRS is not
/// asked: people are told these places by name, and a variable would add others.
/// @param system where the system's folders lie: "/", or in a sandbox where it shows them, such as "/run/host".
RegistryPlaces registry_places(const Url& data_folder, const Url& system = Url::file("/"));

/// The programs that have an entry in the menu, and what belongs to each by name. Immutable; any thread may ask.
class DesktopEntries {
 public:
  DesktopEntries() = default;

  /// Reads every entry of the places. Links are followed here, since flatpak lists its entries by links; only plain
  /// files are read. Names are compared as bytes unless a function says otherwise.
  /// @param languages the person's, for the names of programs, see read_desktop_entry.
  static DesktopEntries read(const RegistryPlaces& places, std::span<const std::string> languages);

  /// False when an entry or a folder exists and could not be read whole, so that nothing may be concluded from what is
  /// missing. Files that are no entries are no such reason.
  bool is_complete() const { return is_complete_; }

  /// All that count, those that are not displayed and those hidden by the user included: folder by folder in the order
  /// of the places, each folder's in the order of a walk.
  std::span<const DesktopEntry> entries() const { return {entries_.data(), counting_}; }

  /// The entry of that id ("firefox-esr.desktop"); null when there is none.
  const DesktopEntry* by_id(std::string_view id) const;

  /// The entry to which a folder of caches or settings belongs by its name: the folder is called as the entry's id
  /// without ".desktop", else as the file of the program that it starts (Exec, TryExec), else as its windows; the
  /// letters' case counts for the id alone. Of several the one with the shortest command. Null when none answers.
  const DesktopEntry* of_folder(std::string_view name) const;

  /// The entry of a flatpak ("org.gnome.Epiphany") or of a snap ("hello"), one that menus show before one that they
  /// do not; null when there is none.
  const DesktopEntry* of_flatpak(std::string_view id) const { return found(flatpaks_, id); }
  const DesktopEntry* of_snap(std::string_view name) const { return found(snaps_, name); }

 private:
  using Index = std::map<std::string, std::size_t, std::less<>>;
  using Better = bool (*)(const DesktopEntry& entry, const DesktopEntry& other);
  class Reader;
  const DesktopEntry* found(const Index& index, std::string_view key) const;
  void add_to(Index& index, std::string key, std::size_t number, Better is_better);
  void make_indices();

  bool is_complete_ = true;
  /// Those that count, then those that an earlier folder overrides: what a user hid is installed all the same.
  std::vector<DesktopEntry> entries_;
  std::size_t counting_ = 0;
  Index ids_;
  Index programs_;
  Index windows_;
  Index flatpaks_;
  Index snaps_;
};

}  // namespace tarnby
