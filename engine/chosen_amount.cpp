#include "engine/chosen_amount.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "engine/smart_selection.h"
#include "files/bytes.h"

namespace tarnby {

namespace {

/// The folders that a path lies in, from the nearest to the one below "/", until one is accepted. True when one was.
template <typename Accept>
bool is_any_around(std::string_view path, Accept accept) {
  for (std::size_t slash = path.rfind('/'); slash != 0 && slash != std::string_view::npos; slash = path.rfind('/')) {
    path = path.substr(0, slash);
    if (accept(path)) return true;
  }
  return false;
}

template <typename Visit>
void for_each_location(std::span<const CleanerEntry> entries, Visit visit) {
  for (const CleanerEntry& entry : entries) {
    for (const Url& url : locations_of(entry)) visit(url, entry);
  }
}

bool is_entry_of_its_own(const CleanerEntry& entry) {
  return locations_of(entry).size() == 1;
}

}  // namespace

ChosenAmount::ChosenAmount(std::span<const CleanerEntry> listed, Measurer& measurer)
    : ChosenAmount(listed, [&](std::span<const Url> urls) { return measurer.sizes_of_files(urls); }) {}

ChosenAmount::ChosenAmount(std::span<const CleanerEntry> listed, const SizesOf& sizes_of) {
  note_shared(listed);
  measure(listed, sizes_of);
}

void ChosenAmount::note_shared(std::span<const CleanerEntry> listed) {
  std::unordered_map<std::string_view, std::size_t> times;
  for_each_location(listed, [&](const Url& url, const CleanerEntry&) { ++times[url.path()]; });
  std::string_view folder;  // neighbours have the same folders around them
  bool is_inside = false;
  for_each_location(listed, [&](const Url& url, const CleanerEntry&) {
    const std::string_view path = url.path();
    const std::string_view own_folder = path.substr(0, path.rfind('/') + 1);
    if (own_folder != folder) {
      is_inside = is_any_around(path, [&](std::string_view around) { return times.contains(around); });
      folder = own_folder;
    }
    if (!is_inside && times[path] == 1) return;
    shared_.emplace(path, 0);
    is_any_around(path, [&](std::string_view around) {
      if (times.contains(around)) shared_.emplace(around, 0);
      return false;
    });
  });
}

void ChosenAmount::measure(std::span<const CleanerEntry> listed, const SizesOf& sizes_of) {
  std::vector<Url> unknown;
  for_each_location(listed, [&](const Url& url, const CleanerEntry& entry) {
    const auto known = shared_.find(url.path());
    if (known == shared_.end()) return;
    if (is_entry_of_its_own(entry)) {
      known->second = std::max(known->second, size_of(entry));
    } else {
      unknown.push_back(url);
    }
  });
  const std::vector<std::int64_t> sizes = sizes_of(unknown);
  for (std::size_t at = 0; at < unknown.size(); ++at) shared_.find(unknown[at].path())->second = sizes[at];
}

bool ChosenAmount::is_shared(const CleanerEntry& entry) const {
  return !shared_.empty() &&
         std::ranges::any_of(locations_of(entry), [&](const Url& url) { return shared_.contains(url.path()); });
}

std::int64_t ChosenAmount::amount(std::span<const CleanerEntry> chosen) const {
  std::int64_t bytes = 0;
  for (const CleanerEntry& entry : chosen) bytes = add_bytes(bytes, size_of(entry));
  if (shared_.empty()) return bytes;
  std::int64_t again = 0;
  std::unordered_map<std::string_view, std::int64_t> counted;
  for_each_location(chosen, [&](const Url& url, const CleanerEntry& entry) {
    const auto known = shared_.find(std::string_view(url.path()));
    if (known == shared_.end()) return;
    const std::int64_t size = is_entry_of_its_own(entry) ? size_of(entry) : known->second;
    const auto [first, is_first] = counted.emplace(known->first, size);
    if (is_first) return;
    again = add_bytes(again, std::min(first->second, size));
    first->second = std::max(first->second, size);
  });
  for (const auto& [path, size] : counted) {
    // Some entries count nothing of what is inside them; then that is not counted twice.
    const bool is_counted_around = is_any_around(path, [&, bytes_inside = size](std::string_view around) {
      const auto found = counted.find(around);
      return found != counted.end() && found->second >= bytes_inside;
    });
    if (is_counted_around) again = add_bytes(again, size);
  }
  return std::max<std::int64_t>(0, bytes - again);
}

std::vector<Url> outermost_of(std::span<const Url> urls) {
  std::unordered_set<std::string_view> paths;
  for (const Url& url : urls) paths.insert(url.path());
  std::unordered_set<std::string_view> met;
  std::vector<Url> outermost;
  for (const Url& url : urls) {
    const bool is_inside = is_any_around(url.path(), [&](std::string_view path) { return paths.contains(path); });
    if (!is_inside && met.insert(url.path()).second) outermost.push_back(url);
  }
  return outermost;
}

namespace {

std::int64_t given_back(std::span<const Removal> removals) {
  std::int64_t bytes = 0;
  for (const Removal& removal : removals) bytes = add_bytes(bytes, removal.bytes);
  return bytes;
}

}  // namespace

std::int64_t cleaned_amount(HomeKind layout, std::int64_t was_cleaned, Measurer& measurer,
                            std::span<const LeftEntry> left, std::span<const Removal> removals) {
  if (layout == HomeKind::linux_desktop) return given_back(removals);
  std::vector<Url> urls;
  for (const LeftEntry& entry : left) urls.push_back(entry.url);
  const std::int64_t still_there = measurer.overall_size_of_files(outermost_of(urls));
  return std::clamp<std::int64_t>(was_cleaned - still_there, 0, given_back(removals));
}

}  // namespace tarnby
