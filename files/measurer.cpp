#include "files/measurer.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <map>
#include <string>
#include <string_view>

#include "files/bytes.h"
#include "files/traversal.h"

namespace tarnby {

// How a folder is measured once
//
// Every measured folder is a start of its own. When a later one turns out to hold an earlier one, it is measured around
// it, and the sum of the earlier one is added when somebody asks:
//
//     planned first   Containers/a/Data/Library/Caches      10 bytes
//     planned then    Containers/a                           3 bytes of its own, does not enter .../Caches
//     asked           Containers/a                          13 bytes

namespace {

void add_atomically(std::atomic<std::int64_t>& total, std::int64_t bytes) {
  std::int64_t before = total.load(std::memory_order_relaxed);
  while (!total.compare_exchange_weak(before, add_bytes(before, bytes), std::memory_order_relaxed)) {
  }
}

bool is_hidden(std::string_view name) {
  return name.starts_with('.');
}

bool has_size(EntryKind kind) {
  return kind == EntryKind::file || kind == EntryKind::link;
}

/// Measures some folders, each on its own.
class FoldersJob final : public TraversalJob {
 public:
  /// A folder to measure, and the paths below it, relative to it, that are measured elsewhere.
  struct Root {
    std::string path;
    std::vector<std::string> measured_elsewhere;
  };

  FoldersJob(const GrantedFolders& granted, Hidden hidden, std::vector<Root> roots)
      : granted_(granted), hidden_(hidden), totals_(roots.size()), roads_(roots.size()) {
    for (std::size_t at = 0; at < roots.size(); ++at) {
      roads_[at].total = at;
      starts_.push_back({roots[at].path, road_around(at, roots[at].measured_elsewhere)});
    }
  }

  std::span<const TraversalStart> starts() const { return starts_; }

  /// Waits until the folder is measured, and notes what was missed in it.
  std::int64_t total(std::size_t root) {
    Total& total = totals_[root];
    std::unique_lock lock(mutex_);
    total.asked = true;
    root_done_.wait(lock, [&] { return total.done; });
    note_missed(total.missed.missed());
    return total.bytes;
  }

  Descriptor open_start(const TraversedFolder& folder) override {
    return granted_.open_folder(Url::file(folder.name()));
  }

  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    const Road& road = roads_[folder.account()];
    std::int64_t bytes = 0;
    for (const RawEntry& entry : entries) {
      if (hidden_ == Hidden::skip && is_hidden(entry.name)) continue;
      if (has_size(entry.kind)) {
        const std::int64_t size = size_at(handle, entry.name.data());
        if (size < 0) totals_[road.total].missed.note(errno, folder);
        bytes = add_bytes(bytes, std::max<std::int64_t>(0, size));
      } else if (entry.kind == EntryKind::folder) {
        go_on(road, entry.name, enter);
      }
    }
    if (bytes > 0) add_atomically(totals_[road.total].bytes, bytes);
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override {
    Total& total = totals_[roads_[folder.account()].total];
    total.missed.note(folder.error(), folder);
    if (folder.parent()) return;
    const std::lock_guard lock(mutex_);
    total.done = true;
    if (total.asked) root_done_.notify_all();
  }

 private:
  static constexpr std::size_t measured_elsewhere = SIZE_MAX;

  struct Total {
    std::atomic<std::int64_t> bytes{0};
    bool done = false;
    bool asked = false;  // somebody waits for it
    MissedByWorkers missed;
  };
  /// Where a folder's bytes go, and which of the folders in it are not like it: each has a road of its own, or is
  /// measured elsewhere. The first roads are the plain ones, one a root.
  struct Road {
    std::size_t total = 0;
    std::map<std::string, std::size_t, std::less<>> turns;
  };

  static void go_on(const Road& road, std::string_view name, FoldersToEnter& enter) {
    const auto turn = road.turns.empty() ? road.turns.end() : road.turns.find(name);
    if (turn == road.turns.end()) {
      enter.add(name, road.total);
    } else if (turn->second != measured_elsewhere) {
      enter.add(name, turn->second);
    }
  }

