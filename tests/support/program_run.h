#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "files/descriptor.h"

namespace tarnby::test {

/// One run of a program, without a shell in between and without anything to read.
struct ProgramRun {
  std::vector<std::string> words;
  /// The whole environment; only the options of sanitizers are added.
  std::map<std::string, std::string> environment;
  /// Its working folder; empty: this one's.
  std::string folder = {};
};

struct ProgramResult {
  /// As a shell tells it: the exit status, or 128 and the number of the signal that ended the program.
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs it to its end.
ProgramResult run_program(const ProgramRun& run);

/// The same run after the shell has done what the script says, such as "ulimit -f 0;" or "exec >/dev/full;".
ProgramRun after_shell(const std::string& script, ProgramRun run);

/// A program that runs in a terminal window of its own: what it writes, to whichever handle, is what the window shows.
class TerminalProgram {
 public:
  explicit TerminalProgram(const ProgramRun& run, unsigned short columns = 80);
  ~TerminalProgram();
  TerminalProgram(const TerminalProgram&) = delete;
  TerminalProgram& operator=(const TerminalProgram&) = delete;

  /// Waits until it has shown this text; false when it has ended without.
  bool shows(std::string_view text);
  /// Types keys: "\x03" is Ctrl-C, "\x04" the end of the input.
  void type(std::string_view keys);
  /// Waits for its end. All that was shown is in `out`, lines ending in "\n".
  ProgramResult finish();

 private:
  bool read_more();

  pid_t child_ = -1;
  Descriptor terminal_;
  std::string shown_;
};

}  // namespace tarnby::test
