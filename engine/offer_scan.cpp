#include <algorithm>
#include <utility>

#include "engine/cleaner.h"
#include "engine/entry_text.h"
#include "engine/home_offers.h"
#include "engine/owner_watch.h"
#include "files/bytes.h"
#include "places/home_kind.h"
#include "platform/platform.h"

namespace tarnby {

// What both scans do in a home of the Linux kind, whose rows come from its tables, and how a removal asks about them
// again.

namespace {

std::int64_t sum_of(const OfferedItems& rows) {
  std::int64_t sum = 0;
  for (const auto& row : rows) sum = add_bytes(sum, row->frees);
  return sum;
}

}  // namespace

/// The folders that the screens lead to are told from the home, once it is known of which kind it is.
void Cleaner::look_at_home() {
  layout_ = platform_.home_kind ? *platform_.home_kind : kind_of_home(platform_.files, url_home);
  offers_ = nullptr;
  if (layout_ == HomeKind::macos) return;
  offers_ = std::make_unique<HomeOffers>(platform_, url_home);
  const LinuxPlaces& home = offers_->home();
  url_caches = home.folders.cache;
  url_logs = home.folders.state;
  url_trash = home.folders.data.appending("Trash/files");
  url_downloads = home.folders.downloads;
  const UserFolders& own = home.folders;
  platform_.files.granted().guard_linux_home({url_home,
                                              own.cache,
                                              own.config,
                                              own.data,
                                              own.state,
                                              {own.desktop, own.downloads, own.templates, own.public_share,
                                               own.documents, own.music, own.pictures, own.videos}});
}

std::optional<LookProblem> Cleaner::problem_of_link(std::string_view group) const {
  const auto categories = smart_categories();
  const auto category =
      std::ranges::find_if(categories, [&](const Category& row) { return row.type == group || row.setting == group; });
  if (category == categories.end()) return {};
  const Url link = lies_elsewhere(offers_->home(), category->type);
  if (link.empty()) return {};
  return LookProblem{LookProblem::Kind::elsewhere, short_path(link, url_home), false};
}

/// The rows of a category; of those of the Trash a person has said in the settings whether they are to go.
OfferedItems Cleaner::offered_rows(const Category& category) {
  OfferedItems rows = offers_->rows(category.type);
  const bool may_start_ticked = category.type != "trash" || app_settings->boolean(category.setting);
  for (const auto& row : rows) {
    row->offer.starts_ticked = row->offer.starts_ticked && may_start_ticked;
    for (const Url& location : row->offer.locations) offered_.insert_or_assign(location.path(), row);
  }
  return rows;
}

void Cleaner::scan_offers(const Category& category) {
  const OfferedItems rows = offered_rows(category);
  auto item = std::make_shared<CleanerItem>();
  item->items.assign(rows.begin(), rows.end());
  finish_category(category.type, std::move(item), sum_of(rows));
}

/// What a removal run takes of a category without asking about each row: those rows that are ticked at first.
std::shared_ptr<CleanerItem> Cleaner::item_of_offers(const Category& category) {
  auto item = std::make_shared<CleanerItem>();
  item->type = category.type;
  for (const auto& row : offered_rows(category)) {
    if (!row->starts_ticked()) continue;
    item->items.emplace_back(row);
    item->files.insert(item->files.end(), row->offer.locations.begin(), row->offer.locations.end());
    item->size = add_bytes(item->size, row->frees);
  }
  item->string_size = platform_.text.byte_count(item->size);
  return item;
}

/// The browsers that the settings know by name have records of their own, from which people choose; sandboxed ones
/// count with the others. All are chosen anew, as in the other kind of home.
void Cleaner::note_browsers(const CleanerItem& all) {
  for (const ClientRow& browser : browser_rows()) {
    auto item = std::make_shared<CleanerItem>();
    item->type = browser.type;
    for (const CleanerEntry& entry : all.items) {
      const OfferedItem& row = *std::get<std::shared_ptr<OfferedItem>>(entry);
      if (!row.offer.owner.name.starts_with(browser.name)) continue;
      item->files.insert(item->files.end(), row.offer.locations.begin(), row.offer.locations.end());
      item->size = add_bytes(item->size, row.frees);
    }
    this->*browser.item = item->files.empty() ? nullptr : item;
    app_settings->set_boolean(browser.setting, true);
  }
  (void)app_settings->synchronize();  // what could not be written now goes with the next change that is
}

/// The junk scan of such a home. Its flags are set when the applications' part and when all of it is there, as in the
/// other kind.
void Cleaner::junk_scan_offers() {
  apps_junk_size = media_junk_size = 0;
  for (const Category& category : junk_categories()) {
    const LookWatch watch;
    const auto& item = this->*category.item = item_of_offers(category);
    const bool is_media = category.type == "mails" || category.type == "trash";
    std::int64_t& sum = is_media ? media_junk_size : apps_junk_size;
    sum = add_bytes(sum, item->size);
    tell_problem(category.setting, watch.missed());
    if (category.type != "browsers") continue;
    note_browsers(*item);
    apps_junk_search_complete = true;
  }
  note_junk_amount();
  media_search_coomplete = true;
  search_is_complete = true;
}

/// The same options, and with them the questions that have to be asked again right before something goes.
RemovalOptions Cleaner::guarded(std::span<const Url> urls, const RemovalOptions& options) const {
  RemovalOptions asking = options;
  if (layout_ == HomeKind::macos) return asking;
  asking.counted = CountedBytes::blocks_given_back;
  std::vector<std::shared_ptr<const OfferedItem>> items;
  for (const Url& url : urls) {
    const auto row = offered_.find(url.path());
    items.push_back(row == offered_.end() ? nullptr : row->second);
  }
  asking.after = order_of(items);
  asking.refuse = gate_for(std::move(items), process_places(platform_.session));
  return asking;
}

}  // namespace tarnby
