#include "pictures/confinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

namespace tarnby {
namespace {

/// A process of its own that confines itself and then tries something; it has a file of ours open, and a pipe for its
/// answer.
class Confined {
 public:
  explicit Confined(const std::function<bool(int file)>& attempt) {
    std::array<int, 2> pipe{};
    EXPECT_EQ(pipe2(pipe.data(), O_CLOEXEC), 0);
    const pid_t child = fork();
    if (child == 0) {
      dup2(pipe[1], STDOUT_FILENO);
      const int file = open("/proc/self/stat", O_RDONLY | O_CLOEXEC);
      answer = !confine_to_pipes() ? '?' : attempt(file) ? 'y' : 'n';
      _exit(write(STDOUT_FILENO, &answer, 1) == 1 ? 0 : 1);
    }
    close(pipe[1]);
    if (read(pipe[0], &answer, 1) != 1) answer = '-';
    close(pipe[0]);
    waitpid(child, &status, 0);
  }

  /// What came of the attempt: 'y', 'n', '?' when the process could not be confined, '-' when it died.
  char answer = '-';
  int status = 0;
};

bool maps(std::size_t size, int rights) {
  return mmap(nullptr, size, rights, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED;
}

TEST(Confinement, leaves_two_pipes_and_memory_and_nothing_else) {
  const std::string path =
      (std::filesystem::temp_directory_path() / ("tarnby-confined." + std::to_string(getpid()))).string();
  close(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  const char* file = path.c_str();
  struct Case {
    const char* what;
    char answer;
    std::function<bool(int)> attempt;
  };
  const Case cases[] = {
      {"ten megabytes", 'y', [](int) { return maps(10 << 20, PROT_READ | PROT_WRITE); }},
      {"two gigabytes", 'n', [](int) { return maps(std::size_t{2} << 30U, PROT_READ | PROT_WRITE); }},
      {"memory that is run", 'n', [](int) { return maps(4096, PROT_READ | PROT_EXEC); }},
      {"a file to read", 'n', [](int) { return open("/etc/passwd", O_RDONLY | O_CLOEXEC) >= 0; }},
      {"a file to make", 'n',
       [&](int) { return open((path + "2").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600) >= 0; }},
      {"a file to remove", 'n', [file](int) { return unlink(file) == 0; }},
      {"a file to move", 'n', [&](int) { return rename(file, (path + "3").c_str()) == 0; }},
      {"whether a file exists", 'n', [file](int) { return access(file, F_OK) == 0; }},
      {"a file that was open", 'n',
       [](int open_one) {
         char byte = 0;
         return read(open_one, &byte, 1) == 1;
       }},
      {"messages to whoever started it", 'n', [](int) { return write(STDERR_FILENO, "", 1) == 1; }},
      {"a connection to the world", 'n', [](int) { return socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
      {"a connection on this machine", 'n', [](int) { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
      {"a signal", 'n', [](int) { return kill(getppid(), 0) == 0; }},
      {"another process's memory", 'n', [](int) { return ptrace(PTRACE_ATTACH, getppid(), 0, 0) == 0; }},
      {"more than it has", 'n', [](int) { return setuid(0) == 0; }},
      {"a process", '-', [](int) { return fork() >= 0; }},
      {"another program", '-', [](int) { return execl("/bin/true", "true", nullptr) == 0; }},
  };
  for (const Case& one : cases) {
    const Confined process(one.attempt);
    EXPECT_EQ(process.answer, one.answer) << one.what;
    EXPECT_EQ(WIFSIGNALED(process.status), one.answer == '-') << one.what;
  }
  EXPECT_TRUE(std::filesystem::remove(path));
}

}  // namespace
}  // namespace tarnby
