#include "tests/support/temp_tree.h"

#include <fcntl.h>
#include <ftw.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace tarnby::test {

namespace fs = std::filesystem;

namespace {

void must(bool worked, const std::string& what) {
  if (!worked) throw std::system_error(errno, std::generic_category(), "test tree: " + what);
}

constexpr unsigned plain_user = 65534;

}  // namespace

TempTree::TempTree() {
  std::string name = (fs::temp_directory_path() / "tarnby-test-XXXXXX").string();
  must(mkdtemp(name.data()) != nullptr, name);
  root_ = fs::canonical(name).string();
}

TempTree::~TempTree() {
  std::error_code ignored;  // a test may have taken its own permissions away; give them back first
  for (fs::recursive_directory_iterator it(root_, fs::directory_options::skip_permission_denied, ignored), end;
       it != end; it.increment(ignored)) {
    if (it->is_directory(ignored) && !it->is_symlink(ignored)) {
      fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(root_, ignored);
}

std::string TempTree::path(std::string_view relative) const {
  return relative.empty() ? root_ : root_ + "/" + std::string(relative);
}

TempTree& TempTree::folder(std::string_view relative) {
  fs::create_directories(path(relative));
  return *this;
}

TempTree& TempTree::file(std::string_view relative, std::int64_t size) {
  content(relative, {});
  must(truncate(path(relative).c_str(), size) == 0, path(relative));
  return *this;
}

TempTree& TempTree::content(std::string_view relative, std::string_view bytes) {
  fs::create_directories(fs::path(path(relative)).parent_path());
  std::ofstream out(path(relative), std::ios::binary);
  out << bytes;
  must(bool(out.flush()), path(relative));
  return *this;
}

TempTree& TempTree::link(std::string_view relative, std::string_view target) {
  fs::create_directories(fs::path(path(relative)).parent_path());
  must(symlink(std::string(target).c_str(), path(relative).c_str()) == 0, path(relative));
  return *this;
}

TempTree& TempTree::fifo(std::string_view relative) {
  fs::create_directories(fs::path(path(relative)).parent_path());
  must(mkfifo(path(relative).c_str(), 0600) == 0, path(relative));
  return *this;
}

TempTree& TempTree::mode(std::string_view relative, unsigned mode) {
  must(chmod(path(relative).c_str(), mode) == 0, path(relative));
  return *this;
}

std::set<std::string> TempTree::listing() const {
  std::set<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(root_, fs::directory_options::skip_permission_denied)) {
    const std::string relative = entry.path().string().substr(root_.size() + 1);
    if (entry.is_symlink() || !entry.is_directory()) {
      found.insert(relative);
      continue;
    }
    std::error_code unreadable;
    if (fs::is_empty(entry.path(), unreadable)) found.insert(relative + "/");
  }
  return found;
}

bool TempTree::exists(std::string_view relative) const {
  struct stat ignored = {};
  return lstat(path(relative).c_str(), &ignored) == 0;
}

std::string TempTree::read(std::string_view relative) const {
  std::ifstream in(path(relative), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void as_plain_user(const TempTree& tree, const std::function<void()>& body) {
  std::fflush(nullptr);  // else the child prints again what waits to be printed
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (geteuid() == 0) {
      const auto hand_over = [](const char* path, const struct stat* standing, int, struct FTW*) {
        return standing->st_uid == 0 ? lchown(path, plain_user, plain_user) : 0;
      };
      // NOLINTNEXTLINE(concurrency-mt-unsafe): this process has one thread
      if (nftw(tree.path().c_str(), hand_over, 16, FTW_PHYS) != 0 || setgroups(0, nullptr) != 0 ||
          setresgid(plain_user, plain_user, plain_user) != 0 || setresuid(plain_user, plain_user, plain_user) != 0) {
        _exit(2);
      }
    }
    body();
    std::fflush(nullptr);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0) << "the part that runs as a plain user failed; its messages are above";
}

bool plain_user_reaches(const std::string& file) {
  if (geteuid() != 0) return true;
  for (fs::path part = file; part.has_relative_path(); part = part.parent_path()) {
    if ((fs::status(part).permissions() & fs::perms::others_exec) == fs::perms::none) return false;
  }
  return true;
}

}  // namespace tarnby::test
