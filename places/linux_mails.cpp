#include <algorithm>
#include <iterator>

#include "places/linux_places.h"
#include "text/localization.h"

namespace tarnby {

namespace {

/// Mail programs that put attachments anywhere but into their mailboxes, which are never touched.
struct MailRow {
  std::string_view owner;
  Root root;
  std::string_view places;
  Grade grade;
  const char* reason;
  const char* after;
};

constexpr const char* opened = english("Copies of attachments that you have opened in %@.");
constexpr const char* opened_after = english("The messages and their attachments stay.");

constexpr MailRow rows[] = {
    {"evolution", Root::cache, "evolution/tmp/*", Grade::safe, opened, opened_after},
    {"claws-mail", Root::home, ".claws-mail/mimetmp/*", Grade::safe, opened, opened_after},
    {"geary", Root::data, "geary/*/attachments/*", Grade::may_lose,
     english("Copies of the attachments of every message that %@ has loaded."),
     english("The messages name files that are missing afterwards, and %@ does not load them again by itself.")},
};

}  // namespace

std::vector<Offer> mail_offers(const LinuxPlaces& home) {
  std::vector<Offer> offers;
  for (const MailRow& row : rows) {
    Offer offer;
    offer.owner = owner_at(home, *owner_row(row.owner));
    offer.label = offer.subject = offer.owner.name;
    offer.grade = row.grade;
    offer.starts_ticked = row.grade != Grade::may_lose;
    offer.reason = row.reason;
    offer.after = row.after;
    offer.locations = matching(home.files, root_of(home, row.root), row.places);
    offers.push_back(std::move(offer));
  }
  return offers;
}

}  // namespace tarnby
