#include <fcntl.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

// Takes the place of the system's call in the program that it is linked into: after some calls a removal goes on only
// when nobody holds the file that TARNBY_TEST_HOLD names, so that a test has all the time it needs to look at it.

namespace {

constexpr int calls_before_the_hold = 500;

int open_hold() {
  const char* path = std::getenv("TARNBY_TEST_HOLD");  // NOLINT(concurrency-mt-unsafe): nobody changes it
  return path ? open(path, O_RDONLY | O_CLOEXEC) : -1;
}

}  // namespace

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept {
  static std::atomic<int> calls{0};
  static const int hold = open_hold();
  if (calls.fetch_add(1) >= calls_before_the_hold) flock(hold, LOCK_SH);
  return static_cast<int>(syscall(SYS_unlinkat, folder, name, flags));
}
