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
// Each folder to measure is a start of a traversal and has a total of its own. When a folder contains one that was
// planned before, its traversal skips the inner folder, and the total of the inner one is added when the size is asked:
//
//     planned first   Containers/a/Data/Library/Caches      total 10
//     planned second  Containers/a                          total 3, skips Data/Library/Caches
//     asked           Containers/a                          size 13 = 3 + 10
//
// Which folder to skip is told by counting rules, one for each folder on the way to a skipped one:
//
//     rule 0   the start's plain rule: files count to total 0, folders below go by rule 0
//     rule 1   at Containers/a: as rule 0, but Data goes by rule 2
//     rule 2   at Data:         as rule 0, but Library goes by rule 3
//     rule 3   at Library:      as rule 0, but Caches is skipped

namespace {

void add_atomically(std::atomic<std::int64_t>& total, std::int64_t bytes) {
  std::int64_t before = total.load(std::memory_order_relaxed);
  while (!total.compare_exchange_weak(before, add_bytes(before, bytes), std::memory_order_relaxed)) {
  }
}

bool has_size(EntryKind kind) {
  return kind == EntryKind::file || kind == EntryKind::link;
}

/// Measures some folders, each on its own.
class FoldersJob final : public TraversalJob {
 public:
  /// A folder to measure, and the paths, relative to it, of the folders below that have totals of their own.
  struct Root {
    std::string path;
    std::vector<std::string> measured_elsewhere;
  };

  FoldersJob(const GrantedFolders& granted, Hidden hidden, std::vector<Root> roots)
      : granted_(granted), hidden_(hidden), totals_(roots.size()), rules_(roots.size()) {
    for (std::size_t at = 0; at < roots.size(); ++at) {
      rules_[at].total = at;
      starts_.push_back({roots[at].path, rule_around(at, roots[at].measured_elsewhere)});
    }
  }

  std::span<const TraversalStart> starts() const { return starts_; }

  /// The bytes of a root. Waits until it is measured, and notes on this thread what was missed in it.
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
    const CountingRule& rule = rules_[folder.tag()];
    std::int64_t bytes = 0;
    for (const RawEntry& entry : entries) {
      if (hidden_ == Hidden::skip && is_hidden(entry.name)) continue;
      if (has_size(entry.kind)) {
        const std::int64_t size = size_at(handle, entry.name.c_str());
        if (size < 0) totals_[rule.total].missed.note(errno, folder);
        bytes = add_bytes(bytes, std::max<std::int64_t>(0, size));
      } else if (entry.kind == EntryKind::folder) {
        enter_by_rule(rule, entry.name, enter);
      }
    }
    if (bytes > 0) add_atomically(totals_[rule.total].bytes, bytes);
  }

  void leave(const TraversedFolder& folder, int /*parent_handle*/) override {
    Total& total = totals_[rules_[folder.tag()].total];
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
  /// How the content of a folder is counted: the total that its files add to, and the subfolders, by name, that do not
  /// go by the plain rule of that total: each goes by another rule, or is skipped (`measured_elsewhere`). The index of
  /// a rule is the tag of its folders. Rules 0 to n - 1 are the plain ones of the n roots and have the same indices as
  /// their totals.
  struct CountingRule {
    std::size_t total = 0;
    std::map<std::string, std::size_t, std::less<>> exceptions;
  };

  static void enter_by_rule(const CountingRule& rule, std::string_view name, FoldersToEnter& enter) {
    const auto exception = rule.exceptions.empty() ? rule.exceptions.end() : rule.exceptions.find(name);
    if (exception == rule.exceptions.end()) {
      enter.add(name, rule.total);
    } else if (exception->second != measured_elsewhere) {
      enter.add(name, exception->second);
    }
  }

  std::size_t new_rule(std::size_t total) {
    rules_.push_back({total, {}});
    return rules_.size() - 1;
  }

  /// The rule for a root of which these paths are skipped: a chain of rules along each path; returns the first.
  std::size_t rule_around(std::size_t root, const std::vector<std::string>& elsewhere) {
    if (elsewhere.empty()) return root;
    const std::size_t first = new_rule(root);
    for (std::string_view path : elsewhere) {
      std::size_t at = first;
      for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        const std::string name(path.substr(0, slash));
        path.remove_prefix(slash + 1);
        const auto exception = rules_[at].exceptions.find(name);
        const std::size_t next = exception == rules_[at].exceptions.end() ? new_rule(root) : exception->second;
        rules_[at].exceptions[name] = next;
        at = next;
      }
      rules_[at].exceptions[std::string(path)] = measured_elsewhere;
    }
    return first;
  }

  const GrantedFolders& granted_;
  const Hidden hidden_;
  std::vector<Total> totals_;
  std::vector<CountingRule> rules_;
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
    const std::lock_guard lock(mutex_);  // several threads may ask
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
    const std::int64_t size = size_at(handle, entry.name.c_str());
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
        enter.add(entry.name, folder.tag());
      }
    }
    const std::lock_guard lock(mutex_);
    std::int64_t& size = rows_[folder.tag()].size;
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

/// The sizes that are known or being measured. Its end cancels what is being measured and waits for it.
class Measurer::KnownSizes {
 public:
  /// @param hidden whether hidden entries inside folders count.
  explicit KnownSizes(FileManager& files, Hidden hidden = Hidden::take) : files_(files), hidden_(hidden) {}
  ~KnownSizes() {
    for (const auto& job : folder_jobs_) job->cancel();
    for (const auto& job : entry_jobs_) job->cancel();
    for (const auto& job : folder_jobs_) files_.traversal().wait(*job);
    for (const auto& job : entry_jobs_) files_.traversal().wait(*job);
  }
  KnownSizes(const KnownSizes&) = delete;
  KnownSizes& operator=(const KnownSizes&) = delete;

