#pragma once

#include <memory>
#include <span>
#include <vector>

#include "files/removal.h"
#include "places/offer.h"
#include "platform/running_programs.h"

namespace tarnby {

struct OfferedItem;

/// Whether the owner of an offer runs, by what a look at the processes has seen and by the files that it locks now. An
/// offer without a known owner has none that could run.
Running owner_runs(const Owner& owner, const RunningPrograms& programs);

/// Keeps entries of a removal whose owner has begun to run since they were listed, and what must not go before another
/// entry has.
///
/// @param items the rows that the entries belong to, one an entry; null for an entry of none. They are asked about anew
///   for each row, since a program may begin at any time.
/// @param places where the system tells of processes.
RemovalGate gate_for(std::vector<std::shared_ptr<const OfferedItem>> items, ProcessPlaces places);

/// For each entry the one before it that must be gone first, as RemovalOptions::after takes it.
std::vector<std::size_t> order_of(std::span<const std::shared_ptr<const OfferedItem>> items);

}  // namespace tarnby
