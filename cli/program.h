#pragma once

namespace tarnby::cli {

/// The whole program: reads the command line, runs the command, tells what went wrong in one line on standard error.
/// @return the exit status.
int run_program(int argc, const char* const* argv);

}  // namespace tarnby::cli
