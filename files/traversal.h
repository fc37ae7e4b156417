#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "files/directory.h"
#include "files/granted_folders.h"
#include "files/url.h"

namespace tarnby {

// The one traversal: everything that walks, measures or removes is a TraversalJob run by a Traversal.
//
// A worker takes a folder, opens it from its parent's handle, reads a batch of entries and gives them to the job, which
// says which of the folders among them to enter; those go on top of a common stack, so that the walk goes deep before
// it goes wide and little waits at any time. When the batch was full, the rest of the folder goes on the stack first:
// another worker may read on while this one still looks at its batch, and a folder of a million entries never stands
// in memory whole. A folder is left when everything below it has been left:
//
//     a/        visit(a: b c f)      workers, any order below a
//       b/      visit(b)  leave(b)
//       c/      visit(c)  leave(c)
//       f       leave(a)             always last
//
// Results therefore arrive in no fixed order; a caller that needs one sorts what it kept (see walks_before). No path is
// built unless a job asks for one. A cancelled job visits nothing more, but every folder that was entered is left.

class TraversalJob;

/// A folder that a traversal is in. It exists from the moment it is to be entered until its `leave` has returned; then
/// the traversal deletes it.
class TraversedFolder {
 public:
  TraversedFolder(const TraversedFolder&) = delete;
  TraversedFolder& operator=(const TraversedFolder&) = delete;

  /// Null for a folder in which the traversal started.
  TraversedFolder* parent() const { return parent_; }
  /// Its name in its parent; the whole path of a folder in which the traversal started.
  const std::string& name() const { return name_; }
  /// Built anew from the names of all folders above.
  std::string path() const;
  /// A number that the job chose when it named this folder, to find its own data for it again.
  std::size_t tag() const { return tag_; }
  /// Why it could not be opened or read to its end (errno(3)); 0 without an error. Final when `leave` is called.
  int error() const { return error_.load(std::memory_order_relaxed); }

 private:
  friend class Traversal;
  friend class FoldersToEnter;
  TraversedFolder(TraversalJob& job, TraversedFolder* parent, std::string_view name, std::size_t tag)
      : job_(job), parent_(parent), name_(name), tag_(tag), depth_(parent ? parent->depth_ + 1 : 0) {}

  TraversalJob& job_;
  TraversedFolder* parent_;
  std::string name_;
  std::size_t tag_;
  std::uint32_t depth_;  // below the start; 0 there
  int handle_ = -1;
  std::atomic<int> error_{0};
  /// Reference count: the workers in this folder and the children that have not been left. At 0 the folder is left and
  /// deleted, and its parent loses one user.
  std::atomic<std::uint32_t> users_{1};
  /// Reference count of `handle_`: the workers in this folder and the children that still need the handle. A child
  /// needs it until it is open, or, where the job keeps handles, until it is left. At 0 the handle is closed.
  std::atomic<std::uint32_t> handle_users_{1};
};

/// Collects the folders of one batch that a job wants to enter.
class FoldersToEnter {
 public:
  /// `name` is a folder of that batch; `tag` is what TraversedFolder::tag tells the job of it from then on.
  void add(std::string_view name, std::size_t tag) {
    found_.push_back(std::unique_ptr<TraversedFolder>(new TraversedFolder(parent_->job_, parent_, name, tag)));
  }

 private:
  friend class Traversal;
  TraversedFolder* parent_ = nullptr;
  std::vector<std::unique_ptr<TraversedFolder>> found_;
};

/// What is done along one traversal. Several workers call its functions at once, also for the same folder. When `visit`
/// or an opening throws std::bad_alloc, the folder's error becomes ENOMEM and the folders that this batch has named are
/// not entered. `leave` must not throw.
class TraversalJob {
 public:
  virtual ~TraversalJob() = default;

  /// Called with a batch of entries of an open folder; over all batches each entry is seen once. `entries` and their
  /// names are valid until it returns.
  virtual void visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
                     FoldersToEnter& enter) = 0;

  /// Called once for each folder, when everything below it is done or it could not be opened (see error).
  /// `parent_handle` is the parent's handle when keeps_handles() and there is a parent, else -1.
  virtual void leave(const TraversedFolder& folder, int parent_handle);

  /// Opens a folder in which a traversal starts; empty, with errno(3) set, when that fails.
  virtual Descriptor open_start(const TraversedFolder& folder) = 0;

  /// Opens a folder below another, likewise. Jobs that remove are stricter than those that look.
  virtual Descriptor open_below(int parent, const TraversedFolder& folder);

  /// True when a folder's handle must stay open until its children have been left, not only opened.
  virtual bool keeps_handles() const { return false; }

  /// Called for the lower part of a deep tree: runs `work`, which goes through everything below the open folder, on a
  /// thread that suits the job better than the calling one, and returns when it is over. False, and `work` is not
  /// called, when there is no such thread.
  virtual bool run_apart(int folder, const std::function<void()>& work);

