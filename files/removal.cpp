#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <utility>

#include "files/confined_threads.h"
#include "files/file_manager.h"
#include "files/traversal.h"

namespace tarnby {

// How an entry is removed
//
// Its folder is opened beneath the grant; the entry is looked at and deleted relative to that handle, and so is all
// that lies below it: a name is only ever resolved in a folder that is already open, so that no link another process
// puts in the way can lead elsewhere. unlinkat(2) never follows a link and never deletes a folder, or only an empty one
// when told to, so an entry that changes its kind in between is refused by the system or, within a folder that goes,
// goes as what it became.

namespace {

std::error_code system_error(int number) {
  return {number, std::generic_category()};
}

int unlink_at(int parent, const char* name, int flags) {
  return uninterrupted([&] { return unlinkat(parent, name, flags); });
}

bool is_not_empty(int error) {
  return error == ENOTEMPTY || error == EEXIST;
}

/// Whether another attempt may fare better: entries were added meanwhile, the file system lost its place while its
/// entries went, or others took all the handles there are.
bool may_pass(int error) {
  return is_not_empty(error) || error == EMFILE || error == ENFILE;
}

bool is_set(const std::atomic<bool>* flag) {
  return flag && flag->load(std::memory_order_relaxed);
}

/// What unlinkat(2) took for this run. What others took, or take back, is not among it.
struct Taken {
  std::int64_t entries = 0;
  std::int64_t bytes = 0;

  /// Removes a file, link or special file; errno(3) tells why it could not.
  bool unlink(int folder, const char* name, std::int64_t size) {
    if (unlink_at(folder, name, 0) != 0) return false;
    ++entries;
    bytes += size;
    return true;
  }

  /// Removes a folder that is empty.
  bool remove_folder(int parent, const char* name) {
    if (unlink_at(parent, name, AT_REMOVEDIR) != 0) return false;
    ++entries;
    return true;
  }

  void tell(RemovalProgress* progress) const {
    if (!progress || entries == 0) return;
    progress->entries.fetch_add(entries, std::memory_order_relaxed);
    progress->bytes.fetch_add(bytes, std::memory_order_relaxed);
  }
};

/// The folder that holds an entry, with what may not be taken out of it.
struct HoldingFolder {
  Url url;
  Descriptor handle;
  int error = 0;
  std::vector<std::string> protected_names;
  std::vector<Identity> protected_entries;

  HoldingFolder(const GrantedFolders& granted, const std::vector<ProtectedFolder>& protected_folders, const Url& folder)
      : url(folder), handle(granted.open_path_handle(folder)) {
    error = handle ? note_protected(protected_folders) : errno;
    if (error != 0) handle.reset();  // where nobody can tell what is protected, nothing may be taken
  }

  /// True when the entry, of which `standing` tells what it is, may not be taken whole.
  bool protects(const GrantedFolders& granted, const std::string& name, const Status& standing) const {
    const auto contains = [](const auto& list, const auto& item) {
      return std::find(list.begin(), list.end(), item) != list.end();
    };
    if (contains(protected_names, name)) return true;
    if (standing.kind == EntryKind::none) return false;
    return contains(protected_entries, standing.identity) || granted.is_or_holds_grant(standing.identity);
  }

 private:
  /// Why that was not possible; 0 when it was.
  int note_protected(const std::vector<ProtectedFolder>& protected_folders) {
    const Status itself = status_of(handle.get());
    if (itself.error != 0) return itself.error;
    for (const ProtectedFolder& row : protected_folders) {
      if (row.url != url && row.identity != itself.identity) continue;
      protected_names.insert(protected_names.end(), row.names.begin(), row.names.end());
    }
    for (const std::string& name : protected_names) {
      const Status standing = status_at(handle.get(), name.c_str());
      if (standing.error == 0) {
        protected_entries.push_back(standing.identity);
      } else if (standing.error != ENOENT) {
        return standing.error;
      }
    }
    return 0;
  }
};

/// Finds the holding folder of one entry after another; neighbours share it.
class HoldingFolders {
 public:
  explicit HoldingFolders(const GrantedFolders& granted)
      : granted_(granted), protected_folders_(granted.protected_folders()) {}

