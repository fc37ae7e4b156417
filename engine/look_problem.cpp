#include "engine/look_problem.h"

#include "engine/entry_text.h"
#include "text/localization.h"

namespace tarnby {

namespace {

struct TextRow {
  LookProblem::Kind kind;
  bool is_whole;
  const char* text;
};

constexpr TextRow texts[] = {
    {LookProblem::Kind::unreadable, true, english("Not looked for: %@ may not be read")},
    {LookProblem::Kind::cut_short, true, english("Not looked for: %@ could not be read")},
    {LookProblem::Kind::no_place, true, english("Not looked for: none of its places is in %@")},
    {LookProblem::Kind::elsewhere, false, english("Not looked at: %@ lies elsewhere")},
    {LookProblem::Kind::unreadable, false, english("Not all was seen: %@ may not be read")},
    {LookProblem::Kind::cut_short, false, english("Not all was seen: %@ could not be read")},
};

std::string application_name(const Url& bundle) {
  return std::string(bundle.last_path_component());
}

std::string folder_name(const Url& folder, const Url& home) {
  return folder.empty() ? "~" : short_path(folder, home);
}

}  // namespace

const char* look_problem_text(const LookProblem& problem) {
  for (const TextRow& row : texts) {
    if (row.kind == problem.kind && row.is_whole == problem.is_whole) return row.text;
  }
  return "%@";
}

std::optional<LookProblem> problem_of_look(const Missed& missed, const Url& home) {
  using enum LookProblem::Kind;
  if (missed.failed) return LookProblem{cut_short, folder_name(*missed.failed, home), false};
  if (missed.refused) return LookProblem{unreadable, folder_name(*missed.refused, home), false};
  return {};
}

std::optional<LookProblem> problem_of_leftovers(const KnownApplications& known, Missed missed, const Url& home) {
  using enum LookProblem::Kind;
  if (known.bundles.failed) return LookProblem{cut_short, application_name(*known.bundles.failed), true};
  if (known.folders.failed) return LookProblem{cut_short, folder_name(*known.folders.failed, home), true};
  if (known.bundles.refused) return LookProblem{unreadable, application_name(*known.bundles.refused), true};
  missed.add(known.folders);
  return problem_of_look(missed, home);
}

void LookProblems::set(std::string_view type, std::optional<LookProblem> problem) {
  const std::lock_guard lock(mutex_);
  if (problem) {
    problems_.insert_or_assign(std::string(type), std::move(*problem));
  } else if (const auto old = problems_.find(type); old != problems_.end()) {
    problems_.erase(old);
  }
}

std::optional<LookProblem> LookProblems::of(std::string_view type) const {
  const std::lock_guard lock(mutex_);
  const auto found = problems_.find(type);
  return found == problems_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace tarnby