  /// True for jobs that only read: Traversal::stop_looking cancels them.
  virtual bool only_looks() const { return true; }

  /// Visits nothing more. Any thread may call, at any time.
  void cancel() { cancelled_.store(true, std::memory_order_relaxed); }
  /// True once it was cancelled. Any thread may ask.
  bool cancelled() const { return cancelled_.load(std::memory_order_relaxed); }

 private:
  friend class Traversal;
  std::atomic<bool> cancelled_{false};
  std::size_t unfinished_ = 0;  // starts that have not been left; under the traversal's mutex
};

/// Where one traversal starts.
struct TraversalStart {
  std::string path;
  std::size_t tag = 0;
};

/// The workers. Any thread may start jobs and wait for them. Threads are made when there is work: at first one for each
/// core, and more whenever one had to wait for the disk. When the system gives no thread, the caller of `start` does
/// the work itself before it returns.
class Traversal {
 public:
  /// @param workers how many folders are read at once, from the start; 0 chooses for this machine and its disk.
  /// @param handles how many handles it may keep open; 0 takes a third of what this process may still open, and no more
  ///   workers than the rest is enough for. Past that number each worker goes on alone through all that is below the
  ///   folder it is in, with at most three more, see LoneWalk; so it does in a deep tree where a job keeps handles.
  explicit Traversal(unsigned workers = 0, std::size_t handles = 0)
      : Traversal(workers, handles > 0 ? HandleShare{handles, workers} : share_of_handles()) {}
  /// Cancels what is running and waits for it to end.
  ~Traversal();
  Traversal(const Traversal&) = delete;
  Traversal& operator=(const Traversal&) = delete;

  /// Where a job goes among those that wait for a worker.
  enum class Priority { now, last };

  /// Begins a job in one or more folders; returns at once where there are workers. The job must live until `wait` has
  /// returned for it.
  /// @param priority `now` goes before everything that waits, `last` behind the starts of other jobs.
  void start(TraversalJob& job, std::span<const TraversalStart> starts, Priority priority);

  /// Returns when every start of the job has been left.
  void wait(TraversalJob& job);

  /// start and wait.
  void run(TraversalJob& job, std::span<const TraversalStart> starts);

  /// Workers that are made from now on give up changing anything (see give_up_changing), for jobs that only look.
  void confine_workers() { confined_ = true; }

  /// Ends the jobs that only look, and each that is started from now on, at once, until `look_again`. Returns without
  /// waiting for their end.
  void stop_looking();
  void look_again();
  bool stopped_looking() const;

 private:
  /// How many handles are kept open, and for how many workers there are enough beside them; 0: for any number.
  struct HandleShare {
    std::size_t kept;
    unsigned workers;
  };
  static HandleShare share_of_handles();
  Traversal(unsigned workers, HandleShare share);

  struct Task {
    TraversedFolder* folder;
    bool reading;  // opened before, go on reading
  };
  /// What a worker uses for one folder after the other.
  struct Tools {
    DirectoryReader reader;
    FoldersToEnter enter;
  };
  class LoneWalk;

  static std::unique_ptr<Tools> make_tools();
  void work(Tools& tools);
  bool next(Task& task);
  void work_alone();
  void pop_next(Task& task);
  void make_room(std::size_t more);
  void add_workers(std::size_t waiting);
  void want_another_worker();
  std::size_t step(const Task& task, Tools& tools);
  bool open(TraversedFolder& folder);
  void give_up(const Task& task);
  static std::span<const RawEntry> read_batch(TraversedFolder& folder, int handle, Tools& tools);
  static void run_short(TraversedFolder& folder, Tools& tools);
  std::size_t read(TraversedFolder& folder, Tools& tools);
  std::size_t go_on_alone(TraversedFolder& folder, Tools& tools);
  bool hand_on_reading(TraversedFolder& folder);
  void enter(FoldersToEnter& folders);
  void done_with(TraversedFolder* folder);
  void done_with_handle(TraversedFolder& folder);
  void finish_start(TraversalJob& job);

  const unsigned most_workers_;
  /// How many may be made by now; grows up to the most.
  std::atomic<unsigned> wanted_workers_;
  std::atomic<bool> confined_{false};
  const std::size_t most_handles_;
  // Each on a cache line of its own: every folder changes both, one without the lock.
  alignas(64) std::atomic<std::size_t> open_handles_{0};
  alignas(64) mutable std::mutex mutex_;
  std::condition_variable work_waits_;
  std::condition_variable start_finished_;
  std::vector<Task> stack_;
  std::deque<Task> starts_;
  std::vector<TraversalJob*> running_;
  std::vector<std::thread> workers_;
  std::size_t idle_ = 0;
  bool stopped_ = false;
  bool ending_ = false;
};

}  // namespace tarnby
