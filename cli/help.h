#pragma once

#include <string>

#include "cli/command_table.h"

namespace tarnby::cli {

/// What the program does, its commands and options.
std::string program_help();

/// How one command is used.
std::string command_help(const CommandRow& row);

}  // namespace tarnby::cli