  /// Null when nothing may be taken from where this entry is.
  std::shared_ptr<const HoldingFolder> holding(const Url& url) {
    if (!granted_.holds(url)) return nullptr;
    const Url parent = url.parent();
    if (!last_ || last_->url != parent) last_ = std::make_shared<HoldingFolder>(granted_, protected_folders_, parent);
    return last_;
  }

 private:
  const GrantedFolders& granted_;
  const std::vector<ProtectedFolder> protected_folders_;
  std::shared_ptr<const HoldingFolder> last_;
};

/// Removes whole folders; each start is one of them, and its tag is its index in the list.
class RemovalJob final : public TraversalJob {
 public:
  /// @param confined threads for the parts of a deep tree; null when this job's threads keep their rights.
  RemovalJob(const GrantedFolders& granted, ConfinedThreads* confined, std::size_t targets,
             const RemovalOptions& options)
      : granted_(granted), confined_(confined), targets_(targets), options_(options) {}

  struct Target {
    std::shared_ptr<const HoldingFolder> holding;
    std::string name;
    std::atomic<int> first_error{0};
    /// Once it is, it is the entry in hand, which a stop lets go to its end.
    std::atomic<bool> begun{false};
    std::atomic<std::int64_t> bytes{0};
    bool taken = false;
  };

  /// Prepares a target; call before its traversal starts.
  void prepare(std::size_t tag, std::shared_ptr<const HoldingFolder> holding, std::string name) {
    targets_[tag].holding = std::move(holding);
    targets_[tag].name = std::move(name);
    targets_[tag].first_error = 0;
    const std::lock_guard lock(mutex_);
    ++in_hand_;
  }

  void wait_for_fewer_than(std::size_t most) {
    std::unique_lock lock(mutex_);
    one_done_.wait(lock, [&] { return in_hand_ < most; });
  }

  bool begun(std::size_t tag) const { return targets_[tag].begun; }
  int first_error(std::size_t tag) const { return targets_[tag].first_error; }
  /// What all its passes have removed.
  std::int64_t bytes(std::size_t tag) const { return targets_[tag].bytes; }
  bool taken(std::size_t tag) const { return targets_[tag].taken; }

  Descriptor open_start(const TraversedFolder& folder) override {
    Target& target = targets_[folder.tag()];
    if (ends_now() || (!target.begun && is_set(options_.stop))) {
      errno = ECANCELED;
      return {};
    }
    target.begun = true;
    return open_checked(target.holding->handle.get(), target.name);
  }

  Descriptor open_below(int parent, const TraversedFolder& folder) override {
    return open_checked(parent, folder.name());
  }

  // The kernel looks for the right to remove from each entry upwards. With the right to all below a folder nearby the
  // time of a removal grows with the depth of a tree, not with its square.
  bool run_apart(int folder, const std::function<void()>& work) override try {
    MayChange but;
    but.removing.emplace_back(fcntl(folder, F_DUPFD_CLOEXEC, 0));
    return confined_ && confined_->run(std::move(but), work);
  } catch (const std::bad_alloc&) {
    return false;
  }

  bool keeps_handles() const override { return true; }
  bool only_looks() const override { return false; }

  void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
             FoldersToEnter& enter) override {
    Taken taken;
    for (const RawEntry& entry : entries) {
      if (ends_now()) break;
      if (entry.kind == EntryKind::folder) {
        enter.add(entry.name, folder.tag());
        continue;
      }
      const std::int64_t size = entry.kind == EntryKind::other ? 0 : size_at(handle, entry.name.data());
      if (taken.unlink(handle, entry.name.data(), size)) continue;
      const int error = errno;
      // Some systems say EPERM of a folder.
      if (error == EISDIR || (error == EPERM && status_at(handle, entry.name.data()).kind == EntryKind::folder)) {
        enter.add(entry.name, folder.tag());  // it became a folder since it was read
      } else {
        note(folder.tag(), error);
      }
    }
    count(folder.tag(), taken);
  }

