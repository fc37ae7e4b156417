#include "files/confinement.h"

#include <fcntl.h>
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
#include <optional>

namespace tarnby {

namespace {

constexpr std::uint64_t removing = LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE;

constexpr std::uint64_t writing_files = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG |
                                        LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE;

// Without the right to truncate: for its sake the kernel goes up from every file and folder that is opened, also for
// reading, so that the time of a look would grow with the square of the depth. See refuse_truncating.
constexpr std::uint64_t changing = removing | writing_files | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                                   LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                                   LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
                                   LANDLOCK_ACCESS_FS_MAKE_SYM;

bool allow_below(const Descriptor& rules, const std::vector<Descriptor>& folders, std::uint64_t rights) {
  return std::all_of(folders.begin(), folders.end(), [&](const Descriptor& folder) {
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = rights;
    rule.parent_fd = folder.get();
    return syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
  });
}

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

/// A filter that lets every call pass.
Filter make_filter() {
  return {seccomp_init(SCMP_ACT_ALLOW), &seccomp_release};
}

/// Has a call refused, or only where one of its arguments is such.
bool refuse(const Filter& filter, int error, int call, std::optional<scmp_arg_cmp> argument = {}) {
  return seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(static_cast<std::uint32_t>(error)), call, argument ? 1 : 0,
                                argument ? &*argument : nullptr) == 0;
}

/// Has what cuts a file off by its path refused; the right to write files guards the rest. What openat2(2) is asked is
/// out of the filter's sight; this program gives it no such flag.
bool refuse_truncating() {
  const Filter filter = make_filter();
  const auto truncates = [](unsigned argument) {
    return scmp_arg_cmp{.arg = argument, .op = SCMP_CMP_MASKED_EQ, .datum_a = O_TRUNC, .datum_b = O_TRUNC};
  };
  return filter && refuse(filter, EACCES, SCMP_SYS(truncate)) && refuse(filter, EACCES, SCMP_SYS(open), truncates(1)) &&
         refuse(filter, EACCES, SCMP_SYS(openat), truncates(2)) && seccomp_load(filter.get()) == 0;
}

/// Has every change of a mode refused.
bool refuse_unlocking() {
  constexpr int fchmodat2 = 452;  // newer than the library
  const Filter filter = make_filter();
  return filter && refuse(filter, EACCES, SCMP_SYS(chmod)) && refuse(filter, EACCES, SCMP_SYS(fchmod)) &&
         refuse(filter, EACCES, SCMP_SYS(fchmodat)) && refuse(filter, EACCES, fchmodat2) &&
         seccomp_load(filter.get()) == 0;
}

}  // namespace

bool give_up_changing(const MayChange& but) {
  landlock_ruleset_attr handled = {};
  handled.handled_access_fs = changing;
  const Descriptor rules(
      static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled.handled_access_fs, 0)));
  const std::uint64_t in_removed = but.renaming ? removing | LANDLOCK_ACCESS_FS_MAKE_DIR : removing;
  const bool keeps_modes = !but.unlocking && but.writing.empty();
  return rules && allow_below(rules, but.removing, in_removed) && allow_below(rules, but.writing, writing_files) &&
         prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && refuse_truncating() && (!keeps_modes || refuse_unlocking()) &&
         syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

bool give_up_network() {
  const Filter filter = make_filter();
  const scmp_arg_cmp not_local = {.arg = 0, .op = SCMP_CMP_NE, .datum_a = AF_UNIX, .datum_b = 0};
  // The second makes sockets, too, out of the filter's sight.
  return filter && refuse(filter, EAFNOSUPPORT, SCMP_SYS(socket), not_local) &&
         refuse(filter, ENOSYS, SCMP_SYS(io_uring_setup)) && seccomp_load(filter.get()) == 0;
}

}  // namespace tarnby
