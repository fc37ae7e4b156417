#include "files/disk_usage.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <limits>
#include <mutex>
#include <string>
#include <tuple>

#include "files/bytes.h"
#include "files/traversal.h"

namespace tarnby {

namespace {

/// One name of a file that has several.
struct NameOfMany {
  Identity identity;
  std::int64_t bytes;
  std::uint64_t names;

  auto order() const { return std::tuple(identity.device, identity.number); }
};

constexpr std::int64_t never = std::numeric_limits<std::int64_t>::min();

/// What some entries add to a row.
struct Part {
  std::int64_t bytes = 0;
  std::int64_t newest_file = never;
  std::int64_t newest_folder = never;
  std::int64_t files = 0;
  std::vector<NameOfMany> names_of_many = {};

  void add_file(const DiskStatus& status) {
    ++files;
    newest_file = std::max(newest_file, status.changed);
    if (status.names > 1) {
      names_of_many.push_back({status.identity, status.bytes, status.names});
    } else {
      bytes += status.bytes;
    }
  }
  void add_folder(const DiskStatus& status) {
    bytes += status.bytes;
    newest_folder = std::max(newest_folder, status.changed);
  }
  void add(const Part& other) {
    bytes = add_bytes(bytes, other.bytes);
    newest_file = std::max(newest_file, other.newest_file);
    newest_folder = std::max(newest_folder, other.newest_folder);
    files += other.files;
    names_of_many.insert(names_of_many.end(), other.names_of_many.begin(), other.names_of_many.end());
  }
};

/// Measures the folders of all rows; the tag of a folder is the index of its row.
class UsageJob final : public TraversalJob {
 public:
  UsageJob(const GrantedFolders& granted, std::size_t rows) : granted_(granted), rows_(rows) {}

  void add(std::size_t row, const Part& part) {
    const std::lock_guard lock(rows_[row].mutex);
    rows_[row].part.add(part);
  }

  /// After the job has ended; notes what was missed.
  DiskUsage usage(std::size_t row);

  Descriptor open_start(const TraversedFolder& folder) override {
    const Url url = Url::file(folder.name());
    if (!granted_.holds(url)) return counted(granted_.open_folder(url), folder, -1, "");
    const Descriptor parent = granted_.open_parent(url);
    const std::string name(url.last_path_component());
    return parent ? counted(open_folder_on_same_mount(parent.get(), name.c_str()), folder, parent.get(), name.c_str())
                  : Descriptor();
  }

  Descriptor open_below(int parent, const TraversedFolder& folder) override {
    const char* name = folder.name().c_str();
    return counted(open_folder_on_same_mount(parent, name), folder, parent, name);
  }

  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    Row& row = rows_[folder.tag()];
    Part part;
    for (const RawEntry& entry : entries) {
      if (entry.kind == EntryKind::folder) {
        enter.add(entry.name, folder.tag());
        continue;
      }
      const DiskStatus status = disk_status_at(handle, entry.name.c_str());
      if (status.error == 0) {
        part.add_file(status);
      } else {
        row.missed.note(status.error, folder);
      }
    }
    add(folder.tag(), part);
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override {
    Row& row = rows_[folder.tag()];
    if (folder.error() == EXDEV) {
      row.has_mounts = true;
    } else if (folder.error() != closed_to_owner) {
      row.missed.note(folder.error(), folder);
    }
  }

 private:
  /// Stands for EACCES where nothing is missed by it; no look meets it otherwise.
  static constexpr int closed_to_owner = ENOTEMPTY;

  struct Row {
    std::mutex mutex;
    Part part;
    std::atomic<bool> has_mounts{false};
    MissedByWorkers missed;
  };

  /// The folder, after its own blocks were counted, also where it cannot be listed.
  Descriptor counted(Descriptor opened, const TraversedFolder& folder, int parent, const char* name) {
    const int error = opened ? 0 : errno;
    DiskStatus status;
    if (opened) status = disk_status_of(opened.get());
    if (error == EACCES && parent >= 0) status = disk_status_at(parent, name);
    if (status.kind == EntryKind::folder) {
      Part part;
      part.add_folder(status);
      add(folder.tag(), part);
    }
    errno = error == EACCES && status.owner == geteuid() ? closed_to_owner : error;
    return opened;
  }

