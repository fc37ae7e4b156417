#include "engine/owner_watch.h"

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/offered_item.h"

namespace tarnby {

namespace {

Running process_runs(const Owner& owner, const RunningPrograms& programs) {
  switch (owner.kind) {
    case Owner::Kind::unknown:
    case Owner::Kind::nobody:
      return Running::no;
    case Owner::Kind::program:
      return programs.program(std::vector<std::string_view>(owner.programs.begin(), owner.programs.end()));
    case Owner::Kind::flatpak:
      return programs.flatpak(owner.id);
    case Owner::Kind::snap:
      return programs.snap(owner.id);
  }
  return Running::unknown;
}

/// Asks about each row once more, when its first entry is begun.
class Gate {
 public:
  Gate(std::vector<std::shared_ptr<const OfferedItem>> items, ProcessPlaces places)
      : items_(std::move(items)), places_(std::move(places)) {}

  std::error_code operator()(std::size_t index, std::span<const Removal> so_far) {
    const OfferedItem* item = items_[index].get();
    if (item == nullptr) return {};
    const Owner::Kind kind = item->offer.owner.kind;
    const bool has_owner =
        (kind != Owner::Kind::unknown && kind != Owner::Kind::nobody) || !item->offer.owner.locks.empty();
    if (has_owner && item != asked_) {
      asked_ = item;
      running_ = owner_runs(item->offer.owner, RunningPrograms::look(places_));
    }
    if (has_owner && running_ == Running::yes) return RemovalRefusal::owner_runs;
    if (has_owner && running_ == Running::unknown) return RemovalRefusal::owner_unknown;
    const bool is_first = index == 0 || items_[index - 1].get() != item;
    const bool waits = item->offer.in_order && !is_first;
    return waits && so_far[index - 1].error ? make_error_code(RemovalRefusal::other_stays) : std::error_code();
  }

 private:
  std::vector<std::shared_ptr<const OfferedItem>> items_;
  ProcessPlaces places_;
  const OfferedItem* asked_ = nullptr;
  Running running_ = Running::unknown;
};

}  // namespace

Running owner_runs(const Owner& owner, const RunningPrograms& programs) {
  Running running = process_runs(owner, programs);
  for (const Url& lock : owner.locks) {
    if (running == Running::yes) break;
    const Running held = lock_is_held(lock);
    if (held != Running::no) running = held;
  }
  return running;
}

RemovalGate gate_for(std::vector<std::shared_ptr<const OfferedItem>> items, ProcessPlaces places) {
  return Gate(std::move(items), std::move(places));
}

std::vector<std::size_t> order_of(std::span<const std::shared_ptr<const OfferedItem>> items) {
  std::vector<std::size_t> after(items.size(), RemovalOptions::waits_for_none);
  for (std::size_t at = 1; at < items.size(); ++at) {
    if (items[at] && items[at]->offer.in_order && items[at - 1] == items[at]) after[at] = at - 1;
  }
  return after;
}

}  // namespace tarnby
