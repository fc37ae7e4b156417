#include "files/confinement.h"

#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <memory>

namespace tarnby {

namespace {

constexpr std::uint64_t truncating = std::uint64_t{1} << 14U;  // newer than some headers

constexpr std::uint64_t removing = LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE;

constexpr std::uint64_t writing_files = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG |
                                        LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE | truncating;

constexpr std::uint64_t changing = removing | writing_files | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                                   LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                                   LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
                                   LANDLOCK_ACCESS_FS_MAKE_SYM;

/// Which of these rights this kernel can take away; none when it can take none.
std::uint64_t known_rights() {
  const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return 0;
  constexpr long first_with_truncating = 3;
  return version < first_with_truncating ? changing & ~truncating : changing;
}

bool allow_below(const Descriptor& rules, const std::vector<Descriptor>& folders, std::uint64_t rights) {
  return std::all_of(folders.begin(), folders.end(), [&](const Descriptor& folder) {
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = rights;
    rule.parent_fd = folder.get();
    return syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
  });
}

}  // namespace

bool give_up_changing(const MayChange& but) {
  const std::uint64_t known = known_rights();
  if (known == 0) return false;
  landlock_ruleset_attr handled = {};
  handled.handled_access_fs = known;
  const Descriptor rules(
      static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled.handled_access_fs, 0)));
  if (!rules || !allow_below(rules, but.removing, removing) ||
      !allow_below(rules, but.writing, writing_files & known)) {
    return false;
  }
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

bool give_up_network() {
  const std::unique_ptr<void, decltype(&seccomp_release)> filter(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release);
  if (!filter) return false;
  const auto refuse = [&](int call, int error, unsigned arguments) {
    const scmp_arg_cmp not_local = {.arg = 0, .op = SCMP_CMP_NE, .datum_a = AF_UNIX, .datum_b = 0};
    return seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(static_cast<std::uint32_t>(error)), call, arguments,
                                  &not_local) == 0;
  };
  // The second makes sockets, too, out of the filter's sight.
  return refuse(SCMP_SYS(socket), EAFNOSUPPORT, 1) && refuse(SCMP_SYS(io_uring_setup), ENOSYS, 0) &&
         seccomp_load(filter.get()) == 0;
}

}  // namespace tarnby
