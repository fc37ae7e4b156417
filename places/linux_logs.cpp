#include <algorithm>
#include <iterator>
#include <utility>

#include "places/linux_places.h"
#include "places/linux_texts.h"

namespace tarnby {

namespace {

struct LogRow {
  /// The key of a text where there is no owner.
  const char* label;
  std::string_view owner;
  Root root;
  /// Patterns below the root; what they match goes itself.
  Names places;
};

constexpr const char* log = english("Messages that programs have written about their own work.");
constexpr const char* log_after = english("They help when something went wrong; otherwise nobody reads them.");

// The logs of the session and of the display server that run are held open: removing them frees nothing before the
// next login, so only those of earlier sessions are named. Of STATE only what is called a log: it also holds histories,
// layouts and what editors need to undo.
constexpr LogRow rows[] = {
    {english("Earlier sessions"), "", Root::home, {".xsession-errors.old", ".wayland-errors.old"}},
    {english("Earlier sessions"), "", Root::data, {"xorg/Xorg.*.log.old", "sddm/*.log.old"}},
    {english("Developers' tools"),
     "",
     Root::home,
     {".npm/_logs/*", ".gradle/daemon/*/*.log", ".m2/*.log", ".cargo/*.log"}},
    {english("Developers' tools"), "", Root::cache, {"pip/log/*", "yarn/*.log", "pre-commit/pre-commit.log"}},
    {nullptr,
     "claws-mail",
     Root::home,
     {".claws-mail/claws.log", ".claws-mail/claws.log.bak", ".claws-mail/filtering.log",
      ".claws-mail/filtering.log.bak"}},
    {nullptr, "inkscape", Root::config, {"inkscape/extension-errors.log"}},
    {nullptr, "libreoffice", Root::config, {"libreoffice/4/user/GraphicsRenderTests.log"}},
    {nullptr, "steam", Root::data, {"Steam/logs/*", "Steam/dumps/*"}},
    {nullptr, "lutris", Root::data, {"lutris/logs/*"}},
    {nullptr,
     "code",
     Root::config,
     {"Code/logs/*", "Code/Crashpad/completed/*", "Code/Crashpad/pending/*", "Code/Crashpad/reports/*"}},
};

Offer log_offer(Owner owner) {
  Offer offer;
  offer.label = offer.subject = owner.name;
  offer.owner = std::move(owner);
  offer.grade = Grade::safe;
  offer.reason = log;
  offer.after = log_after;
  return offer;
}

/// The names that programs give to logs below the folder for states, each in a folder of its own.
constexpr Names state_logs = {"*.log", "*.log.*", "logs/*", "log/*"};

void add_state_logs(const LinuxPlaces& home, const Url& state, Offer& offer) {
  for (const std::string_view pattern : state_logs) {
    std::ranges::move(matching(home.files, state, pattern), std::back_inserter(offer.locations));
  }
}

}  // namespace

std::vector<Offer> log_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  for (const LogRow& row : rows) {
    Offer offer = log_offer(row.owner.empty() ? Owner{Owner::Kind::nobody, {}, {}, {}, {}}
                                              : owner_at(home, *owner_row(row.owner)));
    if (row.label != nullptr) {
      offer.label = row.label;
      offer.label_is_key = true;
    }
    for (const std::string_view pattern : row.places) {
      std::ranges::move(matching(home.files, root_of(home, row.root), pattern), std::back_inserter(offer.locations));
    }
    offers.push_back(std::move(offer));
  }
  for (const Entry& entry : home.files.list(home.folders.state)) {
    if (entry.kind != EntryKind::folder) continue;
    const std::string name(entry.url.last_path_component());
    const OwnerRow* program = owner_of_folder(name);
    Offer offer = log_offer(program ? owner_at(home, *program) : Owner{Owner::Kind::unknown, {}, name, {}, {}});
    offer.starts_ticked = program != nullptr;
    add_state_logs(home, entry.url, offer);
    offers.push_back(std::move(offer));
  }
  for (const Entry& entry : home.files.list(home.home.appending(".var/app"))) {
    if (entry.kind != EntryKind::folder) continue;
    const std::string id(entry.url.last_path_component());
    const DesktopEntry* application = home.applications.of_flatpak(id);
    Offer offer = log_offer({Owner::Kind::flatpak, id, application ? application->name : id, {}, {}});
    for (const Url& state : matching(home.files, entry.url, ".local/state/*")) add_state_logs(home, state, offer);
    offers.push_back(std::move(offer));
  }
  return offers;
}

}  // namespace tarnby