  std::size_t new_road(std::size_t total) {
    roads_.push_back({total, {}});
    return roads_.size() - 1;
  }

  std::size_t road_around(std::size_t root, const std::vector<std::string>& elsewhere) {
    if (elsewhere.empty()) return root;
    const std::size_t first = new_road(root);
    for (std::string_view path : elsewhere) {
      std::size_t at = first;
      for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        const std::string name(path.substr(0, slash));
        path.remove_prefix(slash + 1);
        const auto turn = roads_[at].turns.find(name);
        const std::size_t next = turn == roads_[at].turns.end() ? new_road(root) : turn->second;
        roads_[at].turns[name] = next;
        at = next;
      }
      roads_[at].turns[std::string(path)] = measured_elsewhere;
    }
    return first;
  }

  const GrantedFolders& granted_;
  const Hidden hidden_;
  std::vector<Total> totals_;
  std::vector<Road> roads_;
  std::vector<TraversalStart> starts_;
  std::mutex mutex_;
  std::condition_variable root_done_;
};

/// Measures the entries of one folder.
class EntriesJob final : public TraversalJob {
 public:
  EntriesJob(const GrantedFolders& granted, Url folder, Hidden hidden)
      : granted_(granted), folder_(std::move(folder)), hidden_(hidden) {}

  std::vector<TraversalStart> starts() const { return {{folder_.path(), 0}}; }
  bool is_for(const Url& folder, Hidden hidden) const { return folder == folder_ && hidden == hidden_; }

  Descriptor open_start(const TraversedFolder& folder) override {
    return granted_.open_folder(Url::file(folder.name()));
  }

  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    if (folder.parent()) {
      visit_below(folder, handle, entries, enter);
    } else {
      visit_folder_itself(folder, handle, entries, enter);
    }
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override { missed_.note(folder.error(), folder); }

  /// After the job has ended; notes what was missed.
  std::vector<MeasuredEntry> measured() {
    note_missed(missed_.missed());
    const std::lock_guard lock(mutex_);  // several may ask within one session
    std::sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.name < b.name; });
    std::vector<MeasuredEntry> entries;
    entries.reserve(rows_.size());
    for (const Row& row : rows_)
      entries.push_back({folder_.appending(row.name).listed_as(row.kind), row.kind, row.size});
    return entries;
  }

 private:
  struct Row {
    std::string name;
    EntryKind kind;
    std::int64_t size;
  };

  void visit_folder_itself(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
                           FoldersToEnter& enter) {
    std::vector<Row> found;
    for (const RawEntry& entry : entries) {
      if (hidden_ == Hidden::skip && is_hidden(entry.name)) continue;
      const std::int64_t own = has_size(entry.kind) ? size_of(folder, handle, entry) : 0;
      found.push_back({std::string(entry.name), entry.kind, own});
    }
    const std::lock_guard lock(mutex_);
    for (Row& row : found) {
      if (row.kind == EntryKind::folder) enter.add(row.name, rows_.size());
      rows_.push_back(std::move(row));
    }
  }

  std::int64_t size_of(const TraversedFolder& folder, int handle, const RawEntry& entry) {
    const std::int64_t size = size_at(handle, entry.name.data());
    if (size < 0) missed_.note(errno, folder);
    return std::max<std::int64_t>(0, size);
  }

  void visit_below(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
                   FoldersToEnter& enter) {
    std::int64_t bytes = 0;
    for (const RawEntry& entry : entries) {
      if (has_size(entry.kind)) {
        bytes = add_bytes(bytes, size_of(folder, handle, entry));
      } else if (entry.kind == EntryKind::folder) {
        enter.add(entry.name, folder.account());
      }
    }
    const std::lock_guard lock(mutex_);
    std::int64_t& size = rows_[folder.account()].size;
    size = add_bytes(size, bytes);
  }

  const GrantedFolders& granted_;
  const Url folder_;
  const Hidden hidden_;
  MissedByWorkers missed_;
  std::mutex mutex_;
  std::vector<Row> rows_;
};

}  // namespace

