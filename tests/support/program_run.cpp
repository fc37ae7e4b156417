#include "tests/support/program_run.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace tarnby::test {

namespace {

void must(bool worked, const char* what) {
  if (!worked) throw std::system_error(errno, std::generic_category(), what);
}

/// The words and the environment as execve(2) wants them.
class ExecLists {
 public:
  explicit ExecLists(const ProgramRun& run) : words_(run.words) {
    for (const auto& [name, value] : run.environment) variables_.emplace_back(name).append("=").append(value);
    for (char** variable = environ; *variable != nullptr; ++variable) {
      if (std::string_view(*variable).find("SAN_OPTIONS=") != std::string_view::npos) {
        variables_.emplace_back(*variable);
      }
    }
    for (auto [strings, pointers] : {std::pair(&words_, &argv_), std::pair(&variables_, &envp_)}) {
      for (std::string& text : *strings) pointers->push_back(text.data());
      pointers->push_back(nullptr);
    }
  }

  [[noreturn]] void exec() {
    execve(argv_.front(), argv_.data(), envp_.data());
    _exit(127);
  }

 private:
  std::vector<std::string> words_;
  std::vector<std::string> variables_;
  std::vector<char*> argv_;
  std::vector<char*> envp_;
};

/// In the child, between fork(2) and execve(2).
void prepare_child(const ProgramRun& run) {
  (void)std::signal(SIGPIPE, SIG_DFL);
  if (!run.folder.empty() && chdir(run.folder.c_str()) != 0) _exit(126);
  if (run.largest_file) {
    const rlimit limit = {*run.largest_file, *run.largest_file};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(126);
  }
}

void place_output(const ProgramRun& run, int pipe_end) {
  if (run.output == ProgramRun::Output::closed) {
    close(STDOUT_FILENO);
  } else {
    dup2(run.output == ProgramRun::Output::full ? open("/dev/full", O_WRONLY | O_CLOEXEC) : pipe_end, STDOUT_FILENO);
  }
}

int status_of_ended(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) must(errno == EINTR, "waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

struct Pipe {
  Descriptor read_end;
  Descriptor write_end;

  Pipe() {
    int ends[2] = {-1, -1};
    must(pipe2(ends, O_CLOEXEC) == 0, "pipe");
    read_end = Descriptor(ends[0]);
    write_end = Descriptor(ends[1]);
  }
};

/// Reads both until both have ended.
void read_to_end(int out, int err, ProgramResult& result) {
  std::array<pollfd, 2> ends = {pollfd{out, POLLIN, 0}, pollfd{err, POLLIN, 0}};
  const std::array<std::string*, 2> texts = {&result.out, &result.err};
  while (ends[0].fd >= 0 || ends[1].fd >= 0) {
    if (poll(ends.data(), ends.size(), -1) < 0) must(errno == EINTR, "poll");
    for (std::size_t at = 0; at < ends.size(); ++at) {
      if (ends[at].fd < 0 || ends[at].revents == 0) continue;
      std::array<char, 65536> buffer = {};
      const ssize_t count = read(ends[at].fd, buffer.data(), buffer.size());
      if (count > 0) texts[at]->append(buffer.data(), static_cast<std::size_t>(count));
      if (count == 0) ends[at].fd = -1;
    }
  }
}

}  // namespace

ProgramResult run_program(const ProgramRun& run) {
  (void)std::signal(SIGPIPE, SIG_IGN);  // a program may end without having read its input
  ExecLists lists(run);
  Pipe in;
  Pipe out;
  Pipe err;
  const pid_t child = fork();
  must(child >= 0, "fork");
  if (child == 0) {
    prepare_child(run);
    dup2(err.write_end.get(), STDERR_FILENO);
    place_output(run, out.write_end.get());
    if (run.input_is_closed) {
      close(STDIN_FILENO);
    } else {
      dup2(in.read_end.get(), STDIN_FILENO);
    }
    lists.exec();
  }
  for (Descriptor* end : {&in.read_end, &out.write_end, &err.write_end}) end->reset();
  (void)!write(in.write_end.get(), run.input.data(), run.input.size());
  in.write_end.reset();
  ProgramResult result;
  read_to_end(out.read_end.get(), err.read_end.get(), result);
  result.status = status_of_ended(child);
  return result;
}

TerminalProgram::TerminalProgram(const ProgramRun& run, unsigned short columns) {
  ExecLists lists(run);
  const winsize size = {24, columns, 0, 0};
  int terminal = -1;
  child_ = forkpty(&terminal, nullptr, nullptr, &size);
  must(child_ >= 0, "forkpty");
  if (child_ == 0) {
    prepare_child(run);
    lists.exec();
  }
  terminal_ = Descriptor(terminal);
}

TerminalProgram::~TerminalProgram() {
  if (child_ < 0) return;
  kill(child_, SIGKILL);
  (void)waitpid(child_, nullptr, 0);
}

bool TerminalProgram::read_more() {
  std::array<char, 4096> buffer = {};
  const ssize_t count = read(terminal_.get(), buffer.data(), buffer.size());
  if (count < 0 && errno == EINTR) return true;
  if (count <= 0) return false;  // the last one who had the terminal open has closed it
  for (const char c : std::string_view(buffer.data(), static_cast<std::size_t>(count))) {
    if (c == '\n' && shown_.ends_with('\r')) shown_.pop_back();
    shown_ += c;
  }
  return true;
}

bool TerminalProgram::shows(std::string_view text) {
  while (shown_.find(text) == std::string::npos) {
    if (!read_more()) return false;
  }
  return true;
}

void TerminalProgram::type(std::string_view keys) {
  must(write(terminal_.get(), keys.data(), keys.size()) == static_cast<ssize_t>(keys.size()), "typing");
}

ProgramResult TerminalProgram::finish() {
  while (read_more()) continue;
  ProgramResult result;
  result.status = status_of_ended(std::exchange(child_, -1));
  result.out = shown_;
  return result;
}

}  // namespace tarnby::test