  void plan(std::span<const Url> folders, Traversal::Priority priority) {
    const std::lock_guard lock(mutex_);
    std::vector<AllKnown::iterator> fresh;
    std::vector<FoldersJob::Root> roots;
    for (const Url& folder : folders) {
      if (!folder.is_file_url()) continue;
      const auto [known, is_new] = known_.try_emplace(folder.path());
      if (!is_new) continue;
      known->second.root = fresh.size();
      fresh.push_back(known);
      roots.push_back({folder.path(), {}});
    }
    if (fresh.empty()) return;
    for (std::size_t at = 0; at < fresh.size(); ++at) find_within(roots[at], fresh[at]);
    FoldersJob& job =
        *folder_jobs_.emplace_back(std::make_unique<FoldersJob>(files_.granted(), hidden_, std::move(roots)));
    for (const auto known : fresh) known->second.job = &job;
    files_.traversal().start(job, job.starts(), priority);
  }

  std::int64_t size(const Url& folder) {
    if (!folder.is_file_url()) return 0;
    plan({&folder, 1}, Traversal::Priority::now);
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

  void plan_entries(const Url& folder, Hidden hidden, Traversal::Priority priority) {
    const std::lock_guard lock(mutex_);
    if (!folder.is_file_url() || planned_entries(folder, hidden)) return;
    EntriesJob& job = *entry_jobs_.emplace_back(std::make_unique<EntriesJob>(files_.granted(), folder, hidden));
    files_.traversal().start(job, job.starts(), priority);
  }

  std::vector<MeasuredEntry> entries(const Url& folder, Hidden hidden) {
    plan_entries(folder, hidden, Traversal::Priority::now);
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

  /// Collects the known folders inside this one, to be skipped; in walking order they follow it directly.
  void find_within(FoldersJob::Root& root, AllKnown::iterator known) {
    const auto first = std::next(known);
    if (first == known_.end() || !first->first.starts_with(root.path)) return;  // the usual case, decided cheaply
    const Url folder = Url::file(root.path);
    // Outside the grants links above a folder are followed: a path inside this one may lead to another folder.
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
      known->second.within.push_back(&next->second);
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

Measurer::SizeMemory::SizeMemory(Measurer& measurer) : measurer_(measurer) {
  const std::lock_guard lock(measurer_.mutex_);
  measurer_.remembered_ = std::make_shared<KnownSizes>(measurer_.files_);
}

Measurer::SizeMemory::~SizeMemory() {
  std::shared_ptr<KnownSizes> ending;  // destroyed after the lock is released, since its end waits
  const std::lock_guard lock(measurer_.mutex_);
  ending = std::exchange(measurer_.remembered_, nullptr);
}

std::shared_ptr<Measurer::KnownSizes> Measurer::known_sizes() {
  const std::lock_guard lock(mutex_);
  return remembered_ ? remembered_ : std::make_shared<KnownSizes>(files_);
}

void Measurer::plan(std::span<const Url> folders) {
  const std::lock_guard lock(mutex_);
  if (!remembered_) return;
  // A file that is planned as a folder costs a failing open(2), which adds up over a long list.
  std::vector<Url> may_be_folders;
  for (const Url& url : folders) {
    const EntryKind kind = url.listed_kind();
    if (kind == EntryKind::none || kind == EntryKind::folder) may_be_folders.push_back(url);
  }
  remembered_->plan(may_be_folders, Traversal::Priority::last);
}

void Measurer::plan_entries(const Url& folder, Hidden hidden) {
  const std::lock_guard lock(mutex_);
  if (remembered_) remembered_->plan_entries(folder, hidden, Traversal::Priority::last);
}

std::int64_t Measurer::overall_size_of_direcory(const Url& folder) {
  return known_sizes()->size(folder);
}

/// The status of each one, in order; EntryKind::none for those that stop_looking() came before.
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

std::vector<std::int64_t> Measurer::sizes_of_files(std::span<const Url> urls, KnownSizes& known) {
  const std::vector<Status> statuses = this->statuses(urls);
  std::vector<Url> folders;
  for (std::size_t at = 0; at < urls.size(); ++at) {
    if (statuses[at].kind == EntryKind::folder) folders.push_back(urls[at]);
  }
  known.plan(folders, Traversal::Priority::now);
  std::vector<std::int64_t> sizes;
  sizes.reserve(urls.size());
  for (std::size_t at = 0; at < urls.size(); ++at) {
    sizes.push_back(statuses[at].kind == EntryKind::folder ? known.size(urls[at]) : statuses[at].size);
  }
  return sizes;
}

std::vector<std::int64_t> Measurer::sizes_of_files(std::span<const Url> urls) {
  return sizes_of_files(urls, *known_sizes());
}

std::vector<std::int64_t> Measurer::visible_sizes_of_files(std::span<const Url> urls) {
  KnownSizes apart(files_, Hidden::skip);
  return sizes_of_files(urls, apart);
}

std::int64_t Measurer::overall_size_of_files(std::span<const Url> urls) {
  std::int64_t bytes = 0;
  for (const std::int64_t size : sizes_of_files(urls)) bytes = add_bytes(bytes, size);
  return bytes;
}

std::vector<MeasuredEntry> Measurer::entries(const Url& folder, Hidden hidden) {
  return known_sizes()->entries(folder, hidden);
}

}  // namespace tarnby
