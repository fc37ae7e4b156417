#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "engine/cleaner_item.h"
#include "engine/smart_outline_item.h"

namespace tarnby {

class ChosenAmount;
class Cleaner;

/// What is ticked on the smart clean screen.
///
/// For each category there are three lists of one length: the store list has all entries in the engine's order, the
/// selection list has in each slot the entry when it is ticked and "Empty" when it is not, the empty list is "Empty"
/// throughout. A category counts as ticked, wholly or in part, exactly when its selection list differs from its empty
/// list; so one without entries never does.
class SmartCleanLists {
 public:
  /// Stands in a selection list where an entry is not ticked.
  struct Empty {
    friend bool operator==(Empty, Empty) = default;
  };
  using Slot = std::variant<Empty, CleanerEntry>;

  enum class Ticked { none, some, all };

  /// One category's lists.
  struct Row {
    std::string_view type;
    std::vector<CleanerEntry> SmartCleanLists::*store;
    std::vector<Slot> SmartCleanLists::*selection;
    std::vector<Slot> SmartCleanLists::*empty;
  };
  /// In the order of the categories.
  static std::span<const Row> rows();

  std::vector<CleanerEntry> store_caches, store_logs, store_remainders, store_browsers, store_mails, store_installs,
      store_trash;
  std::vector<Slot> caches, logs, remainders, browsers, mails, installs, trash;
  std::vector<Slot> empty_caches, empty_logs, empty_remainders, empty_browsers, empty_mails, empty_installs,
      empty_trash;
  /// The groups, shared with the engine; their sizes change with what is ticked. They begin with the engine's totals,
  /// of which that of the leftovers holds what earlier scans found, so people are shown `size_shown` instead.
  std::vector<std::shared_ptr<SmartOutlineItem>> outlineItems;
  /// Bytes ticked, each location counted once: what two groups list, or what lies inside something else that is ticked,
  /// adds nothing the second time.
  std::uint64_t smart_junk = 0;

  /// Takes everything that a smart scan has found. In a home of the macOS kind all of it is ticked, else what a person
  /// need not be asked about.
  void take(const Cleaner& cleaner);
  /// Makes the empty lists as long as the selection lists.
  void empty_items();

  std::size_t count() const { return outlineItems.size(); }
  const std::vector<CleanerEntry>& entries(std::size_t group) const { return this->*rows()[group].store; }
  Ticked ticked(std::size_t group) const;
  bool is_ticked(std::size_t group, std::size_t entry) const;

  /// Ticks what goes with a group, or unticks all of it; either way one that is wholly the one or the other shows its
  /// whole size.
  void select_group(std::size_t group);
  void unselect_group(std::size_t group);
  /// Ticks or unticks one entry; what may not go cannot be ticked. The group then shows the size of its ticked entries,
  /// but its whole size when none is left: a group without ticks stands for all that could go.
  void select_entry(std::size_t group, std::size_t entry);
  void unselect_entry(std::size_t group, std::size_t entry);

  /// Bytes of a group as people read them: of its ticked entries, but of all that are listed when none is ticked.
  std::int64_t size_shown(std::size_t group) const;
  /// Something is listed in one group at least.
  bool has_entries() const;

  void update_junk();
  /// The locations of everything ticked, in the order of the categories and their entries.
  std::vector<Url> ticked_locations() const;
  std::size_t ticked_entries() const;
  std::size_t ticked_entries(std::size_t group) const { return ticked_[group]; }

 private:
  std::vector<Slot>& selection(std::size_t group) { return this->*rows()[group].selection; }
  const std::vector<Slot>& selection(std::size_t group) const { return this->*rows()[group].selection; }
  const std::vector<Slot>& empty(std::size_t group) const { return this->*rows()[group].empty; }
  void find_shared();
  void untick_what_asks(std::size_t group, bool by_person = false);
  /// Bytes of the ticked entries that are counted with another ticked entry already.
  std::uint64_t counted_again() const;
  bool nothing_ticked(std::size_t group) const { return ticked_[group] == 0; }

  /// Each category's own total, in the order of the rows.
  std::vector<std::int64_t> totals_;
  /// How many slots of each selection list differ from the empty list: asked for every time a row is drawn, and the
  /// lists may be long.
  std::vector<std::size_t> ticked_;
  /// Bytes of the ticked entries of each group, and of all of them.
  std::vector<std::uint64_t> ticked_bytes_;
  std::vector<std::uint64_t> listed_bytes_;
  std::shared_ptr<const ChosenAmount> amount_;
  /// The entries that may count less beside others, by group and entry: few of many.
  std::vector<std::pair<std::size_t, std::size_t>> shared_;
};

}  // namespace tarnby
