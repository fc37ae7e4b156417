#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// What a removal costs the person whose home it is.
enum class Grade : std::uint8_t {
  /// Nothing: it is made again silently, without the network.
  safe,
  /// Time, network or battery, until it is made or loaded again.
  costs_time,
  /// Perhaps something that a person made or set, and that nobody brings back.
  may_lose,
};

/// Whose something is, and how to tell whether that program runs: it must not, while its files are removed.
struct Owner {
  enum class Kind : std::uint8_t {
    /// Nobody knows whose it is.
    unknown,
    /// No program minds when it goes.
    nobody,
    program,
    flatpak,
    snap,
  };
  Kind kind = Kind::unknown;
  /// "gimp", or the identifier of a flatpak or snap.
  std::string id;
  /// For people: "GIMP".
  std::string name;
  /// The names of its executables.
  std::vector<std::string> programs;
  /// Files that the running program holds a lock on (F_SETLK(2)). They may be there, unlocked, when it does not run.
  std::vector<Url> locks;
};

/// One thing that a home offers for removal, with all that a person has to know to decide.
struct Offer {
  /// For people. An application's name, a file's, or the key of a localised text.
  std::string label;
  bool label_is_key = false;
  /// What tells this row from others of the same label, the key of a text; null for none.
  const char* label_suffix = nullptr;
  /// What removal deletes, exactly, and in this order.
  std::vector<Url> locations;
  Owner owner;
  Grade grade = Grade::costs_time;
  /// False for what a person has to choose, whatever its grade.
  bool starts_ticked = true;
  /// Why it is offered, and what happens once it is gone: keys of localised texts, in which "%@" stands for `subject`.
  const char* reason = "";
  const char* after = "";
  /// The owner's name, or the name of a folder.
  std::string subject;
  /// Offered only when nothing in it has changed for so many days.
  std::int64_t least_days_unchanged = 0;
  /// Each location stays when the one before it could not be removed whole.
  bool in_order = false;
};

}  // namespace tarnby
