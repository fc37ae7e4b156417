#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <charconv>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// The yardstick: no work but what the kernel has to be asked for.
//
//   limit walk THREADS FOLDER...      adds up the sizes of all files and links below the folders
//   limit remove THREADS FOLDER...    removes the folders
//
// Each folder is opened from its parent's handle, read to its end and closed, and each file in it is asked for its
// size, or unlinked, by its name there. Memory follows the folders at hand, never the files. It refuses nothing,
// forgives nothing and ends at the first failure: only for trees made for measuring.

namespace {

struct Folder {
  Folder* parent;
  std::string name;
  int handle = -1;
  /// Whoever reads it, and the folders in it: until they are open, or, when removing, until they are gone.
  std::atomic<unsigned> users{1};
};

/// The beginning of a record of getdents64(2); the name follows.
struct Record {
  std::uint64_t number;
  std::int64_t offset;
  std::uint16_t length;
  std::uint8_t type;
};
constexpr std::size_t name_offset = 19;

/// That of readdir(3); another size makes no difference.
constexpr std::size_t buffer_size = 32768;

[[noreturn]] void fail(const std::string& name) {
  std::perror(("limit: " + name).c_str());
  _exit(1);
}

class Work {
 public:
  Work(bool removes, const std::vector<std::string>& folders) : removes_(removes) {
    for (const std::string& folder : folders) waiting_.push_back(new Folder{nullptr, folder});
    unfinished_ = waiting_.size();
  }

  std::int64_t run(unsigned threads) {
    std::vector<std::thread> others;
    for (unsigned at = 1; at < threads; ++at) others.emplace_back([this] { work(); });
    work();
    for (std::thread& other : others) other.join();
    return bytes_;
  }

 private:
  void work() {
    std::array<char, buffer_size> buffer;
    std::vector<Folder*> found;
    std::int64_t bytes = 0;
    while (Folder* folder = next()) {
      bytes += read(*folder, buffer, found);
      finish(folder, found);
    }
    bytes_ += bytes;
  }

  Folder* next() {
    std::unique_lock lock(mutex_);
    ++idle_;
    changed_.wait(lock, [&] { return !waiting_.empty() || unfinished_ == 0; });
    --idle_;
    if (waiting_.empty()) return nullptr;
    Folder* folder = waiting_.back();
    waiting_.pop_back();
    return folder;
  }

  std::int64_t read(Folder& folder, std::array<char, buffer_size>& buffer, std::vector<Folder*>& found) const {
    const int parent = folder.parent ? folder.parent->handle : AT_FDCWD;
    folder.handle = openat(parent, folder.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder.handle < 0) fail(folder.name);
    if (!removes_ && folder.parent) release(folder.parent);
    std::int64_t bytes = 0;
    while (const long got = syscall(SYS_getdents64, folder.handle, buffer.data(), buffer.size())) {
      if (got < 0) fail(folder.name);
      for (long at = 0; at < got;) {
        Record record = {};
        std::memcpy(&record, buffer.data() + at, name_offset);
        const char* name = buffer.data() + at + name_offset;
        at += record.length;
        if (record.type != DT_DIR) {
          bytes += remove_or_measure(folder.handle, name);
        } else if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
          found.push_back(new Folder{&folder, name});
        }
      }
    }
    return bytes;
  }

  std::int64_t remove_or_measure(int folder, const char* name) const {
    if (removes_) {
      if (unlinkat(folder, name, 0) != 0) fail(name);
      return 0;
    }
    struct stat info;
    if (fstatat(folder, name, &info, AT_SYMLINK_NOFOLLOW) != 0) fail(name);
    return info.st_size;
  }

  void finish(Folder* folder, std::vector<Folder*>& found) {
    folder->users += static_cast<unsigned>(found.size());
    release(folder);
    const std::lock_guard lock(mutex_);
    waiting_.insert(waiting_.end(), found.begin(), found.end());
    unfinished_ += found.size() - 1;
    found.clear();
    if (unfinished_ == 0) {
      changed_.notify_all();
    } else if (idle_ > 0 && waiting_.size() > 1) {
      changed_.notify_one();
    }
  }

  void release(Folder* folder) const {
    while (folder && --folder->users == 0) {
      close(folder->handle);
      Folder* const parent = folder->parent;
      if (removes_ && unlinkat(parent ? parent->handle : AT_FDCWD, folder->name.c_str(), AT_REMOVEDIR) != 0) {
        fail(folder->name);
      }
      delete folder;
      folder = removes_ ? parent : nullptr;
    }
  }

  const bool removes_;
  std::atomic<std::int64_t> bytes_{0};
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Folder*> waiting_;
  std::size_t unfinished_ = 0;
  unsigned idle_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv, argv + argc);
  unsigned threads = 0;
  const bool walks = argc > 3 && words[1] == "walk";
  const bool removes = argc > 3 && words[1] == "remove";
  if (walks || removes) std::from_chars(words[2].data(), words[2].data() + words[2].size(), threads);
  if (threads == 0) {
    std::fputs("usage: limit walk|remove THREADS FOLDER...\n", stderr);
    return 2;
  }
  rlimit handles = {};
  getrlimit(RLIMIT_NOFILE, &handles);
  handles.rlim_cur = handles.rlim_max;
  setrlimit(RLIMIT_NOFILE, &handles);
  Work work(removes, {words.begin() + 3, words.end()});
  std::printf("%lld\n", static_cast<long long>(work.run(threads)));
  return 0;
}
