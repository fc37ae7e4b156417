#include "cli/program.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <new>

#include "cli/command_table.h"
#include "cli/confinement.h"
#include "cli/context.h"
#include "cli/help.h"
#include "cli/interrupt.h"
#include "cli/terminal.h"
#include "files/directory.h"
#include "platform/platform.h"

namespace tarnby::cli {

namespace {

/// A program may be started with its standard handles closed. Then the first folder or settings file that is opened
/// would get one of their numbers, and the result would be written into it. So they are taken up here by something that
/// fails what they are used for.
void hold_standard_handles() {
  const std::pair<int, int> handles[] = {
      {STDIN_FILENO, O_WRONLY}, {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_RDONLY}};
  for (const auto& [number, mode] : handles) {
    if (fcntl(number, F_GETFD) < 0) (void)open("/dev/null", mode);  // gets the lowest free number: this one
  }
}

ExitStatus run_command(const Invocation& asked) {
  static PlainMainQueue main_queue;  // lives as long as the shared platform, which posts to it
  RunPlatform made = platform_for(asked, main_queue);
  Platform::set_shared(std::move(made.platform));
  Context context{asked,
                  std::cout,
                  std::cerr,
                  Platform::shared(),
                  made.settings,
                  main_queue,
                  isatty(STDOUT_FILENO) != 0,
                  rewrites_lines(),
                  isatty(STDIN_FILENO) != 0};
  confine_to_command(asked, context.session());
  try {
    return asked.command->run(context);
  } catch (const std::bad_alloc&) {
    if (asked.command->effect != Effect::looks) throw;
    throw CommandError(cut_short, "there was not enough memory to look at everything; free some and try again");
  }
}

ExitStatus run_or_explain(const Invocation& asked) {
  if (asked.version) {
    std::cout << "tarnby-cleaner-cli " TARNBY_VERSION "\n";
  } else if (asked.help) {
    std::cout << (asked.command ? command_help(*asked.command) : program_help(asked.called_as));
  } else {
    return run_command(asked);
  }
  return done;
}

}  // namespace

int run_program(int argc, const char* const* argv) {
  hold_standard_handles();
  std::ios::sync_with_stdio(false);
  watch_for_interrupts();
  (void)std::signal(SIGXFSZ, SIG_IGN);  // a file too large is an error of the write, as a full disk is
  raise_handle_limit();
  ExitStatus status = done;
  try {
    const auto words = std::span(argv, static_cast<std::size_t>(argc));
    Invocation asked = parse_command_line(words.subspan(words.empty() ? 0 : 1));
    if (!words.empty() && *words.front() != '\0') asked.called_as = words.front();
    status = run_or_explain(asked);
  } catch (const CommandError& error) {
    std::cerr << "tarnby-cleaner-cli: " << error.what() << '\n';
    return error.status();
  } catch (const std::exception& error) {  // no memory, no thread to be had
    std::cerr << "tarnby-cleaner-cli: this could not be finished: " << one_line(error.what()) << '\n';
    return left_something;
  }
  if (!std::cout.flush()) {
    std::cerr << "tarnby-cleaner-cli: the result could not be written to standard output\n";
    return status == done ? left_something : status;
  }
  return status;
}

}  // namespace tarnby::cli
