#pragma once

#include <string>

#include "cli/command_table.h"

namespace tarnby::cli {

/// What the program does, its commands and options, and how to begin on this machine.
/// @param called_as how the program was started.
std::string program_help(const std::string& called_as);

/// How one command is used.
std::string command_help(const CommandRow& row);

}  // namespace tarnby::cli
