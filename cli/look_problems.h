#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "cli/context.h"
#include "cli/json.h"
#include "engine/look_problem.h"

namespace tarnby::cli {

/// The problem as a sentence in one line.
std::string problem_text(const LookProblem& problem);

/// The sentence, or null.
Json json_problem(const std::optional<LookProblem>& problem);

/// How a command ends that has looked: `cut_short` when the system failed on the way.
ExitStatus status_of_look(const std::optional<LookProblem>& problem);
/// The same for several groups of the last scan.
ExitStatus status_of_looks(const Cleaner& cleaner, std::span<const std::string_view> groups);
/// The same after what was found was removed, unless that ended worse.
ExitStatus status_after_looks(ExitStatus removal, const Cleaner& cleaner, std::span<const std::string_view> groups);

/// Tells on standard error what a command that removes has not seen, one line a group, unless it shows its groups.
void tell_problems(Context& context, const Cleaner& cleaner, std::span<const std::string_view> groups);
/// The same for a command that shows one list, of what was missed on this thread; tells how it ends.
ExitStatus tell_missed(Context& context, const Missed& missed);

}  // namespace tarnby::cli
