// What happens when single system calls fail or others act in between. The calls named here are this program's own,
// which pass on what they are given to the kernel.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <seccomp.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "files/confinement.h"
#include "files/file_manager.h"
#include "files/removal_remnant.h"
#include "tests/support/deep_chain.h"
#include "tests/support/own_mounts.h"
#include "tests/support/temp_tree.h"

namespace {

/// The folder of which fstat(2) can tell nothing; none when empty.
std::string untold_folder;  // NOLINT(cert-err58-cpp)

/// Called before each unlinkat(2) with the name and whether it is to remove a folder.
std::function<void(const std::string& name, bool is_folder)> before_unlink;  // NOLINT(cert-err58-cpp)

/// Called before each renameat2(2) with the name that is to go.
std::function<void(const std::string& name)> before_rename;  // NOLINT(cert-err58-cpp)

std::string path_of(int handle) {
  std::string path(4096, '\0');
  const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(handle)).c_str(), path.data(), path.size());
  path.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return path;
}

}  // namespace

extern "C" int fstat(int handle, struct stat* told) noexcept {
  if (!untold_folder.empty() && path_of(handle) == untold_folder) {
    errno = EIO;
    return -1;
  }
  return fstatat(handle, "", told, AT_EMPTY_PATH);
}

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept {
  if (before_unlink) before_unlink(name, (flags & AT_REMOVEDIR) != 0);
  return static_cast<int>(syscall(SYS_unlinkat, folder, name, flags));
}

extern "C" int renameat2(int from_folder, const char* from, int to_folder, const char* to, unsigned flags) noexcept {
  if (const auto act = std::exchange(before_rename, nullptr)) act(from);
  return static_cast<int>(syscall(SYS_renameat2, from_folder, from, to_folder, to, flags));
}

namespace tarnby {
namespace {

using test::TempTree;
using testing::AnyOf;

Removal removed(FileManager& files, const Url& url, const RemovalOptions& options = {}) {
  return files.remove({&url, 1}, options).front();
}

class SystemFailure : public testing::Test {
 protected:
  void TearDown() override {
    untold_folder.clear();
    before_unlink = nullptr;
    before_rename = nullptr;
  }
  TempTree tree;
  FileManager files{1};
};

TEST_F(SystemFailure, nothing_is_removed_when_its_identity_is_unknown) {
  tree.file("grant/t/sub/file").file("grant/file").file("other/file");
  ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
  untold_folder = tree.path("other");
  EXPECT_FALSE(files.granted().add(Grant::applications, tree.url("other"))) << "it could not be protected";
  EXPECT_EQ(removed(files, tree.url("other/file")).error.value(), EPERM);
  untold_folder = tree.path("grant");
  EXPECT_EQ(removed(files, tree.url("grant/file")).error.value(), EIO) << "what is protected there is not known";
  for (const char* unknown : {"grant/t", "grant/t/sub"}) {
    untold_folder = tree.path(unknown);
    EXPECT_EQ(removed(files, tree.url("grant/t")).error.value(), EPERM) << "it might be a granted folder: " << unknown;
  }
  EXPECT_TRUE(tree.exists("other/file") && tree.exists("grant/file") && tree.exists("grant/t/sub/file"));
}

TEST_F(SystemFailure, a_folder_that_fills_or_handles_that_run_out_meanwhile_get_another_attempt) {
  rlimit enough = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &enough), 0);
  const rlimit none = {3, enough.rlim_max};
  for (const bool fills : {true, false}) {
    SCOPED_TRACE(fills ? "it fills" : "handles run out");
    tree.file("grant/t/file", 5).file("grant/t/sub/file", 7).file("grant/later/kept");
    ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
    std::atomic<bool> stop{false};
    int attempts = 0;
    before_unlink = [&](const std::string& name, bool is_folder) {
      if (name == "file" && !fills && attempts == 0) (void)setrlimit(RLIMIT_NOFILE, &none);
      if (is_folder) (void)setrlimit(RLIMIT_NOFILE, &enough);
      if (name == "t" && attempts++ == 0 && fills) tree.file("grant/t/new", 11);
      stop = true;  // what is begun goes to its end all the same
    };
    const Url urls[] = {tree.url("grant/t"), tree.url("grant/later")};
    const auto removals = files.remove(urls, {.stop = &stop});
    (void)setrlimit(RLIMIT_NOFILE, &enough);
    before_unlink = nullptr;
    EXPECT_EQ(attempts, 2);
    EXPECT_FALSE(removals[0].error) << removals[0].error.message();
    EXPECT_TRUE(removals[0].taken && !removals[1].attempted);
    EXPECT_EQ(removals[0].bytes, fills ? 5 + 7 + 11 : 5 + 7) << "of both attempts";
    EXPECT_TRUE(!tree.exists("grant/t") && tree.exists("grant/later/kept"));
  }
}

