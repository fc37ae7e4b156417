#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/cleaner_item.h"
#include "engine/why_left.h"
#include "files/home_kind.h"
#include "files/measurer.h"

namespace tarnby {

// How chosen entries are counted
//
// The caches of a removed application are listed as a cache and lie inside its container, which is listed as a
// leftover:
//
//     caches       Containers/com.gone.tool/Data/Library/Caches    20 MB
//     remainders   Containers/com.gone.tool                        24 MB
//
// Each group shows what is listed in it, yet who removes both frees 24 MB. In an amount, what is listed twice, or lies
// inside something else that was chosen, adds nothing the second time.

/// What has to be known of listed entries to count any choice of them. Does not change; any thread may ask.
class ChosenAmount {
 public:
  /// Knows nothing: every entry counts its own size.
  ChosenAmount() = default;

  /// Notes which locations are listed more than once or lie inside one another, and measures those among them that
  /// share their entry's size with others: on the disk, unless a Measurer::SizeMemory still knows them.
  ChosenAmount(std::span<const CleanerEntry> listed, Measurer& measurer);
  /// The same with another way to measure: the bytes of each location, in the order of the list.
  using SizesOf = std::function<std::vector<std::int64_t>(std::span<const Url> urls)>;
  ChosenAmount(std::span<const CleanerEntry> listed, const SizesOf& sizes_of);

  /// Bytes of the chosen entries with each location counted once. They may be any of the listed ones, or records made
  /// of the same locations since. A location that was not listed counts as its entry says.
  std::int64_t amount(std::span<const CleanerEntry> chosen) const;

  /// Whether the entry may count less beside another one. Those for which this is false always count their own size.
  bool is_shared(const CleanerEntry& entry) const;

 private:
  struct PathHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view path) const { return std::hash<std::string_view>{}(path); }
  };

  void note_shared(std::span<const CleanerEntry> listed);
  void measure(std::span<const CleanerEntry> listed, const SizesOf& sizes_of);

  /// The sizes, by path, of what is listed twice, lies inside another location, or has another one inside.
  std::unordered_map<std::string, std::int64_t, PathHash, std::equal_to<>> shared_;
};

/// Those of the locations that lie inside none of the others, each once, in the order they had: measured together, they
/// count every byte once.
std::vector<Url> outermost_of(std::span<const Url> urls);

/// The amount in bytes that people read after a removal and that goes into the lifetime total: what the engine counted
/// for the run, less what is still there, and at most what this run itself removed. Measures what was left. The caller
/// sets the engine's `wasCleaned` to 0 afterwards, so that nothing is counted twice. In a home of
/// the Linux kind it is what the disk has given back, as the removal itself has counted it.
/// @param was_cleaned what the engine counted for this run, in bytes.
std::int64_t cleaned_amount(HomeKind layout, std::int64_t was_cleaned, Measurer& measurer,
                            std::span<const LeftEntry> left, std::span<const Removal> removals);

}  // namespace tarnby