/// What has been measured or is being measured. Its end waits for the workers.
class Measurer::Memory {
 public:
  /// @param hidden whether hidden entries inside folders count.
  explicit Memory(FileManager& files, Hidden hidden = Hidden::take) : files_(files), hidden_(hidden) {}
  ~Memory() {
    for (const auto& job : folder_jobs_) job->cancel();
    for (const auto& job : entry_jobs_) job->cancel();
    for (const auto& job : folder_jobs_) files_.traversal().wait(*job);
    for (const auto& job : entry_jobs_) files_.traversal().wait(*job);
  }
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  void plan(std::span<const Url> folders, Traversal::Turn turn) {
    const std::lock_guard lock(mutex_);
    std::vector<AllKnown::iterator> fresh;
    std::vector<FoldersJob::Root> roots;
    for (const Url& folder : folders) {
      if (!folder.is_file_url()) continue;
      const auto [place, is_new] = known_.try_emplace(folder.path());
      if (!is_new) continue;
      place->second.root = fresh.size();
      fresh.push_back(place);
      roots.push_back({folder.path(), {}});
    }
    if (fresh.empty()) return;
    for (std::size_t at = 0; at < fresh.size(); ++at) find_within(roots[at], fresh[at]);
    FoldersJob& job =
        *folder_jobs_.emplace_back(std::make_unique<FoldersJob>(files_.granted(), hidden_, std::move(roots)));
    for (const auto place : fresh) place->second.job = &job;
    files_.traversal().start(job, job.starts(), turn);
  }

  std::int64_t size(const Url& folder) {
    if (!folder.is_file_url()) return 0;
    plan({&folder, 1}, Traversal::Turn::now);
    std::unique_lock lock(mutex_);
    std::vector<const Known*> parts = {&known_.find(folder.path())->second};
    for (std::size_t at = 0; at < parts.size(); ++at) {
      const Known* part = parts[at];
      parts.insert(parts.end(), part->within.begin(), part->within.end());
    }
    lock.unlock();
    std::int64_t bytes = 0;
    for (const Known* part : parts) bytes = add_bytes(bytes, part->job->total(part->root));
    return bytes;
  }

  void plan_entries(const Url& folder, Hidden hidden, Traversal::Turn turn) {
    const std::lock_guard lock(mutex_);
    if (!folder.is_file_url() || planned_entries(folder, hidden)) return;
    EntriesJob& job = *entry_jobs_.emplace_back(std::make_unique<EntriesJob>(files_.granted(), folder, hidden));
    files_.traversal().start(job, job.starts(), turn);
  }

  std::vector<MeasuredEntry> entries(const Url& folder, Hidden hidden) {
    plan_entries(folder, hidden, Traversal::Turn::now);
    std::unique_lock lock(mutex_);
    EntriesJob* job = planned_entries(folder, hidden);
    lock.unlock();
    if (!job) return {};
    files_.traversal().wait(*job);
    return job->measured();
  }

 private:
  struct Known {
    FoldersJob* job = nullptr;
    std::size_t root = 0;
    std::vector<const Known*> within;
  };
  struct WalksBefore {
    bool operator()(const std::string& a, const std::string& b) const { return walks_before(a, b); }
  };
  using AllKnown = std::map<std::string, Known, WalksBefore>;

  /// Notes which folders inside this one are measured on their own; in walking order those come right behind it.
  void find_within(FoldersJob::Root& root, AllKnown::iterator place) {
    const auto first = std::next(place);
    if (first == known_.end() || !first->first.starts_with(root.path)) return;  // nearly always
    const Url folder = Url::file(root.path);
    // Outside the grants links above a folder are followed, so one that is inside by its path may lie elsewhere.
    if (!files_.granted().holds(folder)) return;
    Url last;
    for (auto next = first; next != known_.end(); ++next) {
      const Url inner = Url::file(next->first);
      if (!inner.is_within(folder)) break;
      if (inner.is_within(last)) continue;
      std::string relative = inner.path().substr(folder.path() == "/" ? 1 : folder.path().size() + 1);
      if (hidden_ == Hidden::skip && (is_hidden(relative) || relative.find("/.") != std::string::npos)) continue;
      last = inner;
      root.measured_elsewhere.push_back(std::move(relative));
      place->second.within.push_back(&next->second);
    }
  }

