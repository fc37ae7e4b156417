#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "places/linux_places.h"
#include "text/localization.h"

namespace tarnby {

namespace {

/// Kinds of files that bring programs, by the ends of their names in lower case. An AppImage is none: it is the
/// application itself.
struct InstallerRow {
  Names endings;
  Grade grade;
  bool starts_ticked;
  /// Offered only when it has not changed for so many days.
  std::int64_t unchanged_days;
  const char* reason;
  const char* after;
};

constexpr const char* installer = english("An installer in your folder “%@”.");
constexpr const char* needed_again = english("To install it once more you would have to download it again.");

constexpr InstallerRow rows[] = {
    {{".deb", ".rpm", ".snap", ".flatpak", ".flatpakref", ".flatpakrepo", ".run", ".bundle", ".pkg.tar.zst"},
     Grade::costs_time,
     false,
     0,
     installer,
     needed_again},
    {{".exe", ".msi", ".apk", ".dmg", ".pkg", "-installer.sh"}, Grade::costs_time, false, 0, installer, needed_again},
    {{".iso", ".img"},
     Grade::may_lose,
     false,
     30,
     english("A disk image in your folder “%@” that has not changed for a month."),
     english("If you have made it yourself, it may be the only copy.")},
};

constexpr std::int64_t broken_after_days = 7;
constexpr std::string_view broken_endings[] = {".crdownload", ".part", ".partial"};

std::string lower(std::string_view name) {
  std::string text(name);
  std::ranges::transform(text, text.begin(), ascii_lower);
  return text;
}

bool ends_in(std::string_view name, const Names& endings) {
  return std::ranges::any_of(endings,
                             [&](std::string_view end) { return name.size() > end.size() && name.ends_with(end); });
}

/// The empty file under the final name that waits beside "NAME.RANDOM8.EXT.part"; nowhere when there is none.
Url twin_of(const LinuxPlaces& home, const Url& broken) {
  std::string name(broken.last_path_component());
  if (!name.ends_with(".part")) return {};
  name.resize(name.size() - std::string_view(".part").size());
  constexpr std::size_t random = 8;
  for (std::size_t dot = name.find('.'); dot != std::string::npos; dot = name.find('.', dot + 1)) {
    const std::size_t end = std::min(name.find('.', dot + 1), name.size());
    if (end - dot - 1 != random) continue;
    const Url twin = broken.parent().appending(name.substr(0, dot) + name.substr(end));
    const Status status = home.files.status(twin);
    if (status.kind == EntryKind::file && status.size == 0) return twin.listed_as(EntryKind::file);
  }
  return {};
}

/// Which of them has made it cannot be told from the name alone.
Owner any_browser(const LinuxPlaces& home) {
  constexpr std::string_view browsers[] = {"firefox",       "librewolf", "waterfox",       "zen",     "chromium",
                                           "google-chrome", "brave",     "microsoft-edge", "vivaldi", "opera"};
  Owner any = {Owner::Kind::program, "browser", english("Your browser"), {}, {}};
  for (const std::string_view id : browsers) {
    Owner one = owner_at(home, *owner_row(id));
    std::ranges::move(one.programs, std::back_inserter(any.programs));
    std::ranges::move(one.locks, std::back_inserter(any.locks));
  }
  return any;
}

/// Downloads that were broken off. A browser that runs may go on with them.
void add_broken(const LinuxPlaces& home, const Entry& entry, std::vector<Offer>& offers) {
  if (days_unchanged(home, entry.url).value_or(0) <= broken_after_days) return;
  Offer offer;
  offer.label = std::string(entry.url.last_path_component());
  offer.owner = any_browser(home);
  offer.grade = Grade::safe;
  offer.reason = english("A download that was broken off more than a week ago.");
  offer.after = english("It cannot be opened as it is.");
  offer.locations.push_back(entry.url.listed_as(entry.kind));
  if (const Url twin = twin_of(home, entry.url); !twin.empty()) offer.locations.push_back(twin);
  offers.push_back(std::move(offer));
}

void add_installer(const LinuxPlaces& home, const Entry& entry, const InstallerRow& row, std::vector<Offer>& offers) {
  if (row.unchanged_days > 0 && days_unchanged(home, entry.url).value_or(0) <= row.unchanged_days) return;
  Offer offer;
  offer.label = std::string(entry.url.last_path_component());
  offer.subject = std::string(entry.url.parent().last_path_component());
  offer.owner.kind = Owner::Kind::nobody;
  offer.grade = row.grade;
  offer.starts_ticked = row.starts_ticked;
  offer.reason = row.reason;
  offer.after = row.after;
  offer.locations.push_back(entry.url.listed_as(entry.kind));
  offers.push_back(std::move(offer));
}

}  // namespace

std::vector<Offer> installer_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  for (const Url& folder : {home.folders.downloads, home.folders.desktop, home.folders.documents}) {
    if (folder.empty()) continue;
    for (const Entry& entry : home.files.list(folder)) {
      if (entry.kind != EntryKind::file) continue;
      const std::string name = lower(entry.url.last_path_component());
      if (std::ranges::any_of(broken_endings, [&](std::string_view end) { return name.ends_with(end); })) {
        add_broken(home, entry, offers);
        continue;
      }
      const auto* row =
          std::ranges::find_if(rows, [&](const InstallerRow& kind) { return ends_in(name, kind.endings); });
      if (row != std::end(rows)) add_installer(home, entry, *row, offers);
    }
  }
  return offers;
}

}  // namespace tarnby
