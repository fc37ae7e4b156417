#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "files/missed.h"
#include "files/url.h"
#include "leftovers/known_applications.h"

namespace tarnby {

/// Why a group may lack something that is there. An empty group with a problem is not called clean.
struct LookProblem {
  /// What stood in the way.
  enum class Kind {
    /// Something may not be read.
    unreadable,
    /// The disk or the system failed (no handle, no memory): what is listed is true, but need not be all.
    cut_short,
    /// The home folder has none of the places where the group's entries would be.
    no_place,
    /// A place of the group is a link, which is not followed.
    elsewhere,
  };
  Kind kind = Kind::unreadable;
  /// For people: an application ("Foo.app"), a folder ("~/Library/Logs"), or the home folder ("ada").
  std::string name;
  /// True when nothing was looked for because of it, false when some of it was not seen.
  bool is_whole = false;

  friend bool operator==(const LookProblem&, const LookProblem&) = default;
};

/// The problem in words, the key of a localised text; "%@" stands for the name.
const char* look_problem_text(const LookProblem& problem);

/// The problem that these looks had; none when nothing was missed or they were only stopped. A failure goes before a
/// refusal.
std::optional<LookProblem> problem_of_look(const Missed& missed, const Url& home);

/// The same for a search of leftovers, which looks for nothing when an application may own anything.
std::optional<LookProblem> problem_of_leftovers(const KnownApplications& known, Missed missed, const Url& home);

/// The problems of the last scans by the type of the group. Any thread may call.
class LookProblems {
 public:
  /// Replaces what was known of a group; none says that all was seen.
  void set(std::string_view type, std::optional<LookProblem> problem);
  /// None when all of the group was seen, and before any scan.
  std::optional<LookProblem> of(std::string_view type) const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, LookProblem, std::less<>> problems_;
};

}  // namespace tarnby
