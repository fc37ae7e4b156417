#include "leftovers/known_applications.h"

namespace tarnby {

void KnownApplications::note_bundle(const Url& bundle, const Missed& missed) {
  bundles.stopped = bundles.stopped || missed.stopped;
  if (missed.refused && !bundles.refused) bundles.refused = bundle;
  if (missed.failed && !bundles.failed) bundles.failed = bundle;
}

}  // namespace tarnby