  void leave(const TraversedFolder& folder, int parent_handle) override {
    Target& target = targets_[folder.tag()];
    const bool is_start = folder.parent() == nullptr;
    const int parent = is_start ? target.holding->handle.get() : parent_handle;
    const std::string& name = is_start ? target.name : folder.name();
    Taken taken;
    remove_left(folder, parent, name, taken);
    count(folder.tag(), taken);
    if (!is_start) return;
    if (taken.entries > 0) note_taken(target);
    const std::lock_guard lock(mutex_);
    --in_hand_;
    one_done_.notify_all();
  }

 private:
  /// A granted folder must not go even when it has come to lie inside an entry by another path; nor one of which nobody
  /// can tell.
  Descriptor open_checked(int parent, const std::string& name) const {
    Descriptor folder = open_folder_on_same_mount(parent, name.c_str());
    const Status standing = folder ? status_of(folder.get()) : Status{};
    if (folder && (standing.error != 0 || granted_.is_or_holds_grant(standing.identity))) {
      folder.reset();
      errno = EPERM;
    }
    return folder;
  }

  bool ends_now() {
    if (!is_set(options_.stop_now)) return false;
    cancel();
    return true;
  }

  void note_taken(Target& target) {
    if (!std::exchange(target.taken, true) && options_.progress) options_.progress->listed.fetch_add(1);
  }

  void count(std::size_t tag, const Taken& taken) {
    if (taken.bytes != 0) targets_[tag].bytes.fetch_add(taken.bytes, std::memory_order_relaxed);
    taken.tell(options_.progress);
  }

  void remove_left(const TraversedFolder& folder, int parent, const std::string& name, Taken& taken) {
    const int why_closed = folder.error();
    if (why_closed == EPERM || why_closed == EXDEV || why_closed == ECANCELED) {
      note(folder.tag(), why_closed);
      return;
    }
    // The parent is no longer where it was found: whether anything of it is left shows when it is left itself.
    if (parent < 0) return;
    if (ends_now()) return note(folder.tag(), ECANCELED);
    if (taken.remove_folder(parent, name.c_str())) return;  // an empty one goes even when it is unreadable
    const bool is_entry = folder.parent() == nullptr;
    // No folder any more: within an entry what it became goes, too.
    if (errno == ENOTDIR && !is_entry && taken.unlink(parent, name.c_str(), size_at(parent, name.c_str()))) return;
    note(folder.tag(), is_not_empty(errno) && why_closed != 0 ? why_closed : errno);
  }

  void note(std::size_t tag, int error) {
    if (error == ENOENT) return;  // somebody else was faster
    int none = 0;
    targets_[tag].first_error.compare_exchange_strong(none, error);
  }

  const GrantedFolders& granted_;
  ConfinedThreads* const confined_;
  std::vector<Target> targets_;
  const RemovalOptions options_;
  std::mutex mutex_;
  std::condition_variable one_done_;
  std::size_t in_hand_ = 0;
};

/// One pass over a list of entries.
class RemovalPass {
 public:
  RemovalPass(const GrantedFolders& granted, ConfinedThreads* confined, unsigned threads, std::size_t handles,
              std::span<const Url> urls, const RemovalOptions& options)
      : granted_(granted),
        urls_(urls),
        options_(options),
        holding_(granted),
        job_(granted, confined, urls.size(), options),
        results_(urls.size()),
        threads_(threads),
        handles_(handles) {}

  std::vector<Removal> run() {
    for (std::size_t at = 0; at < urls_.size() && !stopped(); ++at) take(at);
    finish();
    // Also where nothing failed a folder may be found not empty.
    for (int again = 0; again < 3 && !once_more_.empty() && !is_set(options_.stop_now); ++again) {
      for (const std::size_t at : std::exchange(once_more_, {})) take(at);
      finish();
    }
    return std::move(results_);
  }

 private:
  bool stopped() const { return is_set(options_.stop) || is_set(options_.stop_now); }

