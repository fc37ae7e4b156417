#include "pictures/confinement.h"

#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

namespace tarnby {

namespace {

struct LimitRow {
  __rlimit_resource what;
  rlim_t most;
};

/// A picture of the largest kind takes some hundred megabytes while it is scaled, and far below a second. Whoever
/// starts this process starts a new one long before honest pictures have used up the time.
constexpr LimitRow limit_rows[] = {
    {RLIMIT_AS, rlim_t{1} << 30U},
    {RLIMIT_CPU, 30},
    {RLIMIT_CORE, 0},
    {RLIMIT_FSIZE, 0},
    {RLIMIT_NOFILE, 0},
    {RLIMIT_NPROC, 0},
};

bool limit(const LimitRow& row) {
  const rlimit limits = {row.most, row.most};
  return setrlimit(row.what, &limits) == 0;
}

/// What is allowed whatever its arguments are: memory, waiting for a lock, the time, and the end.
constexpr int allowed_calls[] = {
    SCMP_SYS(munmap),     SCMP_SYS(mremap),          SCMP_SYS(brk),          SCMP_SYS(madvise),
    SCMP_SYS(futex),      SCMP_SYS(clock_gettime),   SCMP_SYS(gettid),       SCMP_SYS(exit),
    SCMP_SYS(exit_group), SCMP_SYS(restart_syscall), SCMP_SYS(rt_sigreturn),
};

/// Refused like everything else, but at the cost of the process's life: the toolkit would wait for ever for a thread
/// that never was.
constexpr int deadly_calls[] = {SCMP_SYS(clone), SCMP_SYS(clone3), SCMP_SYS(fork),
                                SCMP_SYS(vfork), SCMP_SYS(execve), SCMP_SYS(execveat)};

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

bool allow_memory_without_code(scmp_filter_ctx filter) {
  const scmp_arg_cmp no_code = {.arg = 2, .op = SCMP_CMP_MASKED_EQ, .datum_a = PROT_EXEC, .datum_b = 0};
  return seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(mmap), 1, no_code) == 0 &&
         seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(mprotect), 1, no_code) == 0;
}

scmp_arg_cmp first_is(int handle) {
  return {.arg = 0, .op = SCMP_CMP_EQ, .datum_a = static_cast<scmp_datum_t>(handle), .datum_b = 0};
}

bool allow_pipes(scmp_filter_ctx filter) {
  return seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(read), 1, first_is(STDIN_FILENO)) == 0 &&
         seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(write), 1, first_is(STDOUT_FILENO)) == 0;
}

/// Sees to it as well that no program started from here could have rights that this one has not.
bool keep_few_calls() {
  const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release);
  if (filter == nullptr) return false;
  const auto add = [&](std::uint32_t action) {
    return [&filter, action](int call) { return seccomp_rule_add(filter.get(), action, call, 0) == 0; };
  };
  return std::all_of(std::begin(allowed_calls), std::end(allowed_calls), add(SCMP_ACT_ALLOW)) &&
         std::all_of(std::begin(deadly_calls), std::end(deadly_calls), add(SCMP_ACT_KILL_PROCESS)) &&
         allow_memory_without_code(filter.get()) && allow_pipes(filter.get()) && seccomp_load(filter.get()) == 0;
}

/// A second lock on the file system, should the first have a gap. The rights there are grew with the kernels; one that
/// has none leaves it at the first.
bool leave_file_system() {
  constexpr std::array<unsigned, 3> rights_by_version = {13, 14, 15};
  const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return true;
  const auto known = std::min(static_cast<std::size_t>(version), rights_by_version.size());
  const landlock_ruleset_attr rights = {.handled_access_fs = (1ULL << rights_by_version[known - 1]) - 1};
  const auto rules = static_cast<int>(syscall(SYS_landlock_create_ruleset, &rights, sizeof rights, 0));
  const bool left = rules >= 0 && syscall(SYS_landlock_restrict_self, rules, 0) == 0;
  if (rules >= 0) (void)close(rules);  // the rules are in force all the same
  return left;
}

}  // namespace

bool confine_to_pipes() {
  const bool alone = close_range(STDERR_FILENO + 1, ~0U, 0) == 0 && prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
  return alone && leave_file_system() && std::all_of(std::begin(limit_rows), std::end(limit_rows), limit) &&
         keep_few_calls();
}

}  // namespace tarnby
