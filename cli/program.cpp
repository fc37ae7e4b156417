#include "cli/program.h"

#include <unistd.h>

#include <iostream>
#include <string_view>

#include "cli/commands.h"
#include "cli/context.h"
#include "cli/interrupt.h"
#include "platform/directory.h"

namespace tarnby::cli {

namespace {

struct CommandFunction {
  std::string_view name;
  ExitStatus (*run)(Context& context);
};

constexpr CommandFunction functions[] = {
    {"scan", run_scan}, {"clean", run_clean}, {"apps", run_apps},
    {"app", run_app},   {"grant", run_grant}, {"settings", run_settings},
};

ExitStatus run_command(const Invocation& asked) {
  static PlainMainQueue main_queue;  // lives as long as the shared platform, which posts to it
  Platform::set_shared(platform_for(asked, main_queue));
  Context context{asked,
                  std::cout,
                  std::cerr,
                  Platform::shared(),
                  main_queue,
                  isatty(STDOUT_FILENO) != 0,
                  isatty(STDERR_FILENO) != 0,
                  isatty(STDIN_FILENO) != 0};
  for (const CommandFunction& function : functions) {
    if (function.name == asked.command) return function.run(context);
  }
  throw std::logic_error("the command line takes a command that nothing runs: " + asked.command);
}

}  // namespace

int run_program(int argc, const char* const* argv) {
  std::ios::sync_with_stdio(false);
  watch_for_interrupts();
  raise_handle_limit();
  ExitStatus status = done;
  try {
    const auto asked = parse_command_line(argc, argv);
    if (const auto* information = std::get_if<Information>(&asked)) {
      std::cout << information->text;
    } else {
      status = run_command(std::get<Invocation>(asked));
    }
  } catch (const CommandError& error) {
    std::cerr << "tarnby-cleaner-cli: " << error.what() << '\n';
    return error.status();
  }
  if (!std::cout.flush()) {
    std::cerr << "tarnby-cleaner-cli: the result could not be written to standard output\n";
    return status == done ? left_something : status;
  }
  return status;
}

}  // namespace tarnby::cli
