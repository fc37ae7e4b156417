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
/// Within a Session every folder whose size is asked for is measured once and remembered, also when it lies inside
/// another one that is asked for later, and so are the entries of a folder, apart from those. What is known to be
/// wanted can be planned ahead: the workers then measure while the caller does other work. Any thread may call; one
/// session at a time.
class Measurer {
 public:
  explicit Measurer(FileManager& files) : files_(files) {}
  ~Measurer() = default;
  Measurer(const Measurer&) = delete;
  Measurer& operator=(const Measurer&) = delete;

  /// One scan: sizes are remembered from its beginning to its end.
  class Session {
   public:
    explicit Session(Measurer& measurer);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

   private:
    Measurer& measurer_;
  };

  /// Begins to measure these folders, passing over what was listed as something else; returns at once. Without a
  /// session it does nothing.
  void plan(std::span<const Url> folders);
  /// Begins to measure every entry of a folder, for `entries`; returns at once. Without a session it does nothing.
  void plan_entries(const Url& folder, Hidden hidden);

  /// What is below a folder; 0 when it is missing, no folder, or unreadable.
  std::int64_t overall_size_of_direcory(const Url& folder);
  /// The sum over a list: what is no file URL or does not exist counts 0, a folder as above, a file or link itself.
  std::int64_t overall_size_of_files(std::span<const Url> urls);
  /// The same for each one of the list.
  std::vector<std::int64_t> sizes_of_files(std::span<const Url> urls);
  /// The same without what is hidden inside the folders. Nothing of it is remembered in a session.
  std::vector<std::int64_t> visible_sizes_of_files(std::span<const Url> urls);
  /// The entries of a folder with their sizes, in byte order of their names.
  std::vector<MeasuredEntry> entries(const Url& folder, Hidden hidden);

 private:
  class Memory;

  FileManager& files_;
  std::mutex mutex_;
  std::shared_ptr<Memory> session_memory_;  // null outside a session

  std::shared_ptr<Memory> memory();
  std::vector<Status> statuses(std::span<const Url> urls) const;
  std::vector<std::int64_t> sizes_of_files(std::span<const Url> urls, Memory& known);
};

}  // namespace tarnby