  void take(std::size_t at) {
    const Url& url = urls_[at];
    Removal& result = results_[at];
    result = {};
    result.attempted = true;
    const auto holding = holding_.holding(url);
    if (!holding) {
      result.error = system_error(EPERM);
      return;
    }
    if (!holding->handle) {
      if (holding->error != ENOENT) result.error = system_error(holding->error);
      return;
    }
    std::string name(url.last_path_component());
    const Status standing = status_at(holding->handle.get(), name.c_str());
    if (holding->protects(granted_, name, standing)) {
      result.error = system_error(EPERM);
      return;
    }
    if (standing.error != 0) {
      if (standing.error != ENOENT) result.error = system_error(standing.error);
    } else if (url.listed_kind() != EntryKind::none && url.listed_kind() != standing.kind) {
      result.error = system_error(ESTALE);
    } else if (standing.kind == EntryKind::folder) {
      remove_folder(at, holding, std::move(name));
    } else {
      remove_file(result, holding->handle.get(), name, standing.size);
    }
  }

  void remove_file(Removal& result, int folder, const std::string& name, std::int64_t size) {
    Taken taken;
    if (!taken.unlink(folder, name.c_str(), size) && errno != ENOENT) result.error = system_error(errno);
    taken.tell(options_.progress);
    result.bytes = taken.bytes;
    result.taken = taken.entries > 0;
    if (result.taken && options_.progress) options_.progress->listed.fetch_add(1, std::memory_order_relaxed);
  }

  void remove_folder(std::size_t at, const std::shared_ptr<const HoldingFolder>& holding, std::string name) {
    if (!workers_) {
      if (threads_ == 0) threads_ = removal_threads_for(holding->handle.get());
      workers_ = std::make_unique<Traversal>(threads_, handles_);
    }
    job_.wait_for_fewer_than(std::size_t{4} * threads_);
    job_.prepare(at, holding, std::move(name));
    folders_.push_back(at);
    const TraversalStart starts[] = {{urls_[at].path(), at}};
    workers_->start(job_, starts, Traversal::Priority::last);
  }

  /// Waits for the folders in hand and takes down how they went.
  void finish() {
    if (workers_) workers_->wait(job_);
    for (const std::size_t at : std::exchange(folders_, {})) {
      if (!job_.begun(at)) {
        results_[at] = {};
        continue;
      }
      const int error = job_.first_error(at);
      results_[at].error = error == 0 ? std::error_code() : system_error(error);
      results_[at].bytes = job_.bytes(at);
      results_[at].taken = job_.taken(at);
      if (may_pass(error)) once_more_.push_back(at);
    }
  }

  const GrantedFolders& granted_;
  std::span<const Url> urls_;
  const RemovalOptions options_;
  HoldingFolders holding_;
  RemovalJob job_;
  std::vector<Removal> results_;
  std::vector<std::size_t> folders_;
  std::vector<std::size_t> once_more_;
  unsigned threads_;  // 0 until the disk is known
  const std::size_t handles_;
  std::unique_ptr<Traversal> workers_;  // last: it ends before what its job uses
};

}  // namespace

void FileManager::confine_threads(Callers callers) try {
  callers_ = callers;
  traversal_->confine_workers();
  confined_threads_ = std::make_unique<ConfinedThreads>();
} catch (const std::system_error&) {
  // The system gives no thread: whoever removes does it with the rights it has.
}

std::vector<Removal> FileManager::remove(std::span<const Url> urls, const RemovalOptions& options) {
  std::vector<Removal> results;
  const auto work = [&] {
    results = RemovalPass(granted_, confined_threads_.get(), workers_, handles_, urls, options).run();
  };
  const bool apart = confined_threads_ && callers_ == Callers::keep_their_rights;
  const bool confined = apart && confined_threads_->run({granted_.handles(), {}}, work);
  if (!confined) work();
  return results;
}

std::vector<bool> FileManager::refuses_to_remove(std::span<const Url> urls) const {
  HoldingFolders folders(granted_);
  std::vector<bool> refused;
  refused.reserve(urls.size());
  for (const Url& url : urls) {
    const auto holding = folders.holding(url);
    const std::string name(url.last_path_component());
    refused.push_back(!holding || (holding->handle &&
                                   holding->protects(granted_, name, status_at(holding->handle.get(), name.c_str()))));
  }
  return refused;
}

}  // namespace tarnby
