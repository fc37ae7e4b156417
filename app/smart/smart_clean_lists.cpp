#include "app/smart/smart_clean_lists.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "engine/categories.h"
#include "engine/cleaner.h"
#include "engine/smart_selection.h"

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

std::uint64_t bytes_of(const CleanerEntry& entry) {
  return static_cast<std::uint64_t>(size_of(entry));
}

/// Sparse files may claim any size; in this type what was added can be taken off again even after an overflow.
std::uint64_t bytes_of(const std::vector<CleanerEntry>& entries) {
  return std::accumulate(entries.begin(), entries.end(), std::uint64_t{0},
                         [](std::uint64_t sum, const CleanerEntry& entry) { return sum + bytes_of(entry); });
}

}  // namespace

std::span<const Lists::Row> SmartCleanLists::rows() {
  return list_rows;
}

void SmartCleanLists::take(const Cleaner& cleaner) {
  outlineItems = cleaner.smart_outline_items;
  totals_.clear();
  ticked_.clear();
  listed_bytes_.clear();
  for (const Row& row : list_rows) {
    const Category& category = *category_row(row.type);
    const auto& item = cleaner.*category.item;
    auto& store = this->*row.store;
    store = item ? item->items : std::vector<CleanerEntry>();
    (this->*row.selection).assign(store.begin(), store.end());
    totals_.push_back(cleaner.*category.smart.total);
    ticked_.push_back(store.size());
    listed_bytes_.push_back(bytes_of(store));
  }
  ticked_bytes_ = listed_bytes_;
  amount_ = cleaner.smart_amount;
  find_shared();
  empty_items();
  for (std::size_t group = 0; group < count(); ++group) untick_what_asks(group);
  update_junk();
}

/// What may lose something, or belongs to a program that runs, does not go with its group. Where nothing else is in it,
/// a person who ticks the group means that: then only what may not go at all stays as it is.
void SmartCleanLists::untick_what_asks(std::size_t group, bool by_person) {
  const auto& listed = entries(group);
  const bool something_goes = std::ranges::any_of(listed, starts_ticked);
  for (std::size_t entry = 0; entry < listed.size(); ++entry) {
    const bool goes = something_goes || !by_person ? starts_ticked(listed[entry]) : may_go(listed[entry]);
    if (!goes) unselect_entry(group, entry);
  }
}

void SmartCleanLists::find_shared() {
  shared_.clear();
  if (!amount_) return;
  for (std::size_t group = 0; group < ticked_.size(); ++group) {
    const auto& listed = entries(group);
    for (std::size_t entry = 0; entry < listed.size(); ++entry) {
      if (amount_->is_shared(listed[entry])) shared_.emplace_back(group, entry);
    }
  }
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
  ticked_bytes_[group] = listed_bytes_[group];
  untick_what_asks(group, true);
  update_junk();
}

void SmartCleanLists::unselect_group(std::size_t group) {
  outlineItems[group]->size = totals_[group];
  selection(group) = empty(group);
  ticked_[group] = 0;
  ticked_bytes_[group] = 0;
  update_junk();
}

void SmartCleanLists::select_entry(std::size_t group, std::size_t entry) {
  if (is_ticked(group, entry) || !may_go(entries(group)[entry])) return;
  std::int64_t& size = outlineItems[group]->size;
  if (nothing_ticked(group)) size = 0;
  const CleanerEntry& ticked = entries(group)[entry];
  size += size_of(ticked);
  selection(group)[entry] = ticked;
  ++ticked_[group];
  ticked_bytes_[group] += bytes_of(ticked);
  update_junk();
}

void SmartCleanLists::unselect_entry(std::size_t group, std::size_t entry) {
  if (!is_ticked(group, entry)) return;
  std::int64_t& size = outlineItems[group]->size;
  selection(group)[entry] = Empty();
  --ticked_[group];
  ticked_bytes_[group] -= bytes_of(entries(group)[entry]);
  if (nothing_ticked(group)) {
    size = totals_[group];
  } else {
    size -= size_of(entries(group)[entry]);
  }
  update_junk();
}

std::int64_t SmartCleanLists::size_shown(std::size_t group) const {
  const std::uint64_t bytes = nothing_ticked(group) ? listed_bytes_[group] : ticked_bytes_[group];
  return static_cast<std::int64_t>(std::min<std::uint64_t>(bytes, std::numeric_limits<std::int64_t>::max()));
}

bool SmartCleanLists::has_entries() const {
  return std::ranges::any_of(list_rows, [&](const Row& row) { return !(this->*row.store).empty(); });
}

void SmartCleanLists::update_junk() {
  smart_junk = std::accumulate(ticked_bytes_.begin(), ticked_bytes_.end(), std::uint64_t{0}) - counted_again();
}

std::uint64_t SmartCleanLists::counted_again() const {
  if (shared_.empty()) return 0;
  std::vector<CleanerEntry> ticked;
  for (const auto& [group, entry] : shared_) {
    if (is_ticked(group, entry)) ticked.push_back(entries(group)[entry]);
  }
  return bytes_of(ticked) - static_cast<std::uint64_t>(amount_->amount(ticked));
}

std::vector<Url> SmartCleanLists::ticked_locations() const {
  std::vector<Url> locations;
  for (const Row& row : list_rows) {
    for (const Slot& slot : this->*row.selection) {
      const auto* entry = std::get_if<CleanerEntry>(&slot);
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
