#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>
#include <vector>

#include "platform/descriptor.h"

namespace tarnby::test {

/// Notices whoever opens one of some entries, also for no more than a moment.
class OpenWatch {
 public:
  explicit OpenWatch(const std::vector<std::string>& paths) : queue_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    for (const std::string& path : paths) {
      if (inotify_add_watch(queue_.get(), path.c_str(), IN_OPEN | IN_DONT_FOLLOW) >= 0) continue;
      throw std::system_error(errno, std::generic_category(), "watch: " + path);
    }
  }

  bool has_seen_any() {
    alignas(inotify_event) char events[4096];
    const ssize_t got = read(queue_.get(), events, sizeof events);
    for (ssize_t at = 0; at < got;) {
      inotify_event event = {};
      std::memcpy(&event, events + at, sizeof event);
      if ((event.mask & IN_OPEN) != 0) return true;
      at += static_cast<ssize_t>(sizeof event + event.len);
    }
    return false;
  }

 private:
  Descriptor queue_;
};

}  // namespace tarnby::test
