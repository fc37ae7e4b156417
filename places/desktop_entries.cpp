#include "places/desktop_entries.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

#include "files/directory.h"
#include "files/small_file.h"
#include "text/key_file.h"

namespace tarnby {

namespace {

constexpr std::size_t most_entries = 50'000;
constexpr std::size_t most_folders_deep = 8;
constexpr std::string_view suffix = ".desktop";

bool is_absence(int error) {
  return error == ENOENT || error == ENOTDIR;
}

std::string lower(std::string_view text) {
  std::string low(text);
  std::transform(low.begin(), low.end(), low.begin(), ascii_lower);
  return low;
}

/// What an open folder lists, in byte order of the names.
struct Listing {
  std::vector<std::pair<std::string, EntryKind>> names;
  bool is_whole = true;
};

Listing list(int folder) {
  Listing listing;
  DirectoryReader reader;
  for (auto batch = reader.read(folder); !batch.empty(); batch = reader.read(folder)) {
    for (const RawEntry& entry : batch) listing.names.emplace_back(entry.name, entry.kind);
  }
  listing.is_whole = reader.error() == 0;
  std::sort(listing.names.begin(), listing.names.end());
  return listing;
}

/// Of a link what it leads to; `none` when that does not exist or cannot be told, then with errno(3).
EntryKind kind_behind(int folder, const std::string& name, EntryKind kind) {
  if (kind != EntryKind::link) return kind;
  struct stat info = {};
  if (uninterrupted([&] { return fstatat(folder, name.c_str(), &info, 0); }) != 0) return EntryKind::none;
  if (S_ISDIR(info.st_mode)) return EntryKind::folder;
  return S_ISREG(info.st_mode) ? EntryKind::file : EntryKind::other;
}

/// The installations that the administrator added (flatpak-installation(5)).
void add_named_installations(RegistryPlaces& places, const Url& folder) {
  const Descriptor handle = open_folder_following(AT_FDCWD, folder.path().c_str());
  if (!handle) {
    places.is_complete &= is_absence(errno);
    return;
  }
  const Listing listing = list(handle.get());
  places.is_complete &= listing.is_whole;
  std::string bytes;
  for (const auto& [name, kind] : listing.names) {
    if (path_extension_of(name) != "conf") continue;
    const auto look =
        read_small_file_at(handle.get(), name.c_str(), LastLink::followed, most_of_a_desktop_entry, bytes);
    if (look == SmallFileLook::absent) continue;
    const auto file = look == SmallFileLook::read ? KeyFile::parse(bytes) : std::nullopt;
    places.is_complete &= file.has_value();
    if (!file) continue;
    for (const std::string& group : file->groups()) {
      const Url path = Url::file(file->value(group, "Path").value_or(""));
      if (!path.empty()) places.flatpak_installations.push_back(path);
    }
  }
}

bool has_shorter_command(const DesktopEntry& entry, const DesktopEntry& other) {
  return entry.command.size() < other.command.size();
}

bool is_rather_shown(const DesktopEntry& entry, const DesktopEntry& other) {
  return !entry.is_not_displayed && !entry.is_hidden && (other.is_not_displayed || other.is_hidden);
}

}  // namespace

RegistryPlaces registry_places(const Url& data_folder, const Url& system) {
  RegistryPlaces places;
  if (data_folder.is_file_url()) places.flatpak_installations.push_back(data_folder.appending("flatpak"));
  places.flatpak_installations.push_back(system.appending("var/lib/flatpak"));
  add_named_installations(places, system.appending("etc/flatpak/installations.d"));

  if (data_folder.is_file_url()) places.applications.push_back(data_folder.appending("applications"));
  for (const Url& installation : places.flatpak_installations) {
    places.applications.push_back(installation.appending("exports/share/applications"));
  }
  for (const char* folder :
       {"usr/local/share/applications", "usr/share/applications", "var/lib/snapd/desktop/applications"}) {
    places.applications.push_back(system.appending(folder));
  }
  return places;
}

/// Reads folder after folder into one answer.
class DesktopEntries::Reader {
 public:
  Reader(DesktopEntries& found, std::span<const std::string> languages) : found_(found), languages_(languages) {}

  void read(const Url& applications) {
    read_folder(open_folder_following(AT_FDCWD, applications.path().c_str()), applications, {});
  }

  void finish() {
    found_.counting_ = found_.entries_.size();
    std::move(overridden_.begin(), overridden_.end(), std::back_inserter(found_.entries_));
  }

 private:
  void read_folder(const Descriptor& folder, const Url& place, const std::string& prefix);
  struct Listed {
    int folder;
    const std::string& name;
    EntryKind kind;
  };
  SmallFileLook read_bytes(const Listed& listed);
  void read_entry(const Listed& listed, const Url& place, const std::string& prefix);
  void missed_unless(bool is_known) { found_.is_complete_ &= is_known; }