  const GrantedFolders& granted_;
  std::vector<Row> rows_;
};

DiskUsage UsageJob::usage(std::size_t row) {
  Part& part = rows_[row].part;
  note_missed(rows_[row].missed.missed());
  DiskUsage usage;
  usage.size = usage.frees = part.bytes;
  usage.newest = part.newest_file != never ? part.newest_file : part.newest_folder;
  if (usage.newest == never) usage.newest = 0;
  usage.files = part.files;
  usage.has_mounts = rows_[row].has_mounts;
  auto& names = part.names_of_many;
  std::ranges::sort(names, {}, &NameOfMany::order);
  for (auto name = names.begin(); name != names.end();) {
    const auto next = std::find_if(name, names.end(), [&](const NameOfMany& o) { return o.order() != name->order(); });
    usage.size = add_bytes(usage.size, name->bytes);
    if (static_cast<std::uint64_t>(next - name) >= name->names) usage.frees = add_bytes(usage.frees, name->bytes);
    name = next;
  }
  return usage;
}

/// The entries of a row without those that are listed twice or lie in another one, in the order of a walk.
std::vector<Url> without_nested(const std::vector<Url>& row) {
  std::vector<Url> urls;
  for (const Url& url : row) {
    if (url.is_file_url()) urls.push_back(url);
  }
  std::ranges::stable_sort(urls, [](const Url& a, const Url& b) { return walks_before(a.path(), b.path()); });
  std::vector<Url> kept;
  for (Url& url : urls) {
    if (kept.empty() || !url.is_within(kept.back())) kept.push_back(std::move(url));
  }
  return kept;
}

/// Adds the files of a row, and collects its folders.
class RowEntries {
 public:
  RowEntries(FileManager& files, UsageJob& job, std::vector<TraversalStart>& starts)
      : files_(files), job_(job), starts_(starts), parents_(files.granted()) {}

  void add(std::size_t row, const std::vector<Url>& urls) {
    constexpr std::size_t at_once = 1000;  // some milliseconds
    Part part;
    std::size_t looked = 0;
    for (const Url& url : without_nested(urls)) {
      if (looked++ % at_once == 0 && files_.stopped_looking()) return note_missed(ECANCELED, url);
      if (url.listed_kind() == EntryKind::folder) {
        starts_.push_back({url.path(), row});
      } else {
        add(row, url, part);
      }
    }
    job_.add(row, part);
  }

 private:
  void add(std::size_t row, const Url& url, Part& part) {
    const std::string name(url.last_path_component());
    const int parent = parents_.parent_of(url);
    if (parent < 0 || name == "..") return note_missed(parent < 0 ? errno : ENOENT, url);
    const DiskStatus status = disk_status_at(parent, name.c_str());
    if (status.error != 0) return note_missed(status.error, url);
    if (status.kind == EntryKind::folder) {
      starts_.push_back({url.path(), row});
    } else {
      part.add_file(status);
    }
  }

  FileManager& files_;
  UsageJob& job_;
  std::vector<TraversalStart>& starts_;
  ParentCursor parents_;
};

}  // namespace

std::vector<DiskUsage> disk_usage(FileManager& files, std::span<const std::vector<Url>> rows) {
  UsageJob job(files.granted(), rows.size());
  std::vector<TraversalStart> starts;
  RowEntries entries(files, job, starts);
  for (std::size_t row = 0; row < rows.size(); ++row) entries.add(row, rows[row]);
  files.traversal().run(job, starts);
  if (job.cancelled()) note_missed(ECANCELED, Url());
  std::vector<DiskUsage> usages;
  for (std::size_t row = 0; row < rows.size(); ++row) usages.push_back(job.usage(row));
  return usages;
}

}  // namespace tarnby
