#include "engine/large_file_walk.h"

#include <algorithm>
#include <iterator>
#include <mutex>

#include "files/bytes.h"
#include "files/traversal.h"
#include "text/text.h"

namespace tarnby {

// What a parallel walk may forget
//
// The rules go from entry to entry and remember the last package they took: files whose path contains it are skipped,
// and so are folders whose path contains its extension and a slash. So what becomes of an entry depends on the order of
// the walk, and is settled afterwards over the few entries kept here. Why these are enough:
//
//     a.bundle/                outermost: kept, with all its bytes
//       b.plugin/c             never asked about: either a.bundle was taken, and their paths contain "bundle/", or
//                              a.bundle was skipped for an extension that their paths contain too
//       large                  kept too: it counts by itself when a.bundle is skipped
//     Caches/large             never kept and, outside packages, not even looked at: its folder's path tells enough

namespace {

/// A folder's place in the walk, as the tag of a traversal: the number of the outermost package it is in, from 1,
/// and whether all files below it are excluded.
struct Place {
  std::size_t package = 0;
  bool is_excluded = false;

  std::size_t tag() const { return package * 2 + (is_excluded ? 1 : 0); }
  static Place of_tag(std::size_t tag) { return {tag / 2, tag % 2 == 1}; }
};

/// Tells which folders have a path that contains one of some others.
class ExcludedPaths {
 public:
  explicit ExcludedPaths(std::span<const Url> urls) {
    for (const Url& url : urls) {
      if (!url.is_file_url()) continue;
      paths_.emplace_back(url.path());
      last_components_.emplace_back(url.last_path_component());
    }
  }

  /// True when one is contained in the path but not in that of the folder above: then its last component begins in the
  /// name, which few names permit, since a slash matches a slash only.
  template <typename MakePath>
  bool end_in(std::string_view name, MakePath make_path) const {
    const FoldedText folded(name);
    const auto is_in = [&](const FoldedText& part) { return folded.contains(part); };
    if (std::none_of(last_components_.begin(), last_components_.end(), is_in)) return false;
    const FoldedText path(make_path());
    return std::any_of(paths_.begin(), paths_.end(), [&](const FoldedText& part) { return path.contains(part); });
  }

 private:
  std::vector<FoldedText> paths_;
  std::vector<FoldedText> last_components_;
};

class LargeFileJob final : public TraversalJob {
 public:
  LargeFileJob(const GrantedFolders& granted, std::span<const Url> excluded) : granted_(granted), excluded_(excluded) {}

  Descriptor open_start(const TraversedFolder& folder) override {
    return granted_.open_folder(Url::file(folder.name()));
  }

  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    const Place here = Place::of_tag(folder.tag());
    std::vector<LargeFileCandidate> large;
    std::int64_t bytes = 0;
    for (const RawEntry& entry : entries) {
      if (entry.kind == EntryKind::folder) {
        enter.add(entry.name, below(folder, here, entry.name).tag());
        continue;
      }
      // Only in a package do the bytes of excluded files matter, and those of links.
      const bool counts = here.package > 0 ? entry.kind == EntryKind::file || entry.kind == EntryKind::link
                                           : entry.kind == EntryKind::file && !here.is_excluded;
      if (!counts) continue;
      const Status status = status_at(handle, entry.name.c_str());
      missed_.note(status.error, folder);
      const std::int64_t size = status.size;
      bytes = add_bytes(bytes, size);
      if (size >= large_file_bytes && !here.is_excluded) large.push_back({path_below(folder, entry.name), size, false});
    }
    keep(here, bytes, std::move(large));
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override { missed_.note(folder.error(), folder); }

  /// After the job has ended; notes what was missed.
  std::vector<LargeFileCandidate> candidates() {
    note_missed(missed_.missed());
    std::move(packages_.begin(), packages_.end(), std::back_inserter(large_));
    std::sort(large_.begin(), large_.end(), [](const auto& a, const auto& b) { return walks_before(a.path, b.path); });
    return std::move(large_);
  }

 private:
  static std::string path_below(const TraversedFolder& folder, std::string_view name) {
    std::string path = folder.path();
    if (path.back() != '/') path += '/';
    return path.append(name);
  }

  Place below(const TraversedFolder& folder, Place place, std::string_view name) {
    if (place.package > 0) return place;
    if (!place.is_excluded) {
      place.is_excluded = excluded_.end_in(name, [&] { return path_below(folder, name); });
    }
    if (is_package_name(name)) {
      LargeFileCandidate package = {path_below(folder, name), 0, true};
      const std::lock_guard lock(mutex_);
      packages_.push_back(std::move(package));
      place.package = packages_.size();
    }
    return place;
  }

  void keep(Place place, std::int64_t bytes, std::vector<LargeFileCandidate> large) {
    if (large.empty() && (place.package == 0 || bytes == 0)) return;
    const std::lock_guard lock(mutex_);
    std::move(large.begin(), large.end(), std::back_inserter(large_));
    if (place.package == 0) return;
    std::int64_t& size = packages_[place.package - 1].size;
    size = add_bytes(size, bytes);
  }

  const GrantedFolders& granted_;
  const ExcludedPaths excluded_;
  MissedByWorkers missed_;
  std::mutex mutex_;
  std::vector<LargeFileCandidate> packages_;
  std::vector<LargeFileCandidate> large_;
};

}  // namespace

std::vector<LargeFileCandidate> walk_for_large_files(FileManager& files, const Url& home,
                                                     std::span<const Url> excluded) {
  if (!home.is_file_url()) return {};
  LargeFileJob job(files.granted(), excluded);
  const TraversalStart starts[] = {{home.path(), Place{}.tag()}};
  files.traversal().run(job, starts);
  return job.candidates();
}

}  // namespace tarnby
