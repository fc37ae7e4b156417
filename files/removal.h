#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <system_error>
#include <type_traits>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// What a removal has done so far. Its workers add to it while they go on; any thread may read it.
struct RemovalProgress {
  /// What this run itself has removed: files, links and folders, those inside listed entries included.
  std::atomic<std::int64_t> entries{0};
  /// Of the listed entries those that this run has taken whole.
  std::atomic<std::int64_t> listed{0};
  /// As Removal::bytes, over all listed entries.
  std::atomic<std::int64_t> bytes{0};
};

/// What became of one entry that was to be removed.
struct Removal {
  /// False when the pass was stopped before it came to this entry.
  bool attempted = false;
  /// Empty when nothing of the entry is left, also when it was gone before.
  std::error_code error;
  /// Bytes of the files and links that this very run removed for it, also where a part of it stays: each name once,
  /// with the logical length it had at that moment. What somebody else removed meanwhile counts for them.
  std::int64_t bytes = 0;
  /// True when this run itself removed the entry; false also when it was gone before.
  bool taken = false;
  /// Where the rest of a whole unit lies that could not be emptied, see RemovalOptions::whole_units; else empty.
  Url left_as = {};
};

/// Why a RemovalGate keeps an entry, where errno(3) has no word for it. Its numbers are none of errno(3) either.
enum class RemovalRefusal {
  /// The program that it belongs to is running.
  owner_runs = 1001,
  /// Nobody can tell whether that program is running.
  owner_unknown,
  /// The entry that has to go before it is still there.
  other_stays,
};
std::error_code make_error_code(RemovalRefusal refusal);

/// Asked right before an entry is begun, by its index in the list: an error keeps it from being touched and becomes the
/// error of its Removal. Of the results so far, those are final whose `attempted` is true. What is gone, or would be
/// refused anyway, is not asked about.
///
/// Called on any thread of the removal, which may have given up rights (see FileManager::confine_threads), one call at
/// a time. Must not throw, nor wait for the removal.
using RemovalGate = std::function<std::error_code(std::size_t index, std::span<const Removal> so_far)>;

/// What a removal counts as the bytes of what it takes.
enum class CountedBytes {
  /// The length of each file and link, whatever it takes on the disk.
  lengths,
  /// What the disk gives back: the blocks of each file whose last name goes, and those of each folder.
  blocks_given_back,
};

/// How a removal is watched and ended. What is pointed to must live until the removal has returned; all may be null.
struct RemovalOptions {
  /// When it becomes true, the entries in hand are finished, with those that wait for them, and the rest is not
  /// attempted.
  const std::atomic<bool>* stop = nullptr;
  /// When it becomes true, the removal ends between two system calls: of the entries in hand a part may stay, which
  /// then fail with ECANCELED.
  const std::atomic<bool>* stop_now = nullptr;
  RemovalProgress* progress = nullptr;
  CountedBytes counted = CountedBytes::lengths;
  /// Empty when every entry may go.
  RemovalGate refuse = {};
  /// For each entry the index of the earlier one that must be done with, whatever became of it, before it is begun
  /// itself. Whoever has no earlier one there, or lies behind its end, waits for none.
  std::vector<std::size_t> after = {};

  /// Where this user's own folder, a listed one or below it, forbids its owner to list it or to remove from it, its
  /// owner gets all rights in it and it is tried once more. A folder that cannot go for another reason keeps them.
  bool unlock_folders = false;
  /// A listed folder is never half itself: it gets a hidden name in its own folder before it is emptied (see
  /// is_removal_remnant). One that cannot be renamed is not touched, nor one in which something is mounted. When
  /// nothing of it could be taken, it gets its name back, if that is still free; otherwise the rest keeps the hidden
  /// name. A thread that has given up rights itself needs to have kept MayChange::renaming.
  bool whole_units = false;

  static constexpr std::size_t waits_for_none = SIZE_MAX;
};

}  // namespace tarnby

template <>
struct std::is_error_code_enum<tarnby::RemovalRefusal> : std::true_type {};