TEST_F(SystemFailure, where_a_sandbox_refuses_to_open_carefully_another_disk_is_still_not_entered) {
  tree.folder("grant/t/disk").file("grant/t/file");
  const bool ran = test::with_own_mounts([&] {
    ASSERT_EQ(mount("none", tree.path("grant/t/disk").c_str(), "tmpfs", 0, nullptr), 0);
    tree.file("grant/t/disk/sub/kept");
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    ASSERT_EQ(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(openat2), 0), 0);
    ASSERT_EQ(seccomp_load(filter), 0);
    seccomp_release(filter);
    ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
    EXPECT_THAT(removed(files, tree.url("grant/t")).error.value(), AnyOf(EXDEV, EBUSY));
    EXPECT_EQ(removed(files, tree.url("grant/t/disk")).error.value(), EXDEV);
    EXPECT_TRUE(tree.exists("grant/t/disk/sub/kept") && !tree.exists("grant/t/file"));
  });
  if (!ran) GTEST_SKIP() << "this system permits no mounts";
}

TEST_F(SystemFailure, a_whole_unit_is_the_folder_that_was_looked_at_or_is_left_alone) {
  ASSERT_TRUE(files.granted().add(Grant::applications, (tree.folder("grant"), tree.url("grant"))));
  const RemovalOptions whole = {.whole_units = true};
  const std::string at = tree.path("grant/unit");
  for (const char* other : {"a folder", "a link", "nothing"}) {
    SCOPED_TRACE(other);
    tree.file("grant/unit/1");
    before_rename = [&](const std::string& name) {
      EXPECT_EQ(name, "unit");
      ASSERT_EQ(rename(at.c_str(), tree.path("grant/moved away").c_str()), 0);
      if (other == std::string("a folder")) tree.file("grant/unit/kept");
      if (other == std::string("a link")) tree.link("grant/unit", "moved away");
    };
    const Removal removal = removed(files, tree.url("grant/unit"), whole);
    const bool is_gone = other == std::string("nothing");
    EXPECT_EQ(removal.error.value(), is_gone ? 0 : ESTALE);
    EXPECT_TRUE(removal.left_as.empty() && !removal.taken && tree.exists("grant/moved away/1"));
    EXPECT_EQ(tree.exists("grant/unit/kept"), other == std::string("a folder"));
    for (const char* name : {"grant/unit", "grant/moved away"}) EXPECT_FALSE(removed(files, tree.url(name)).error);
    EXPECT_EQ(tree.listing(), std::set<std::string>{"grant/"});
  }
}

TEST_F(SystemFailure, a_whole_unit_that_is_not_emptied_to_its_end_does_not_keep_its_name) {
  tree.file("grant/unit/1", 3).file("grant/unit/sub/2", 4);
  ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
  std::atomic<bool> stop_now{false};
  before_unlink = [&](const std::string&, bool) {
    EXPECT_FALSE(tree.exists("grant/unit")) << "whoever looks meanwhile finds the whole or nothing";
    stop_now = true;
  };
  const Removal cut = removed(files, tree.url("grant/unit"), {.stop_now = &stop_now, .whole_units = true});
  before_unlink = nullptr;
  EXPECT_TRUE(cut.error == std::errc::operation_canceled && !cut.taken);
  EXPECT_TRUE(is_removal_remnant(cut.left_as.last_path_component())) << cut.left_as.path();
  EXPECT_EQ(cut.left_as.parent(), tree.url("grant"));
  const Removal rest = removed(files, cut.left_as, {.whole_units = true});
  EXPECT_TRUE(rest.taken && !rest.error);
  EXPECT_EQ(cut.bytes + rest.bytes, 3 + 4);
  EXPECT_EQ(tree.listing(), std::set<std::string>{"grant/"});

  tree.file("grant/unit/1", 3);
  stop_now = false;
  before_rename = [&](const std::string&) { stop_now = true; };
  const Removal whole = removed(files, tree.url("grant/unit"), {.stop_now = &stop_now, .whole_units = true});
  EXPECT_TRUE(whole.error == std::errc::operation_canceled && whole.left_as.empty());
  EXPECT_EQ(tree.listing(), std::set<std::string>{"grant/unit/1"}) << "untouched, it has its name back";
}

/// What the kernel says to one attempt; 0 when it lets it pass.
int refusal(long result) {
  return result < 0 ? errno : 0;
}

