#include "app/smart/smart_clean_lists.h"

#include <numeric>

namespace tarnby {

namespace {

using Lists = SmartCleanLists;

constexpr Lists::Row list_rows[] = {
    {"caches", &Lists::store_caches, &Lists::caches, &Lists::empty_caches},
    {"logs", &Lists::store_logs, &Lists::logs, &Lists::empty_logs},
    {"remainders", &Lists::store_remainders, &Lists::remainders, &Lists::empty_remainders},
    {"browsers", &Lists::store_browsers, &Lists::browsers, &Lists::empty_browsers},
    {"mails", &Lists::store_mails, &Lists::mails, &Lists::empty_mails},
    {"installs", &Lists::store_installs, &Lists::installs, &Lists::empty_installs},
    {"trash", &Lists::store_trash, &Lists::trash, &Lists::empty_trash},
};

}  // namespace

std::span<const Lists::Row> SmartCleanLists::rows() {
  return list_rows;
}

void SmartCleanLists::take(const Cleaner& cleaner) {
  outlineItems = cleaner.smart_outline_items;
  totals_.clear();
  ticked_.clear();
  const auto categories = smart_categories();
  for (std::size_t at = 0; at < categories.size(); ++at) {
    const auto& item = cleaner.*categories[at].item;
    auto& store = this->*list_rows[at].store;
    store = item ? item->items : std::vector<CleanerEntry>();
    selection(at).assign(store.begin(), store.end());
    totals_.push_back(cleaner.*categories[at].total);
    ticked_.push_back(store.size());
  }
  empty_items();
  update_junk();
}

void SmartCleanLists::empty_items() {
  for (const Row& row : list_rows) (this->*row.empty).assign((this->*row.selection).size(), Empty());
}

SmartCleanLists::Ticked SmartCleanLists::ticked(std::size_t group) const {
  if (nothing_ticked(group)) return Ticked::none;
  return ticked_[group] == entries(group).size() ? Ticked::all : Ticked::some;
}

bool SmartCleanLists::is_ticked(std::size_t group, std::size_t entry) const {
  return std::holds_alternative<CleanerEntry>(selection(group)[entry]);
}

void SmartCleanLists::select_group(std::size_t group) {
  outlineItems[group]->size = totals_[group];
  const auto& store = entries(group);
  selection(group).assign(store.begin(), store.end());
  ticked_[group] = store.size();
  update_junk();
}

void SmartCleanLists::unselect_group(std::size_t group) {
  outlineItems[group]->size = totals_[group];
  selection(group) = empty(group);
  ticked_[group] = 0;
  update_junk();
}

void SmartCleanLists::select_entry(std::size_t group, std::size_t entry) {
  if (is_ticked(group, entry)) return;
  std::int64_t& size = outlineItems[group]->size;
  if (nothing_ticked(group)) size = 0;
  const CleanerEntry& ticked = entries(group)[entry];
  size += size_of(ticked);
  selection(group)[entry] = ticked;
  ++ticked_[group];
  update_junk();
}

void SmartCleanLists::unselect_entry(std::size_t group, std::size_t entry) {
  if (!is_ticked(group, entry)) return;
  std::int64_t& size = outlineItems[group]->size;
  selection(group)[entry] = Empty();
  --ticked_[group];
  if (nothing_ticked(group)) {
    size = totals_[group];
  } else {
    size -= size_of(entries(group)[entry]);
  }
  update_junk();
}

void SmartCleanLists::update_junk() {
  smart_junk = 0;
  for (std::size_t group = 0; group < count(); ++group) {
    if (!nothing_ticked(group)) smart_junk += static_cast<std::uint64_t>(outlineItems[group]->size);
  }
}

std::vector<Url> SmartCleanLists::ticked_locations() const {
  std::vector<Url> locations;
  for (const Row& row : list_rows) {
    for (const Place& place : this->*row.selection) {
      const auto* entry = std::get_if<CleanerEntry>(&place);
      if (entry == nullptr) continue;
      for (const Url& url : locations_of(*entry)) locations.push_back(url);
    }
  }
  return locations;
}

std::size_t SmartCleanLists::ticked_entries() const {
  return std::accumulate(ticked_.begin(), ticked_.end(), std::size_t{0});
}

}  // namespace tarnby
