#include "files/traversal.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <utility>

#include "files/confinement.h"

namespace tarnby {

namespace {

using Clock = std::chrono::steady_clock;

/// A disk wants more requests in flight than there are cores. With everything cached, more workers than cores only get
/// into each other's way.
constexpr unsigned workers_for_a_disk = 8;

unsigned cores() {
  return std::max(2U, std::thread::hardware_concurrency());
}

unsigned at_most(unsigned most, unsigned workers) {
  return most > 0 ? std::min(most, workers) : workers;
}

/// Longer than a folder of so many entries takes on any machine that finds all of it in its caches.
Clock::duration without_a_disk(std::size_t entries) {
  return std::chrono::microseconds(50 + 4 * entries);
}

/// How many levels of a deep tree are one part of it, see LoneWalk. A path that the system takes at once rarely has
/// more names; a part costs a thread while it lasts, a level of it one step in the kernel's check of each removal
/// there.
constexpr std::size_t levels_of_a_part = 500;

/// Whether this thread has waited for a disk since `before`, which becomes now. A folder may also take long because
/// others had the processor, or because of a lock; what stands behind a network makes it wait again and again in each.
bool waited(ThreadWaits& before, long folders) {
  constexpr long more_than_locks = 4;
  const ThreadWaits now = waits_of_this_thread();
  const bool waited =
      now.for_disk > before.for_disk || now.for_anything - before.for_anything >= std::max(folders, more_than_locks);
  before = now;
  return waited;
}

}  // namespace

std::string TraversedFolder::path() const {
  std::vector<const TraversedFolder*> line;
  std::size_t length = 0;
  for (const TraversedFolder* folder = this; folder; folder = folder->parent_) {
    line.push_back(folder);
    length += folder->name_.size() + 1;
  }
  std::string path;
  path.reserve(length);
  for (auto folder = line.rbegin(); folder != line.rend(); ++folder) {
    if (!path.empty() && path.back() != '/') path += '/';
    path += (*folder)->name_;
  }
  return path;
}

void TraversalJob::leave(const TraversedFolder& /*folder*/, int /*parent_handle*/) {}

bool TraversalJob::run_apart(int /*folder*/, const std::function<void()>& /*work*/) {
  return false;
}

Descriptor TraversalJob::open_below(int parent, const TraversedFolder& folder) {
  return open_folder_at(parent, folder.name().c_str());
}

Traversal::HandleShare Traversal::share_of_handles() {
  // Granted folders that are yet to be opened, and who lists or reads beside the workers.
  constexpr std::size_t others = 6;
  // As many as one that goes on alone has open.
  constexpr std::size_t each_worker = 4;
  const std::size_t spare = spare_handles();
  const std::size_t share = spare > others ? spare - others : 0;
  const std::size_t kept = share / 3;
  return {kept, static_cast<unsigned>(std::max<std::size_t>(1, (share - kept) / each_worker))};
}

Traversal::Traversal(unsigned workers, HandleShare share)
    : most_workers_(at_most(share.workers, workers > 0 ? workers : std::max(workers_for_a_disk, cores()))),
      wanted_workers_(at_most(share.workers, workers > 0 ? workers : cores())),
      most_handles_(share.kept) {}

Traversal::~Traversal() {
  std::unique_lock lock(mutex_);
  for (TraversalJob* job : running_) job->cancel();
  start_finished_.wait(lock, [&] { return running_.empty(); });
  ending_ = true;
  work_waits_.notify_all();
  lock.unlock();
  for (std::thread& worker : workers_) worker.join();
}

void Traversal::start(TraversalJob& job, std::span<const TraversalStart> starts, Priority priority) {
  if (starts.empty()) return;
  std::vector<std::unique_ptr<TraversedFolder>> folders;
  std::vector<Task> tasks;
  tasks.reserve(starts.size());
  for (const TraversalStart& start : starts) {
    folders.push_back(std::unique_ptr<TraversedFolder>(new TraversedFolder(job, nullptr, start.path, start.tag)));
    tasks.push_back({folders.back().get(), false});
  }
  std::unique_lock lock(mutex_);
  running_.reserve(running_.size() + 1);
  if (priority == Priority::now) {
    make_room(tasks.size());
    stack_.insert(stack_.end(), tasks.begin(), tasks.end());
  } else {
    starts_.insert(starts_.end(), tasks.begin(), tasks.end());
  }
  // Owned by their users from here on; done_with deletes each when its last one goes.
  for (auto& folder : folders) (void)folder.release();
  if (job.unfinished_ == 0) running_.push_back(&job);
  if (stopped_ && job.only_looks()) job.cancel();
  job.unfinished_ += starts.size();
  add_workers(starts.size());
  if (!workers_.empty()) return;
  lock.unlock();
  work_alone();
}

void Traversal::wait(TraversalJob& job) {
  std::unique_lock lock(mutex_);
  start_finished_.wait(lock, [&] { return job.unfinished_ == 0; });
}

void Traversal::run(TraversalJob& job, std::span<const TraversalStart> starts) {
  start(job, starts, Priority::now);
  wait(job);
}

void Traversal::stop_looking() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  for (TraversalJob* job : running_) {
    if (job->only_looks()) job->cancel();
  }
}