TEST_F(SystemFailure, the_kernel_refuses_what_a_thread_gave_up) {
  tree.file("grant/sub/1").file("settings/list").file("outside/1").folder("grant/empty").link("grant/link", "nowhere");
  const auto at = [&](const char* path) { return tree.path(path); };
  bool has_given_up = false;
  std::thread([&] {
    MayChange but;
    but.removing.emplace_back(open(at("grant").c_str(), O_PATH | O_CLOEXEC));
    but.writing.emplace_back(open(at("settings").c_str(), O_PATH | O_CLOEXEC));
    has_given_up = give_up_changing(but);
    if (!has_given_up) return;
    EXPECT_EQ(refusal(unlink(at("outside/1").c_str())), EACCES);
    EXPECT_EQ(refusal(rmdir(at("outside").c_str())), EACCES);
    EXPECT_EQ(refusal(mkdir(at("outside/new").c_str(), 0700)), EACCES);
    EXPECT_EQ(refusal(symlink("x", at("grant/new").c_str())), EACCES);
    EXPECT_EQ(refusal(rename(at("outside/1").c_str(), at("outside/2").c_str())), EACCES);
    EXPECT_NE(refusal(rename(at("grant/sub/1").c_str(), at("outside/2").c_str())), 0);
    for (const char* path : {"outside/1", "outside/new", "grant/sub/1", "grant/new"}) {
      EXPECT_EQ(refusal(open(at(path).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)), EACCES) << path;
    }
    EXPECT_EQ(refusal(truncate(at("outside/1").c_str(), 0)), EACCES);
    EXPECT_EQ(refusal(open(at("outside/1").c_str(), O_RDONLY | O_TRUNC | O_CLOEXEC)), EACCES);
    EXPECT_EQ(refusal(unlink(at("grant/sub/1").c_str())), 0);
    EXPECT_EQ(refusal(rmdir(at("grant/empty").c_str())), 0);
    const Descriptor list(open(at("settings/new").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    EXPECT_TRUE(list);
    EXPECT_EQ(refusal(rename(at("settings/new").c_str(), at("settings/list").c_str())), 0);
    EXPECT_TRUE(Descriptor(open(at("outside/1").c_str(), O_RDONLY | O_CLOEXEC))) << "reading is as before";
  }).join();
  if (!has_given_up) GTEST_SKIP() << "this kernel takes no such rights away";
  EXPECT_EQ(refusal(unlink(at("outside/1").c_str())), 0) << "other threads have kept theirs";
}

// The guard is out of the way here: in the middle of its work the program goes for something else.
TEST_F(SystemFailure, threads_that_look_or_remove_can_do_nothing_else) {
  tree.file("grant/t/sub/1").file("grant/kept").file("outside/1");
  bool kernel_can = false;
  std::thread([&] { kernel_can = give_up_changing({}); }).join();
  if (!kernel_can) GTEST_SKIP() << "this kernel takes no such rights away";
  ASSERT_TRUE(files.granted().add(Grant::applications, tree.url("grant")));
  files.confine_threads(FileManager::Callers::keep_their_rights);
  int attempts = 0;
  const auto go_astray = [&](bool looks) {
    ++attempts;
    EXPECT_EQ(refusal(unlink(tree.path("outside/1").c_str())), EACCES);
    EXPECT_EQ(refusal(open(tree.path("grant/kept").c_str(), O_WRONLY | O_CLOEXEC)), EACCES);
    EXPECT_EQ(refusal(chmod(tree.path("grant/kept").c_str(), 0600)), EACCES);
    EXPECT_TRUE(!looks || refusal(unlink(tree.path("grant/kept").c_str())) == EACCES);
  };
  (void)files.walk(tree.url("grant"), Hidden::take, Packages::enter, [&](std::string_view, EntryKind) {
    go_astray(true);
    return false;
  });
  EXPECT_EQ(attempts, 4);
  before_unlink = [&](const std::string&, bool) { go_astray(false); };
  EXPECT_FALSE(removed(files, tree.url("grant/t")).error);
  EXPECT_EQ(attempts, 7);
  const test::DeepChain deep(tree, "grant/deep", 2000, "d", [&, level = 0](int folder) mutable {
    if (++level % 1990 == 0) test::make_file_in(folder, "far down", 1);
  });
  before_unlink = [&](const std::string& name, bool) {
    if (name == "far down") go_astray(true);  // there a thread may only remove what is still deeper
  };
  EXPECT_FALSE(removed(files, tree.url("grant/deep")).error);
  EXPECT_EQ(attempts, 8);
  EXPECT_TRUE(tree.exists("outside/1") && tree.exists("grant/kept"));
  EXPECT_FALSE(tree.exists("grant/t") || tree.exists("grant/deep"));
}

TEST(Network, cannot_be_reached_once_it_was_given_up) {
  bool has_given_up = false;
  std::thread([&] {
    has_given_up = give_up_network();
    for (const int family : {AF_INET, AF_INET6, AF_NETLINK, AF_PACKET}) {
      EXPECT_NE(refusal(socket(family, SOCK_DGRAM | SOCK_CLOEXEC, 0)), 0) << family;
    }
    EXPECT_TRUE(Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)));
  }).join();
  EXPECT_TRUE(has_given_up);
}

}  // namespace
}  // namespace tarnby
