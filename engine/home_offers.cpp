#include "engine/home_offers.h"

#include <algorithm>

#include "engine/owner_watch.h"
#include "files/disk_usage.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

std::shared_ptr<OfferedItem> item_of(Offer offer, const DiskUsage& usage, const RunningPrograms& programs) {
  auto item = std::make_shared<OfferedItem>();
  item->size = usage.size;
  item->frees = usage.frees;
  if (usage.newest != 0) item->changed = Moment(std::chrono::seconds(usage.newest));
  item->running = owner_runs(offer.owner, programs);
  item->image = Image::icon_of(offer.locations.front());
  item->offer = std::move(offer);
  return item;
}

bool has_rested(const Offer& offer, const DiskUsage& usage, Moment now) {
  if (offer.least_days_unchanged == 0) return true;
  return days_between(Moment(std::chrono::seconds(usage.newest)), now) > offer.least_days_unchanged;
}

}  // namespace

HomeOffers::HomeOffers(Platform& platform, const Url& home)
    : platform_(platform),
      folders_(user_folders(home, platform.session, platform.files)),
      registry_(registry_places(folders_.data, platform.session.system_root)),
      applications_(DesktopEntries::read(registry_, platform.session.preferred_languages)),
      programs_(RunningPrograms::look(process_places(platform.session))),
      home_{.files = platform.files,
            .home = home,
            .folders = folders_,
            .applications = applications_,
            .metadata = platform.metadata,
            .registry = registry_,
            .system_root = platform.session.system_root,
            .now = platform.now()} {}

std::vector<std::int64_t> frees_of(FileManager& files, std::span<const Url> urls) {
  std::vector<std::vector<Url>> rows;
  rows.reserve(urls.size());
  for (const Url& url : urls) rows.push_back({url});
  std::vector<std::int64_t> bytes;
  bytes.reserve(urls.size());
  for (const DiskUsage& usage : disk_usage(files, rows)) bytes.push_back(usage.frees);
  return bytes;
}

OfferedItems HomeOffers::rows(std::string_view type) {
  std::vector<Offer> offers = offers_of(home_, type);
  std::vector<std::vector<Url>> locations;
  locations.reserve(offers.size());
  for (const Offer& offer : offers) locations.push_back(offer.locations);
  const std::vector<DiskUsage> usages = disk_usage(platform_.files, locations);
  OfferedItems items;
  for (std::size_t at = 0; at < offers.size(); ++at) {
    if (!has_rested(offers[at], usages[at], platform_.now())) continue;
    items.push_back(item_of(std::move(offers[at]), usages[at], programs_));
  }
  std::ranges::stable_sort(items, std::ranges::greater(), &OfferedItem::size);
  return items;
}

}  // namespace tarnby
