#include <algorithm>
#include <string>
#include <utility>

#include "places/linux_places.h"
#include "places/trash_info.h"
#include "text/localization.h"

namespace tarnby {

namespace {

// The Trash of a home, as freedesktop.org lays it out (Trash 1.0): what was thrown away in "files", where
// it came from in "info", under the same name. "expunged" holds what a file manager was about to delete when it ended.

constexpr std::string_view info_suffix = ".trashinfo";
constexpr std::size_t largest_info = std::size_t{64} << 10U;

constexpr const char* thrown_away = english("You have put it into the Trash.");
constexpr const char* gone_for_good = english("It is gone for good.");

/// The name that it had before; that in the Trash is arbitrary.
std::string label_of(const LinuxPlaces& home, const Url& info, const Url& content) {
  const auto bytes = home.files.read(info, largest_info);
  const Url before = bytes ? read_trash_info(*bytes).original : Url();
  return std::string(before.empty() ? content.last_path_component() : before.last_path_component());
}

/// The content goes first: as long as a part of it stays, the desktop can put it back.
void add_thrown_away(const LinuxPlaces& home, const Url& trash, std::vector<Offer>& offers) {
  for (const Entry& entry : home.files.list(trash.appending("files"), Hidden::take)) {
    const std::string name(entry.url.last_path_component());
    const Url info = trash.appending("info").appending(name + std::string(info_suffix));
    Offer offer;
    offer.label = label_of(home, info, entry.url);
    offer.owner.kind = Owner::Kind::nobody;
    offer.grade = Grade::may_lose;
    offer.reason = thrown_away;
    offer.after = gone_for_good;
    offer.locations.push_back(entry.url.listed_as(entry.kind));
    if (home.files.status(info).kind == EntryKind::file) offer.locations.push_back(info.listed_as(EntryKind::file));
    offer.in_order = true;
    offers.push_back(std::move(offer));
  }
}

/// Left by a crash, and seen by nobody. A file manager may be at work on it during the first hour.
void add_expunged(const LinuxPlaces& home, const Url& trash, std::vector<Offer>& offers) {
  const std::vector<Entry> left = home.files.list(trash.appending("expunged"), Hidden::take);
  Offer offer;
  offer.label = english("Being deleted");
  offer.label_is_key = true;
  offer.owner.kind = Owner::Kind::nobody;
  offer.grade = Grade::safe;
  offer.reason = english("The file manager was about to delete it when it ended.");
  offer.after = gone_for_good;
  constexpr std::chrono::hours until_left{1};
  for (const Entry& entry : left) {
    const auto changed = home.metadata.modification_date(entry.url);
    if (changed && home.now - *changed > until_left) offer.locations.push_back(entry.url.listed_as(entry.kind));
  }
  offers.push_back(std::move(offer));
}

/// What tells where something came from that is not there any more.
void add_orphans(const LinuxPlaces& home, const Url& trash, std::vector<Offer>& offers) {
  Offer offer;
  offer.label = english("Entries without content");
  offer.label_is_key = true;
  offer.owner.kind = Owner::Kind::nobody;
  offer.grade = Grade::safe;
  offer.reason = english("Notes of the Trash about files that are not in it.");
  offer.after = english("Nothing changes.");
  for (const Entry& entry : home.files.list(trash.appending("info"), Hidden::take)) {
    const std::string_view name = entry.url.last_path_component();
    if (entry.kind != EntryKind::file || !name.ends_with(info_suffix)) continue;
    const Url content = trash.appending("files").appending(name.substr(0, name.size() - info_suffix.size()));
    // A moment after the note is made the content follows.
    if (!home.files.exists(content) && days_unchanged(home, entry.url).value_or(0) >= 1) {
      offer.locations.push_back(entry.url.listed_as(entry.kind));
    }
  }
  offers.push_back(std::move(offer));
}

}  // namespace

std::vector<Offer> trash_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  std::vector<Url> trashes = matching(home.files, home.folders.data, "Trash");
  for (const Url& snap : matching(home.files, home.home, "snap/*/*/.local/share/Trash")) trashes.push_back(snap);
  for (const Url& trash : trashes) {
    add_thrown_away(home, trash, offers);
    add_expunged(home, trash, offers);
    add_orphans(home, trash, offers);
  }
  return offers;
}

}  // namespace tarnby
