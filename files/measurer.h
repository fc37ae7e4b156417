#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// One entry of a folder with its size in bytes: a file's or link's own length, a folder's whole content.
struct MeasuredEntry {
  Url url;
  EntryKind kind = EntryKind::none;
  std::int64_t size = 0;
};

/// Measures folders and files by their logical sizes.
///
/// The size of a folder is the sum over everything below it, hidden entries and package contents included; the folder
/// itself, special files and what cannot be read count 0, links count their own length and are not followed. Sums
/// saturate. Memory does not grow with the number of files.
///
/// While a SizeMemory exists, every folder whose size is asked for is measured once and its size remembered, also when
/// it lies inside another one that is asked for later. The entries of a folder are remembered as well, separately. A
/// folder whose size will be asked for can be planned ahead: the workers then measure it while the caller does other
/// work. What is missed is noted on the thread that asks for a size, when it asks (see note_missed). Any thread may
/// call.
class Measurer {
 public:
  explicit Measurer(FileManager& files) : files_(files) {}
  ~Measurer() = default;
  Measurer(const Measurer&) = delete;
  Measurer& operator=(const Measurer&) = delete;

  /// Remembers sizes from its beginning to its end, for one scan. One at a time; its end cancels what is still being
  /// measured and waits for it.
  class SizeMemory {
   public:
    explicit SizeMemory(Measurer& measurer);
    ~SizeMemory();
    SizeMemory(const SizeMemory&) = delete;
    SizeMemory& operator=(const SizeMemory&) = delete;

   private:
    Measurer& measurer_;
  };

  /// Begins to measure these folders and returns at once. Entries that a listing found to be no folders are skipped.
  /// Does nothing without a SizeMemory.
  void plan(std::span<const Url> folders);
  /// Begins to measure every entry of a folder, for `entries`, and returns at once. Does nothing without a SizeMemory.
  void plan_entries(const Url& folder, Hidden hidden);

  /// The bytes below a folder; 0 when it is missing, no folder, or unreadable. Waits until it is measured.
  std::int64_t overall_size_of_direcory(const Url& folder);
  /// The bytes of all of them together: what is no file URL or does not exist counts 0, a folder as above, a file or
  /// link itself. An entry that is listed twice counts twice. Waits until all are measured.
  std::int64_t overall_size_of_files(std::span<const Url> urls);
  /// The same for each one, in the order of the list.
  std::vector<std::int64_t> sizes_of_files(std::span<const Url> urls);
  /// The same without what is hidden inside the folders. Nothing of it is remembered.
  std::vector<std::int64_t> visible_sizes_of_files(std::span<const Url> urls);
  /// The entries of a folder with their sizes, in byte order of their names; none when it is missing, no folder, or
  /// unreadable. Waits until they are measured.
  std::vector<MeasuredEntry> entries(const Url& folder, Hidden hidden);

 private:
  class KnownSizes;

  FileManager& files_;
  std::mutex mutex_;
  std::shared_ptr<KnownSizes> remembered_;  // null without a SizeMemory

  std::shared_ptr<KnownSizes> known_sizes();
  std::vector<Status> statuses(std::span<const Url> urls) const;
  std::vector<std::int64_t> sizes_of_files(std::span<const Url> urls, KnownSizes& known);
};

}  // namespace tarnby