  EntriesJob* planned_entries(const Url& folder, Hidden hidden) {
    for (const auto& job : entry_jobs_) {
      if (job->is_for(folder, hidden)) return job.get();
    }
    return nullptr;
  }

  FileManager& files_;
  const Hidden hidden_;
  std::mutex mutex_;
  AllKnown known_;
  std::vector<std::unique_ptr<FoldersJob>> folder_jobs_;
  std::vector<std::unique_ptr<EntriesJob>> entry_jobs_;
};

Measurer::Session::Session(Measurer& measurer) : measurer_(measurer) {
  const std::lock_guard lock(measurer_.mutex_);
  measurer_.session_memory_ = std::make_shared<Memory>(measurer_.files_);
}

Measurer::Session::~Session() {
  std::shared_ptr<Memory> memory;  // ends outside the lock, since it waits
  const std::lock_guard lock(measurer_.mutex_);
  memory = std::exchange(measurer_.session_memory_, nullptr);
}

std::shared_ptr<Measurer::Memory> Measurer::memory() {
  const std::lock_guard lock(mutex_);
  return session_memory_ ? session_memory_ : std::make_shared<Memory>(files_);
}

void Measurer::plan(std::span<const Url> folders) {
  const std::lock_guard lock(mutex_);
  if (!session_memory_) return;
  // Of a long list of files each would cost a failing look at a folder that is none.
  std::vector<Url> may_be_folders;
  for (const Url& url : folders) {
    const EntryKind kind = url.listed_kind();
    if (kind == EntryKind::none || kind == EntryKind::folder) may_be_folders.push_back(url);
  }
  session_memory_->plan(may_be_folders, Traversal::Turn::last);
}

void Measurer::plan_entries(const Url& folder, Hidden hidden) {
  const std::lock_guard lock(mutex_);
  if (session_memory_) session_memory_->plan_entries(folder, hidden, Traversal::Turn::last);
}

std::int64_t Measurer::overall_size_of_direcory(const Url& folder) {
  return memory()->size(folder);
}

/// Of each one of the list; nothing of those that a stop came before.
std::vector<Status> Measurer::statuses(std::span<const Url> urls) const {
  constexpr std::size_t at_once = 1000;  // some milliseconds
  std::vector<Status> all;
  all.reserve(urls.size());
  while (all.size() < urls.size() && !files_.stopped_looking()) {
    const auto next = urls.subspan(all.size(), std::min(at_once, urls.size() - all.size()));
    const std::vector<Status> some = files_.statuses(next);
    all.insert(all.end(), some.begin(), some.end());
  }
  all.resize(urls.size());
  return all;
}

std::vector<std::int64_t> Measurer::sizes_of_files(std::span<const Url> urls, Memory& known) {
  const std::vector<Status> statuses = this->statuses(urls);
  std::vector<Url> folders;
  for (std::size_t at = 0; at < urls.size(); ++at) {
    if (statuses[at].kind == EntryKind::folder) folders.push_back(urls[at]);
  }
  known.plan(folders, Traversal::Turn::now);
  std::vector<std::int64_t> sizes;
  sizes.reserve(urls.size());
  for (std::size_t at = 0; at < urls.size(); ++at) {
    sizes.push_back(statuses[at].kind == EntryKind::folder ? known.size(urls[at]) : statuses[at].size);
  }
  return sizes;
}

std::vector<std::int64_t> Measurer::sizes_of_files(std::span<const Url> urls) {
  return sizes_of_files(urls, *memory());
}

std::vector<std::int64_t> Measurer::visible_sizes_of_files(std::span<const Url> urls) {
  Memory apart(files_, Hidden::skip);
  return sizes_of_files(urls, apart);
}

std::int64_t Measurer::overall_size_of_files(std::span<const Url> urls) {
  std::int64_t bytes = 0;
  for (const std::int64_t size : sizes_of_files(urls)) bytes = add_bytes(bytes, size);
  return bytes;
}

std::vector<MeasuredEntry> Measurer::entries(const Url& folder, Hidden hidden) {
  return memory()->entries(folder, hidden);
}

}  // namespace tarnby
