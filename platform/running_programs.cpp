#include "platform/running_programs.h"

#include <algorithm>

#include "text/whole_number.h"

// The questions, alike on every system; looking is beside, in the folder of each.

namespace tarnby {

Running RunningPrograms::told(Answer answer) {
  if (answer.is_found) return Running::yes;
  return answer.is_certain ? Running::no : Running::unknown;
}

bool RunningPrograms::runs_one_of(const Process& process, std::span<const std::string_view> names) {
  constexpr std::size_t shown_bytes = 15;  // TASK_COMM_LEN without its NUL
  return std::any_of(names.begin(), names.end(), [&](std::string_view name) {
    return !name.empty() &&
           (name == process.executable || name == process.started_as || name.substr(0, shown_bytes) == process.command);
  });
}

Running RunningPrograms::program(std::span<const std::string_view> names) const {
  if (!knows_processes_) return Running::unknown;
  const bool found = std::any_of(processes_.begin(), processes_.end(),
                                 [&](const Process& process) { return runs_one_of(process, names); });
  return told({found, true});
}

Running RunningPrograms::process(std::int64_t number, std::span<const std::string_view> names) const {
  if (!knows_processes_) return Running::unknown;
  const auto found = std::find_if(processes_.begin(), processes_.end(),
                                  [&](const Process& process) { return process.number == number; });
  if (found == processes_.end()) return Running::no;
  return told({runs_one_of(*found, names), true});
}

Running RunningPrograms::flatpak(std::string_view id) const {
  if (!knows_processes_) return Running::unknown;
  return told({flatpaks_.contains(id), knows_sandboxes_ && knows_instances_});
}

Running RunningPrograms::snap(std::string_view name) const {
  if (!knows_processes_) return Running::unknown;
  return told({snaps_.contains(name), true});
}

std::optional<std::int64_t> process_in_lock_link(std::string_view text) {
  const auto before = text.find_last_not_of("0123456789");
  if (before == std::string_view::npos || before == 0) return std::nullopt;
  const bool is_mozilla = text[before] == '+' && text[before - 1] == ':';
  if (!is_mozilla && text[before] != '-') return std::nullopt;
  return whole_number<std::int64_t>(text.substr(before + 1));
}

}  // namespace tarnby
