#include "tests/support/own_mounts.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace tarnby::test {

namespace {

constexpr int not_permitted = 77;

bool write_text(const char* file, const std::string& text) {
  std::ofstream out(file);
  out << text;
  return bool(out.flush());
}

bool leave_the_common_mounts() {
  const std::string user = std::to_string(geteuid());
  const std::string group = std::to_string(getegid());
  if (geteuid() == 0) {
    if (unshare(CLONE_NEWNS) != 0) return false;
  } else if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 || !write_text("/proc/self/setgroups", "deny") ||
             !write_text("/proc/self/uid_map", "0 " + user + " 1") ||
             !write_text("/proc/self/gid_map", "0 " + group + " 1")) {
    return false;
  }
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

bool with_own_mounts(const std::function<void()>& body) {
  std::fflush(nullptr);  // else the child prints again what waits to be printed
  const pid_t child = fork();
  if (child == 0) {
    if (!leave_the_common_mounts()) _exit(not_permitted);
    body();
    std::fflush(nullptr);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  const bool ended = child > 0 && waitpid(child, &status, 0) == child;
  if (!ended || (WIFEXITED(status) && WEXITSTATUS(status) == not_permitted)) return false;
  EXPECT_EQ(status, 0) << "the part with its own mounts failed; its messages are above";
  return true;
}

}  // namespace tarnby::test
