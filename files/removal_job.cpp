#include "files/removal_job.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <utility>

#include "files/removal_remnant.h"

namespace tarnby {

// How an entry is removed
//
// Its folder is opened beneath the grant; the entry is looked at and deleted relative to that handle, and so is all
// that lies below it: a name is only ever resolved in a folder that is already open, so that no link another process
// puts in the way can lead elsewhere. unlinkat(2) never follows a link and never deletes a folder, or only an empty one
// when told to, so an entry that changes its kind in between is refused by the system or, within a folder that goes,
// goes as what it became.

namespace {

int unlink_at(int parent, const char* name, int flags) {
  return uninterrupted([&] { return unlinkat(parent, name, flags); });
}

bool is_not_empty(int error) {
  return error == ENOTEMPTY || error == EEXIST;
}

bool is_set(const std::atomic<bool>* flag) {
  return flag && flag->load(std::memory_order_relaxed);
}

}  // namespace

bool Taken::unlink(int folder, const char* name, std::int64_t size) {
  if (unlink_at(folder, name, 0) != 0) return false;
  ++entries;
  bytes += size;
  return true;
}

std::int64_t counted_at(CountedBytes counted, int parent, const char* name) {
  if (counted == CountedBytes::lengths) return size_at(parent, name);
  const DiskStatus standing = disk_status_at(parent, name);
  const bool gives_back = standing.kind == EntryKind::folder || standing.names <= 1;
  return standing.error == 0 && gives_back ? standing.bytes : 0;
}

bool Taken::remove_folder(int parent, const char* name, std::int64_t size) {
  if (unlink_at(parent, name, AT_REMOVEDIR) != 0) return false;
  ++entries;
  bytes += size;
  return true;
}

void Taken::tell(RemovalProgress* progress) const {
  if (!progress || entries == 0) return;
  progress->entries.fetch_add(entries, std::memory_order_relaxed);
  progress->bytes.fetch_add(bytes, std::memory_order_relaxed);
}

void RemovalJob::prepare(std::size_t tag, std::shared_ptr<const HoldingFolder> holding, std::string name,
                         bool follows) {
  Target& target = targets_[tag];
  target.holding = std::move(holding);
  target.name = std::move(name);
  target.first_error = 0;
  target.done = false;
  target.follows = follows;
  const std::lock_guard lock(mutex_);
  ++in_hand_;
}

void RemovalJob::wait_for_fewer_than(std::size_t most) {
  std::unique_lock lock(mutex_);
  one_done_.wait(lock, [&] { return in_hand_ < most; });
}

std::error_code RemovalJob::error(std::size_t tag) const {
  const Target& target = targets_[tag];
  if (target.refusal) return target.refusal;
  const int number = target.first_error;
  return number == 0 ? std::error_code() : std::error_code(number, std::generic_category());
}

/// False when the entry is not to be begun. One that was begun goes on, also in another attempt.
bool RemovalJob::begin(std::size_t tag) {
  Target& target = targets_[tag];
  if (target.begun) return true;
  if (is_set(options_.stop) && !target.follows) return false;
  target.refusal = may_begin_(tag);
  target.begun = true;
  return !target.refusal;
}

Descriptor RemovalJob::open_start(const TraversedFolder& folder) {
  if (ends_now() || !begin(folder.tag())) {
    errno = ECANCELED;
    return {};
  }
  Target& target = targets_[folder.tag()];
  Descriptor opened = open_checked(target.holding->handle.get(), target.name);
  if (opened && options_.whole_units && !hide(target, opened)) opened = {};
  return opened;
}

/// Gives the open folder a hidden name where it stands. False when that is not possible, and errno(3) says why: with
/// ECANCELED when something else has taken its place just before, which then has its name back.
bool RemovalJob::hide(Target& target, const Descriptor& opened) {
  if (is_removal_remnant(target.name)) return true;
  const int parent = target.holding->handle.get();
  const std::string hidden = new_removal_remnant_name();
  if (!rename_to_free_name_at(parent, target.name.c_str(), hidden.c_str())) return false;
  target.hidden_name = hidden;
  const Status moved = status_at(parent, hidden.c_str());
  const Status checked = status_of(opened.get());
  if (moved.error == 0 && checked.error == 0 && moved.identity == checked.identity) return true;
  give_name_back(target);
  target.refusal = {ESTALE, std::generic_category()};
  errno = ECANCELED;
  return false;
}

/// Where the name is taken by now, the hidden one stays.
void RemovalJob::give_name_back(Target& target) {
  const int parent = target.holding->handle.get();
  if (rename_to_free_name_at(parent, target.hidden_name.c_str(), target.name.c_str())) target.hidden_name.clear();
}

/// Tries once more where a folder within an entry may have forbidden it by its mode. On failure errno(3) says why.
template <typename Attempt>
bool RemovalJob::unlocking(int folder, Attempt attempt) const {
  if (attempt()) return true;
  if (errno != EACCES || !options_.unlock_folders) return false;
  if (unlock_folder(folder)) return attempt();
  errno = EACCES;
  return false;
}

Descriptor RemovalJob::open_below(int parent, const TraversedFolder& folder) {
  Descriptor opened;
  (void)unlocking(parent, [&] { return bool(opened = open_checked(parent, folder.name())); });
  return opened;
}

// The kernel looks for the right to remove from each entry upwards. With the right to all below a folder nearby the
// time of a removal grows with the depth of a tree, not with its square.
bool RemovalJob::run_apart(int folder, const std::function<void()>& work) try {
  MayChange but;
  but.removing.emplace_back(fcntl(folder, F_DUPFD_CLOEXEC, 0));
  but.unlocking = options_.unlock_folders;
  return confined_ && confined_->run(std::move(but), work);
} catch (const std::bad_alloc&) {
  return false;
}

void RemovalJob::visit(const TraversedFolder& folder, int handle, std::span<const RawEntry> entries,
                       FoldersToEnter& enter) {
  Taken taken;
  for (const RawEntry& entry : entries) {
    if (ends_now()) break;
    if (entry.kind == EntryKind::folder) {
      enter.add(entry.name, folder.tag());
      continue;
    }
    const bool is_gone = unlocking(handle, [&] {
      const std::int64_t size =
          entry.kind == EntryKind::other ? 0 : counted_at(options_.counted, handle, entry.name.c_str());
      return taken.unlink(handle, entry.name.c_str(), size);
    });
    if (is_gone) continue;
    const int error = errno;
    // Some systems say EPERM of a folder.
    if (error == EISDIR || (error == EPERM && status_at(handle, entry.name.c_str()).kind == EntryKind::folder)) {
      enter.add(entry.name, folder.tag());  // it became a folder since it was read
    } else {
      note(folder.tag(), error);
    }
  }
  count(folder.tag(), taken);
}

void RemovalJob::leave(const TraversedFolder& folder, int parent_handle) {
  Target& target = targets_[folder.tag()];
  const bool is_start = folder.parent() == nullptr;
  const int parent = is_start ? target.holding->handle.get() : parent_handle;
  const std::string& name = is_start ? target.standing_name() : folder.name();
  Taken taken;
  remove_left(folder, parent, name, taken);
  count(folder.tag(), taken);
  if (!is_start) return;
  if (taken.entries > 0) {
    note_taken(target);
  } else if (!target.hidden_name.empty() && !target.lost_something) {
    give_name_back(target);
  }
  target.done = true;
  const std::lock_guard lock(mutex_);
  --in_hand_;
  one_done_.notify_all();
}

/// Opens the folder even where its mode forbids that, when it may be unlocked.
Descriptor RemovalJob::open_checked(int parent, const std::string& name) const {
  Descriptor folder = open_folder_on_same_mount(parent, name.c_str());
  if (!folder && errno == EACCES && options_.unlock_folders) {
    const Descriptor closed = open_path_handle_on_same_mount(parent, name.c_str());
    const bool is_unlocked = closed && may_enter(closed) && unlock_folder(closed.get());
    errno = EACCES;
    if (is_unlocked) folder = open_folder_on_same_mount(parent, name.c_str());
  }
  if (folder && !may_enter(folder)) {
    folder.reset();
    errno = EPERM;
  }
  return folder;
}

/// A granted folder, and what a Linux home keeps, must not go even when it has come to lie inside an entry by another
/// path; nor one of which nobody can tell.
bool RemovalJob::may_enter(const Descriptor& folder) const {
  const Status standing = status_of(folder.get());
  return standing.error == 0 && !granted_.is_or_holds_grant(standing.identity) && !kept_.holds(standing.identity);
}

bool RemovalJob::ends_now() {
  if (!is_set(options_.stop_now)) return false;
  cancel();
  return true;
}

void RemovalJob::note_taken(Target& target) {
  if (!std::exchange(target.taken, true) && options_.progress) options_.progress->listed.fetch_add(1);
}

void RemovalJob::count(std::size_t tag, const Taken& taken) {
  if (taken.entries > 0) targets_[tag].lost_something = true;
  if (taken.bytes != 0) targets_[tag].bytes.fetch_add(taken.bytes, std::memory_order_relaxed);
  taken.tell(options_.progress);
}

void RemovalJob::remove_left(const TraversedFolder& folder, int parent, const std::string& name, Taken& taken) {
  const int why_closed = folder.error();
  if (why_closed == EPERM || why_closed == EXDEV || why_closed == ECANCELED) {
    note(folder.tag(), why_closed);
    return;
  }
  // The parent is no longer where it was found: whether anything of it is left shows when it is left itself.
  if (parent < 0) return;
  if (ends_now()) return note(folder.tag(), ECANCELED);
  const bool is_entry = folder.parent() == nullptr;
  // An empty one goes even when it is unreadable. The folder that holds the entry itself is not for it to unlock.
  const bool has_size = options_.counted == CountedBytes::blocks_given_back;
  const std::int64_t size = has_size ? counted_at(options_.counted, parent, name.c_str()) : 0;
  const auto remove = [&] { return taken.remove_folder(parent, name.c_str(), size); };
  if (is_entry ? remove() : unlocking(parent, remove)) return;
  // No folder any more: within an entry what it became goes, too.
  if (errno == ENOTDIR && !is_entry &&
      taken.unlink(parent, name.c_str(), counted_at(options_.counted, parent, name.c_str())))
    return;
  note(folder.tag(), is_not_empty(errno) && why_closed != 0 ? why_closed : errno);
}

void RemovalJob::note(std::size_t tag, int error) {
  if (error == ENOENT) return;  // somebody else was faster
  int none = 0;
  targets_[tag].first_error.compare_exchange_strong(none, error);
}

}  // namespace tarnby
