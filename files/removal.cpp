#include "files/removal.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <mutex>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "files/confined_threads.h"
#include "files/file_manager.h"
#include "files/holding_folders.h"
#include "files/mount_points.h"
#include "files/removal_job.h"
#include "files/traversal.h"

namespace tarnby {

namespace {

class RefusalCategory final : public std::error_category {
 public:
  const char* name() const noexcept override { return "removal"; }
  std::string message(int number) const override {
    switch (static_cast<RemovalRefusal>(number)) {
      case RemovalRefusal::owner_runs:
        return "its program is running";
      case RemovalRefusal::owner_unknown:
        return "its program may be running";
      case RemovalRefusal::other_stays:
        return "what has to go before it stays";
    }
    return "refused";
  }
};

std::error_code system_error(int number) {
  return {number, std::generic_category()};
}

/// Whether another attempt may fare better: entries were added meanwhile, the file system lost its place while its
/// entries went, or others took all the handles there are.
bool may_pass(const std::error_code& error) {
  constexpr int passing[] = {ENOTEMPTY, EEXIST, EMFILE, ENFILE};
  return error.category() == std::generic_category() && std::ranges::find(passing, error.value()) != std::end(passing);
}

bool is_set(const std::atomic<bool>* flag) {
  return flag && flag->load(std::memory_order_relaxed);
}

/// What became of the entries, and the gate that sees it. One thread settles; workers ask the gate.
class Outcomes {
 public:
  Outcomes(std::size_t entries, const RemovalGate& refuse) : refuse_(refuse), results_(entries) {}

  /// Final from here on.
  void settle(std::size_t at, Removal result) {
    result.attempted = true;
    const std::lock_guard lock(mutex_);
    results_[at] = std::move(result);
  }
  bool is_settled(std::size_t at) const { return results_[at].attempted; }

  std::error_code why_refused(std::size_t at) {
    if (!refuse_) return {};
    const std::lock_guard lock(mutex_);
    return refuse_(at, results_);
  }

  std::vector<Removal> take() { return std::move(results_); }

 private:
  const RemovalGate& refuse_;
  std::mutex mutex_;
  std::vector<Removal> results_;
};

/// One pass over a list of entries.
//
// Files are removed at once, folders handed to the workers. An entry that waits for another one which is still in hand
// is set aside, and begun as soon as that one is settled: when its folder was left, or after the last attempt at it.
class RemovalPass {
 public:
  RemovalPass(const GrantedFolders& granted, ConfinedThreads* confined, unsigned threads, std::size_t handles,
              std::span<const Url> urls, const RemovalOptions& options)
      : granted_(granted),
        urls_(urls),
        options_(options),
        holding_(granted),
        outcomes_(urls.size(), options.refuse),
        job_(granted, holding_.kept(), confined, urls.size(), options,
             [this](std::size_t at) { return outcomes_.why_refused(at); }),
        threads_(threads),
        handles_(handles) {
    if (options.whole_units) mounts_ = mount_points();
  }

  std::vector<Removal> run() {
    for (std::size_t at = 0; at < urls_.size(); ++at) {
      begin_waiting();
      begin(at);
    }
    while (finish()) {
    }
    return outcomes_.take();
  }

 private:
  static constexpr int more_attempts = 3;

  std::size_t awaited_by(std::size_t at) const {
    const std::size_t other = at < options_.after.size() ? options_.after[at] : RemovalOptions::waits_for_none;
    return other < at ? other : RemovalOptions::waits_for_none;
  }

  bool is_settled(std::size_t at) {
    if (!outcomes_.is_settled(at) && job_.is_done(at) && !may_pass(job_.error(at))) settle_folder(at);
    return outcomes_.is_settled(at);
  }

  /// Begins an entry, sets it aside until the one that it waits for is settled, or leaves it when a stop came first.
  void begin(std::size_t at) {
    const std::size_t other = awaited_by(at);
    const bool waits = other != RemovalOptions::waits_for_none;
    if (is_set(options_.stop_now) || (is_set(options_.stop) && !waits)) return;
    if (waits && !is_settled(other)) {
      waiting_.push_back(at);
    } else {
      take(at);
    }
  }

  void begin_waiting() {
    for (const std::size_t at : std::exchange(waiting_, {})) begin(at);
  }

