#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "cli/removal_report.h"
#include "engine/cleaner.h"

namespace tarnby::cli {

/// Some of what is to go, measured as one.
struct ChosenPart {
  std::vector<Url> files;
  std::int64_t bytes = 0;
};

/// A scan that is over and what is to go of what it found.
struct ChosenRemoval {
  /// In the order of the removal.
  std::vector<Url> files;
  /// The same in parts, to find the bytes of what stays.
  std::vector<ChosenPart> parts;
  /// What the engine counts for it.
  std::int64_t bytes = 0;
  /// Bytes with each location counted once: what people are asked about.
  std::int64_t amount = 0;
  /// Shows it to people who are asked.
  std::function<void()> print;
  /// Removes `files`; `wasCleaned` of the engine is set afterwards.
  RemoveListed remove;
  /// The removal leaves its date in the settings that the scheduler reads, and the result tells it.
  bool is_dated = false;
};

/// Which of these names the arguments name, in the order of `all`, each once; throws CommandError when one is none.
/// @param noun what the names are called: "group".
std::vector<std::string_view> named_among(const Context& context, std::span<const std::string_view> all,
                                          std::string_view noun);

/// Shows what would go, or asks, removes, counts and reports: the second half of "clean" and "cleanup".
ExitStatus carry_out(Context& context, Cleaner& cleaner, const ChosenRemoval& chosen);

}  // namespace tarnby::cli
