#include "files/missed.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <new>

#include "files/traversal.h"

namespace tarnby {

namespace {

/// The innermost watch of this thread.
thread_local LookWatch* innermost = nullptr;

void keep_first(std::optional<Url>& known, const Url& location) noexcept {
  if (known && !walks_before(location.path(), known->path())) return;
  try {
    known = location;
  } catch (const std::bad_alloc&) {
    known = Url();
  }
}

}  // namespace

LookError look_error(int error) {
  constexpr int answers[] = {0, ENOENT, ENOTDIR, ELOOP, EINVAL, ENAMETOOLONG};
  if (std::find(std::begin(answers), std::end(answers), error) != std::end(answers)) return LookError::none;
  if (error == ECANCELED) return LookError::stopped;
  return error == EACCES || error == EPERM ? LookError::refused : LookError::failed;
}

void Missed::note(int error, const Url& location) noexcept {
  const LookError what = look_error(error);
  if (what == LookError::stopped) stopped = true;
  if (what == LookError::refused) keep_first(refused, location);
  if (what == LookError::failed) keep_first(failed, location);
}

void Missed::add(const Missed& other) noexcept {
  stopped = stopped || other.stopped;
  if (other.refused) keep_first(refused, *other.refused);
  if (other.failed) keep_first(failed, *other.failed);
}

void note_missed(int error, const Url& location) {
  if (innermost) innermost->missed_.note(error, location);
}

void note_missed(const Missed& missed) {
  if (innermost) innermost->missed_.add(missed);
}

LookWatch::LookWatch(Tells tells) : around_(innermost), tells_(tells) {
  innermost = this;
}

LookWatch::~LookWatch() {
  innermost = around_;
  if (tells_ == Tells::everybody) note_missed(missed_);
}

void MissedByWorkers::note(int error, const TraversedFolder& folder) noexcept {
  if (look_error(error) == LookError::none) return;
  const std::lock_guard lock(mutex_);
  try {
    missed_.note(error, error == ECANCELED ? Url() : Url::file(folder.path()));
  } catch (const std::bad_alloc&) {
    missed_.failed = Url();
  }
}

Missed MissedByWorkers::missed() const {
  const std::lock_guard lock(mutex_);
  return missed_;
}

}  // namespace tarnby