  void take(std::size_t at) {
    const Url& url = urls_[at];
    const auto holding = holding_.holding(url);
    if (!holding) return settle(at, EPERM);
    if (!holding->handle) return settle(at, holding->error);
    // What an attempt before has left of a whole unit has another name by now.
    const std::string& hidden = job_.hidden_name(at);
    std::string name = hidden.empty() ? std::string(url.last_path_component()) : hidden;
    const Status standing = status_at(holding->handle.get(), name.c_str());
    if (holding->protects(granted_, name, standing)) {
      settle(at, EPERM);
    } else if (standing.error != 0) {
      settle(at, standing.error);
    } else if (url.listed_kind() != EntryKind::none && url.listed_kind() != standing.kind) {
      settle(at, ESTALE);
    } else if (standing.kind == EntryKind::folder && is_mounted_in(url)) {
      settle(at, EXDEV);
    } else if (standing.kind == EntryKind::folder) {
      remove_folder(at, holding, std::move(name));
    } else {
      const bool by_length = options_.counted == CountedBytes::lengths;
      const int folder = holding->handle.get();
      remove_file(at, folder, name, by_length ? standing.size : counted_at(options_.counted, folder, name.c_str()));
    }
  }

  /// Nothing was there, or it may not go. What an earlier attempt took of it still counts.
  void settle(std::size_t at, int error) {
    const std::error_code why = error == ENOENT ? std::error_code() : system_error(error);
    outcomes_.settle(at, {.error = why, .bytes = job_.bytes(at), .taken = job_.taken(at)});
  }

  void settle_folder(std::size_t at) {
    if (!job_.begun(at)) return;  // a stop came before it
    Removal result{.error = job_.error(at), .bytes = job_.bytes(at), .taken = job_.taken(at)};
    const std::string& hidden = job_.hidden_name(at);
    if (result.error && !hidden.empty()) result.left_as = urls_[at].parent().appending(hidden);
    outcomes_.settle(at, std::move(result));
  }

  /// True of a whole unit that the mount table names something in.
  bool is_mounted_in(const Url& url) const {
    return std::ranges::any_of(mounts_, [&](const Url& mount) { return mount.is_within(url); });
  }

  void remove_file(std::size_t at, int folder, const std::string& name, std::int64_t size) {
    Removal result;
    result.error = outcomes_.why_refused(at);
    Taken taken;
    if (!result.error && !taken.unlink(folder, name.c_str(), size) && errno != ENOENT) {
      result.error = system_error(errno);
    }
    taken.tell(options_.progress);
    result.bytes = taken.bytes;
    result.taken = taken.entries > 0;
    if (result.taken && options_.progress) options_.progress->listed.fetch_add(1, std::memory_order_relaxed);
    outcomes_.settle(at, std::move(result));
  }

  void remove_folder(std::size_t at, const std::shared_ptr<const HoldingFolder>& holding, std::string name) {
    if (!workers_) {
      if (threads_ == 0) threads_ = removal_threads_for(holding->handle.get());
      workers_ = std::make_unique<Traversal>(threads_, handles_);
    }
    job_.wait_for_fewer_than(std::size_t{4} * threads_);
    job_.prepare(at, holding, std::move(name), awaited_by(at) != RemovalOptions::waits_for_none);
    folders_.push_back(at);
    const TraversalStart starts[] = {{urls_[at].path(), at}};
    workers_->start(job_, starts, Traversal::Priority::last);
  }

  /// Waits for the folders in hand, takes down how they went, and begins what there is to begin then: another attempt,
  /// and what has waited. False when there is nothing more.
  bool finish() {
    if (workers_) workers_->wait(job_);
    std::vector<std::size_t> once_more;
    for (const std::size_t at : std::exchange(folders_, {})) {
      if (outcomes_.is_settled(at)) continue;
      // Also where nothing failed a folder may be found not empty.
      const bool again = may_pass(job_.error(at)) && !is_set(options_.stop_now) && attempts_[at]++ < more_attempts;
      if (again) {
        once_more.push_back(at);
      } else {
        settle_folder(at);
      }
    }
    for (const std::size_t at : once_more) take(at);
    begin_waiting();
    return !folders_.empty();
  }

  const GrantedFolders& granted_;
  std::span<const Url> urls_;
  const RemovalOptions& options_;
  HoldingFolders holding_;
  Outcomes outcomes_;
  RemovalJob job_;
  std::vector<std::size_t> folders_;
  std::vector<std::size_t> waiting_;
  std::unordered_map<std::size_t, int> attempts_;
  std::vector<Url> mounts_;  // where whole units are asked for
  unsigned threads_;         // 0 until the disk is known
  const std::size_t handles_;
  std::unique_ptr<Traversal> workers_;  // last: it ends before what its job uses
};

}  // namespace

std::error_code make_error_code(RemovalRefusal refusal) {
  static const RefusalCategory category;
  return {static_cast<int>(refusal), category};
}

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
  const bool confined =
      apart &&
      confined_threads_->run(
          {.removing = granted_.handles(), .renaming = options.whole_units, .unlocking = options.unlock_folders}, work);
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
