#pragma once

#include "files/missed.h"

namespace tarnby {

/// How well a search for applications knows what is installed. An application that was not seen, or that did not say
/// who it is, may own anything.
struct KnownApplications {
  /// What was missed of the folders that applications are looked for in. Those that refuse access hold nothing for us.
  Missed folders;
  /// What was missed of the applications that were found there; a place here is a bundle.
  Missed bundles;

  /// False when nothing may be called left over.
  bool are_all() const { return !folders.stopped && !folders.failed && !bundles.anything(); }

  /// Takes down what was missed while one application was read.
  void note_bundle(const Url& bundle, const Missed& missed);
};

}  // namespace tarnby
