#include "tests/support/program_run.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace tarnby::test {

namespace {

void must(bool worked, const char* what) {
  if (!worked) throw std::system_error(errno, std::generic_category(), what);
}

/// As execve(2) wants them.
std::vector<char*> pointers_to(std::vector<std::string>& texts) {
  std::vector<char*> pointers(texts.size() + 1);
  std::ranges::transform(texts, pointers.begin(), [](std::string& text) { return text.data(); });
  return pointers;
}

/// In the child, after fork(2).
[[noreturn]] void become(const ProgramRun& run) {
  if (!run.folder.empty() && chdir(run.folder.c_str()) != 0) _exit(126);
  // What whoever runs the tests has left open would count against a limit on handles.
  must(close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC) == 0, "close_range");
  std::vector<std::string> words = run.words;
  std::vector<std::string> variables;
  for (const auto& [name, value] : run.environment) variables.emplace_back(name).append("=").append(value);
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (std::string_view(*variable).find("SAN_OPTIONS=") != std::string_view::npos) variables.emplace_back(*variable);
  }
  execve(words.front().c_str(), pointers_to(words).data(), pointers_to(variables).data());
  _exit(127);
}

int status_of_ended(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) must(errno == EINTR, "waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Appends what comes next; false at the end, and when the last one who had a terminal open has closed it.
bool read_some(const Descriptor& from, std::string& text) {
  std::array<char, 65536> buffer = {};
  const ssize_t count = read(from.get(), buffer.data(), buffer.size());
  if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

}  // namespace

ProgramResult run_program(const ProgramRun& run) {
  std::array<int, 2> out = {};
  std::array<int, 2> err = {};
  must(pipe2(out.data(), O_CLOEXEC) == 0 && pipe2(err.data(), O_CLOEXEC) == 0, "pipe");
  const pid_t child = fork();
  must(child >= 0, "fork");
  if (child == 0) {
    dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    become(run);
  }
  for (const int end : {out[1], err[1]}) close(end);
  const Descriptor out_end(out[0]);
  const Descriptor err_end(err[0]);
  ProgramResult result;
  while (read_some(out_end, result.out)) continue;
  while (read_some(err_end, result.err)) continue;  // short enough to have waited in the pipe
  result.status = status_of_ended(child);
  return result;
}

ProgramRun after_shell(const std::string& script, ProgramRun run) {
  run.words.insert(run.words.begin(), {"/bin/sh", "-c", script + R"( exec "$0" "$@")"});
  return run;
}

TerminalProgram::TerminalProgram(const ProgramRun& run, unsigned short columns) {
  const winsize size = {24, columns, 0, 0};
  int terminal = -1;
  child_ = forkpty(&terminal, nullptr, nullptr, &size);
  must(child_ >= 0, "forkpty");
  if (child_ == 0) become(run);
  terminal_ = Descriptor(terminal);
}

TerminalProgram::~TerminalProgram() {
  if (child_ < 0) return;
  kill(child_, SIGKILL);
  (void)waitpid(child_, nullptr, 0);
}

bool TerminalProgram::read_more() {
  const bool is_open = read_some(terminal_, shown_);
  std::erase(shown_, '\r');
  return is_open;
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
  return {status_of_ended(std::exchange(child_, -1)), shown_, {}};
}

}  // namespace tarnby::test