  DesktopEntries& found_;
  std::span<const std::string> languages_;
  std::vector<DesktopEntry> overridden_;
  std::vector<Identity> above_;
  std::string bytes_;
};

/// @param folder empty, with errno(3) set, when it could not be opened.
/// @param prefix of the ids of its entries: its path below "applications" with "-" for "/".
void DesktopEntries::Reader::read_folder(const Descriptor& folder, const Url& place, const std::string& prefix) {
  if (!folder) return missed_unless(is_absence(errno));
  const Identity identity = status_of(folder.get()).identity;
  // A link may lead back up.
  if (std::find(above_.begin(), above_.end(), identity) != above_.end()) return;
  if (above_.size() == most_folders_deep) return missed_unless(false);
  above_.push_back(identity);
  const Listing listing = list(folder.get());
  missed_unless(listing.is_whole);
  for (const auto& [name, listed] : listing.names) {
    const EntryKind kind = kind_behind(folder.get(), name, listed);
    if (kind == EntryKind::none) missed_unless(is_absence(errno));
    if (kind == EntryKind::folder) {
      read_folder(open_folder_following(folder.get(), name.c_str()), place.appending(name), prefix + name + "-");
    } else if (kind == EntryKind::file && name.size() > suffix.size() && name.ends_with(suffix)) {
      read_entry({folder.get(), name, listed}, place, prefix);
    }
  }
  above_.pop_back();
}

SmallFileLook DesktopEntries::Reader::read_bytes(const Listed& listed) {
  const char* name = listed.name.c_str();
  if (listed.kind == EntryKind::file) return read_listed_file_at(listed.folder, name, most_of_a_desktop_entry, bytes_);
  return read_small_file_at(listed.folder, name, LastLink::followed, most_of_a_desktop_entry, bytes_);
}

void DesktopEntries::Reader::read_entry(const Listed& listed, const Url& place, const std::string& prefix) {
  if (found_.entries_.size() + overridden_.size() == most_entries) return missed_unless(false);
  const SmallFileLook look = read_bytes(listed);
  missed_unless(look != SmallFileLook::unreadable);
  auto entry = look == SmallFileLook::read ? read_desktop_entry(bytes_, languages_) : std::nullopt;
  if (!entry) return;
  entry->id = prefix + listed.name;
  entry->file = place.appending(listed.name);
  const bool is_first = found_.ids_.emplace(entry->id, found_.entries_.size()).second;
  (is_first ? found_.entries_ : overridden_).push_back(std::move(*entry));
}

DesktopEntries DesktopEntries::read(const RegistryPlaces& places, std::span<const std::string> languages) {
  DesktopEntries found;
  found.is_complete_ = places.is_complete;
  Reader reader(found, languages);
  for (const Url& folder : places.applications) reader.read(folder);
  reader.finish();
  found.make_indices();
  return found;
}

void DesktopEntries::add_to(Index& index, std::string key, std::size_t number, Better is_better) {
  if (key.empty()) return;
  const auto [known, is_new] = index.emplace(std::move(key), number);
  if (!is_new && is_better(entries_[number], entries_[known->second])) known->second = number;
}

void DesktopEntries::make_indices() {
  for (std::size_t number = 0; number < entries_.size(); ++number) {
    const DesktopEntry& entry = entries_[number];
    add_to(programs_, lower(entry.program_name()), number, has_shorter_command);
    add_to(windows_, lower(entry.window_class), number, has_shorter_command);
    add_to(flatpaks_, entry.flatpak, number, is_rather_shown);
    add_to(snaps_, entry.snap, number, is_rather_shown);
  }
  for (std::size_t number = 0; number < entries_.size(); ++number) {
    const DesktopEntry& entry = entries_[number];
    if (!entry.flatpak.empty() || !entry.snap.empty()) continue;  // what they need stands outside of every home
    add_to(programs_, lower(last_component_of(entry.try_exec)), number, has_shorter_command);
  }
}

const DesktopEntry* DesktopEntries::found(const Index& index, std::string_view key) const {
  const auto entry = index.find(key);
  return entry == index.end() ? nullptr : &entries_[entry->second];
}

const DesktopEntry* DesktopEntries::by_id(std::string_view id) const {
  return found(ids_, id);
}

const DesktopEntry* DesktopEntries::of_folder(std::string_view name) const {
  if (name.empty()) return nullptr;
  if (const DesktopEntry* entry = by_id(std::string(name).append(suffix))) return entry;
  const std::string low = lower(name);
  if (const DesktopEntry* entry = found(programs_, low)) return entry;
  return found(windows_, low);
}

}  // namespace tarnby
