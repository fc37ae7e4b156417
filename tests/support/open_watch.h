#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "files/descriptor.h"

namespace tarnby::test {

/// Notices whoever opens an entry, also for no more than a moment.
class OpenWatch {
 public:
  explicit OpenWatch(const std::string& path) : queue_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (inotify_add_watch(queue_.get(), path.c_str(), IN_OPEN | IN_DONT_FOLLOW) >= 0) return;
    throw std::system_error(errno, std::generic_category(), "watch: " + path);
  }

  bool has_seen_any() {
    inotify_event event = {};  // the entry goes with an event of another kind
    return read(queue_.get(), &event, sizeof event) == sizeof event && (event.mask & IN_OPEN) != 0;
  }

 private:
  Descriptor queue_;
};

}  // namespace tarnby::test
