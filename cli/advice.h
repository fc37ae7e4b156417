#pragma once

#include <span>
#include <string>
#include <string_view>

#include "cli/context.h"

namespace tarnby::cli {

// What people are told to type next. It is told as it works on this machine, with the folders and settings that were
// given for this run, or not at all.

/// What a command does, and its words.
struct NextStep {
  std::string_view purpose;
  std::string_view words;
};

/// Prints the steps behind a result that people read in a window.
void print_next_steps(Context& context, std::span<const NextStep> steps);

/// The commands that a person begins with, each in a line of its own.
/// @param program how the program is started.
std::string first_steps(const std::string& program);

}  // namespace tarnby::cli