void Traversal::look_again() {
  const std::lock_guard lock(mutex_);
  stopped_ = false;
}

bool Traversal::stopped_looking() const {
  const std::lock_guard lock(mutex_);
  return stopped_;
}

/// Makes room on the stack, or throws before anything depends on it. Under the mutex.
void Traversal::make_room(std::size_t more) {
  if (stack_.capacity() - stack_.size() >= more) return;
  stack_.reserve(std::max(2 * stack_.capacity(), stack_.size() + more));
}

/// Wakes idle workers, or makes new ones, for so many new tasks. Under the mutex.
void Traversal::add_workers(std::size_t waiting) {
  for (std::size_t woken = std::min(waiting, idle_); woken > 0; --woken) work_waits_.notify_one();
  if (waiting <= idle_) return;
  for (std::size_t missing = waiting - idle_; missing > 0 && workers_.size() < wanted_workers_; --missing) {
    try {
      workers_.emplace_back([this, tools = std::make_unique<Tools>()] { work(*tools); });
    } catch (const std::exception&) {  // no thread, or no memory for one
      return;                          // with fewer it takes longer
    }
  }
}

void Traversal::work(Tools& tools) {
  if (confined_) (void)give_up_changing({});
  Task task = {};
  ThreadWaits waits;
  long folders = 0;
  while (next(task)) {
    const Clock::time_point begin = Clock::now();
    const std::size_t entries = step(task, tools);
    ++folders;
    if (wanted_workers_ == most_workers_ || Clock::now() - begin < without_a_disk(entries)) continue;
    if (waited(waits, std::exchange(folders, 0))) want_another_worker();
  }
}

void Traversal::want_another_worker() {
  const std::lock_guard lock(mutex_);
  if (wanted_workers_ == most_workers_) return;
  ++wanted_workers_;
  add_workers(stack_.size() + starts_.size());
}

bool Traversal::next(Task& task) {
  std::unique_lock lock(mutex_);
  while (stack_.empty() && starts_.empty()) {
    if (ending_) return false;
    ++idle_;
    work_waits_.wait(lock);
    --idle_;
  }
  pop_next(task);
  return true;
}

