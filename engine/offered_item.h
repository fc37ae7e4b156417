#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "places/offer.h"
#include "platform/file_metadata.h"
#include "platform/image.h"
#include "platform/running_programs.h"

namespace tarnby {

/// One row of a home of the Linux kind: what is offered, what removing it gives back, and what stands in the way.
struct OfferedItem {
  Offer offer;
  /// Bytes on the disk, each file once.
  std::int64_t size = 0;
  /// Bytes that the disk gives back when this row alone goes: less than the size where files have other names
  /// elsewhere.
  std::int64_t frees = 0;
  /// The newest change of what is in it; none when nothing in it tells.
  std::optional<Moment> changed;
  /// Whether its owner ran when the scan looked.
  Running running = Running::no;
  Image image;

  /// False while its owner runs, or may run: then nothing of it is removed.
  bool may_go() const { return running == Running::no; }
  /// Whether it is ticked before a person has said anything.
  bool starts_ticked() const { return offer.starts_ticked && may_go(); }
};

using OfferedItems = std::vector<std::shared_ptr<OfferedItem>>;

}  // namespace tarnby
