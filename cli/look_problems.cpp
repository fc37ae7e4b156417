#include "cli/look_problems.h"

#include "engine/cleaner.h"

namespace tarnby::cli {

std::string problem_text(const LookProblem& problem) {
  std::string text = look_problem_text(problem);
  const auto place = text.find("%@");
  return text.replace(place, 2, one_line(problem.name));
}

Json json_problem(const std::optional<LookProblem>& problem) {
  return problem ? Json(problem_text(*problem)) : Json();
}

ExitStatus status_of_look(const std::optional<LookProblem>& problem) {
  return problem && problem->kind == LookProblem::Kind::cut_short ? cut_short : done;
}

ExitStatus status_of_looks(const Cleaner& cleaner, std::span<const std::string_view> groups) {
  for (const std::string_view group : groups) {
    if (status_of_look(cleaner.problem_of(group)) == cut_short) return cut_short;
  }
  return done;
}

ExitStatus status_after_looks(ExitStatus removal, const Cleaner& cleaner, std::span<const std::string_view> groups) {
  return removal == done ? status_of_looks(cleaner, groups) : removal;
}

void tell_problems(Context& context, const Cleaner& cleaner, std::span<const std::string_view> groups) {
  const bool shows_groups = !context.asked.yes && !context.asked.dry_run && !context.asked.json;
  if (shows_groups) return;
  for (const std::string_view group : groups) {
    const auto problem = cleaner.problem_of(group);
    // That there is nothing is no news for who removes what there is.
    if (!problem || problem->kind == LookProblem::Kind::no_place) continue;
    context.err << "tarnby-cleaner-cli: " << group << ": " << problem_text(*problem) << '\n';
  }
}

ExitStatus tell_missed(Context& context, const Missed& missed) {
  const Url home = context.bookmarks().resolve(Grant::home);
  const auto problem = problem_of_look(missed, home);
  if (problem) context.err << "tarnby-cleaner-cli: " << problem_text(*problem) << '\n';
  return status_of_look(problem);
}

}  // namespace tarnby::cli