/// Null when there is no memory for them.
std::unique_ptr<Traversal::Tools> Traversal::make_tools() {
  try {
    return std::make_unique<Tools>();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

/// What work() does, on a thread that has more to do than to wait for tasks.
void Traversal::work_alone() {
  const std::unique_ptr<Tools> tools = make_tools();
  Task task = {};
  std::unique_lock lock(mutex_);
  while (!stack_.empty() || !starts_.empty()) {
    pop_next(task);
    lock.unlock();
    if (tools) {
      step(task, *tools);
    } else {
      give_up(task);
    }
    lock.lock();
  }
}

/// Leaves a folder for which there is no memory.
void Traversal::give_up(const Task& task) {
  TraversedFolder& folder = *task.folder;
  folder.error_ = ENOMEM;
  const bool holds_parent = !task.reading && folder.parent_ && !folder.job_.keeps_handles();
  if (holds_parent) done_with_handle(*folder.parent_);
  done_with_handle(folder);
  done_with(&folder);
}

/// Under the mutex, and only when there is one.
void Traversal::pop_next(Task& task) {
  if (!stack_.empty()) {
    task = stack_.back();
    stack_.pop_back();
  } else {
    task = starts_.front();
    starts_.pop_front();
  }
}

/// @return how many entries were visited.
std::size_t Traversal::step(const Task& task, Tools& tools) {
  TraversedFolder& folder = *task.folder;
  if (task.reading) return read(folder, tools);
  const bool opened = open(folder);
  // Its job keeps the parent's handle until it is left, or needs it no longer.
  if (folder.parent_ && !folder.job_.keeps_handles()) done_with_handle(*folder.parent_);
  const bool is_deep = folder.job_.keeps_handles() && folder.depth_ >= levels_of_a_part;
  if (opened && (is_deep || open_handles_.load(std::memory_order_relaxed) > most_handles_)) {
    return go_on_alone(folder, tools);
  }
  if (opened) return read(folder, tools);
  done_with_handle(folder);
  done_with(&folder);
  return 0;
}

bool Traversal::open(TraversedFolder& folder) {
  TraversalJob& job = folder.job_;
  const TraversedFolder* parent = folder.parent_;
  Descriptor handle;
  errno = ECANCELED;
  try {
    if (!job.cancelled()) handle = parent ? job.open_below(parent->handle_, folder) : job.open_start(folder);
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
  }
  if (!handle) folder.error_ = errno;
  if (!handle) return false;
  open_handles_.fetch_add(1, std::memory_order_relaxed);
  folder.handle_ = handle.release();
  return true;
}

std::span<const RawEntry> Traversal::read_batch(TraversedFolder& folder, int handle, Tools& tools) {
  const auto entries = tools.reader.read(handle);
  if (tools.reader.error() != 0) folder.error_ = tools.reader.error();
  return entries;
}

/// There was no memory for a batch. What its job has named may stand for nothing that the job has noted.
void Traversal::run_short(TraversedFolder& folder, Tools& tools) {
  folder.error_ = ENOMEM;
  tools.enter.found_.clear();
}

/// Reads batch by batch; from a full batch on, the rest of the folder is a task of its own.
std::size_t Traversal::read(TraversedFolder& folder, Tools& tools) {
  std::size_t visited = 0;
  try {
    tools.enter.parent_ = &folder;
    bool handed_on = false;
    while (!handed_on && !folder.job_.cancelled()) {
      const auto entries = read_batch(folder, folder.handle_, tools);
      if (entries.empty()) break;
      handed_on = tools.reader.likely_more() && hand_on_reading(folder);
      folder.job_.visit(folder, folder.handle_, entries, tools.enter);
      visited += entries.size();
      enter(tools.enter);
    }
  } catch (const std::bad_alloc&) {
    run_short(folder, tools);
  }
  done_with_handle(folder);
  done_with(&folder);
  return visited;
}

// Where too many handles are open, one worker goes through all that is below a folder. It goes deep with the handles of
// the two folders it was in last, so that depth costs no handle, and goes back up by "..", so that it costs no time
// either: a folder whose handle was given up is found from the one below, and must be the one that was read. When it is
// not, because somebody moves folders about, what is still to enter on the way up to the first folder is left alone.
// Each part of a deep tree may be gone through by a thread of its own, while the one above waits for it.
class Traversal::LoneWalk {
 public:
  LoneWalk(TraversedFolder& first, Tools& tools) : first_(first), job_(first.job_), tools_(tools) {}

  /// @return how many entries were visited.
  std::size_t run() {
    levels_.push_back({{}, read(first_, first_.handle_), {}, {}});
    finish(1);
    return visited_;
  }

 private:
  using Folders = std::vector<std::unique_ptr<TraversedFolder>>;

  struct Level {
    std::unique_ptr<TraversedFolder> folder;  // of the first there are other users
    Folders waiting;
    Descriptor handle;
    Identity identity;  // known once the handle was given up
  };

  /// Goes through all that is below a level, which is the last one before and after.
  void finish(std::size_t level) {
    while (levels_.size() > level || !levels_.back().waiting.empty()) {
      const std::size_t below = levels_.size() - level;
      if (levels_.back().waiting.empty()) {
        go_up();
      } else if (below == 0 || below % levels_of_a_part != 0 || !finish_apart()) {
        go_down();
      }
    }
  }

  bool finish_apart() {
    const std::size_t level = levels_.size();
    return handle() >= 0 && !job_.cancelled() && job_.run_apart(handle(), [this, level] { finish(level); });
  }

  void go_down() {
    Folders& waiting = levels_.back().waiting;
    std::unique_ptr<TraversedFolder> child = std::move(waiting.back());
    waiting.pop_back();
    Descriptor handle = open(*child);
    Folders below = handle ? read(*child, handle.get()) : Folders();
    if (below.empty() || !has_room(*child)) return leave(*child);
    levels_.push_back({std::move(child), std::move(below), std::move(handle), {}});
    if (levels_.size() > 3) give_up_handle(levels_[levels_.size() - 3]);
  }

  /// For one more level; else what is below the folder is left alone.
  bool has_room(TraversedFolder& folder) try {
    if (levels_.size() == levels_.capacity()) levels_.reserve(2 * levels_.size());
    return true;
  } catch (const std::bad_alloc&) {
    folder.error_ = ENOMEM;
    return false;
  }

  void go_up() {
    const Level left = std::move(levels_.back());
    levels_.pop_back();
    if (levels_.size() > 1 && !levels_.back().handle && !job_.cancelled()) find_again(levels_.back(), left.handle);
    leave(*left.folder);
  }

  static void give_up_handle(Level& level) {
    if (!level.handle) return;  // given up before
    level.identity = status_of(level.handle.get()).identity;
    level.handle.reset();
  }

  static void find_again(Level& level, const Descriptor& below) {
    Descriptor up = below ? open_path_handle_at(below.get(), "..") : Descriptor();
    const Status standing = up ? status_of(up.get()) : Status{};
    if (up && standing.error == 0 && standing.identity == level.identity) level.handle = std::move(up);
  }

  int handle() const { return levels_.size() == 1 ? first_.handle_ : levels_.back().handle.get(); }

  Descriptor open(TraversedFolder& child) {
    Descriptor opened;
    errno = job_.cancelled() ? ECANCELED : ENOENT;
    try {
      if (!job_.cancelled() && handle() >= 0) opened = job_.open_below(handle(), child);
    } catch (const std::bad_alloc&) {
      errno = ENOMEM;
    }
    if (!opened) child.error_ = errno;
    return opened;
  }

  Folders read(TraversedFolder& folder, int opened) try {
    tools_.enter.parent_ = &folder;
    while (!job_.cancelled()) {
      const auto entries = read_batch(folder, opened, tools_);
      if (entries.empty()) break;
      job_.visit(folder, opened, entries, tools_.enter);
      visited_ += entries.size();
    }
    return std::exchange(tools_.enter.found_, {});
  } catch (const std::bad_alloc&) {
    run_short(folder, tools_);
    return {};
  }

  void leave(const TraversedFolder& folder) { job_.leave(folder, job_.keeps_handles() ? handle() : -1); }

  TraversedFolder& first_;
  TraversalJob& job_;
  Tools& tools_;
  std::vector<Level> levels_;
  std::size_t visited_ = 0;
};

std::size_t Traversal::go_on_alone(TraversedFolder& folder, Tools& tools) {
  std::size_t visited = 0;
  try {
    visited = LoneWalk(folder, tools).run();
  } catch (const std::bad_alloc&) {  // before it has begun: later it needs none that it does not wait for
    run_short(folder, tools);
  }
  done_with_handle(folder);
  done_with(&folder);
  return visited;
}

/// False when there is no memory to note it: the reading worker goes on alone.
bool Traversal::hand_on_reading(TraversedFolder& folder) try {
  const std::lock_guard lock(mutex_);
  make_room(1);
  folder.users_.fetch_add(1, std::memory_order_relaxed);
  folder.handle_users_.fetch_add(1, std::memory_order_relaxed);
  stack_.push_back({&folder, true});
  add_workers(1);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

void Traversal::enter(FoldersToEnter& folders) {
  if (folders.found_.empty()) return;
  const auto count = static_cast<std::uint32_t>(folders.found_.size());
  const std::lock_guard lock(mutex_);
  make_room(count);
  folders.parent_->users_.fetch_add(count, std::memory_order_relaxed);
  folders.parent_->handle_users_.fetch_add(count, std::memory_order_relaxed);
  // Owned by their users from here on; done_with deletes each when its last one goes.
  for (std::unique_ptr<TraversedFolder>& child : folders.found_) stack_.push_back({child.release(), false});
  folders.found_.clear();
  add_workers(count);
}

void Traversal::done_with_handle(TraversedFolder& folder) {
  if (folder.handle_users_.fetch_sub(1, std::memory_order_acq_rel) != 1 || folder.handle_ < 0) return;
  Descriptor(folder.handle_).reset();
  folder.handle_ = -1;
  open_handles_.fetch_sub(1, std::memory_order_relaxed);
}

/// Leaves the folder when this was its last user, then its parent, and so on: a loop, since depth must cost no stack.
void Traversal::done_with(TraversedFolder* folder) {
  while (folder && folder->users_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    const std::unique_ptr<TraversedFolder> left(folder);
    TraversalJob& job = left->job_;
    TraversedFolder* parent = left->parent_;
    if (parent && job.keeps_handles()) {
      job.leave(*left, parent->handle_);
      done_with_handle(*parent);
    } else {
      job.leave(*left, -1);
    }
    folder = parent;
    if (!parent) finish_start(job);
  }
}

void Traversal::finish_start(TraversalJob& job) {
  const std::lock_guard lock(mutex_);
  if (--job.unfinished_ > 0) return;
  std::erase(running_, &job);
  start_finished_.notify_all();
}

}  // namespace tarnby
