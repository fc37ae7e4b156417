#include <algorithm>

#include "cli/commands.h"
#include "cli/look_problems.h"
#include "cli/removal_flow.h"
#include "cli/smart_scan_run.h"
#include "cli/smart_scan_table.h"
#include "engine/smart_selection.h"

namespace tarnby::cli {

namespace {

using Groups = std::vector<std::string_view>;

/// The groups that were asked for, in their fixed order.
Groups named_groups(const Context& context) {
  Groups all = all_groups();
  return context.asked.arguments.empty() ? all : named_among(context, all, "group");
}

std::vector<ChosenPart> parts_of(const Cleaner& cleaner, const Groups& groups, RowsTaken taken) {
  std::vector<ChosenPart> parts;
  for (const Category& category : smart_categories()) {
    if (std::find(groups.begin(), groups.end(), category.type) == groups.end()) continue;
    for (const CleanerEntry& entry : (cleaner.*category.item)->items) {
      if (!is_taken(entry, taken)) continue;
      const auto locations = locations_of(entry);
      parts.push_back({{locations.begin(), locations.end()}, size_of(entry)});
    }
  }
  return parts;
}

}  // namespace

ExitStatus run_clean(Context& context) {
  const Groups groups = named_groups(context);
  need_scan_folders(context);
  need_somebody_to_ask(context);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  run_smart_scan(context, cleaner);
  tell_problems(context, cleaner, groups);
  const RowsTaken taken = context.asked.all ? RowsTaken::all_that_may_go : RowsTaken::ticked_at_first;
  SmartSelection selection = select_groups(cleaner, groups, taken);
  ChosenRemoval chosen;
  chosen.files = std::move(selection.files);
  chosen.parts = parts_of(cleaner, groups, taken);
  chosen.bytes = selection.bytes;
  chosen.amount = cleaner.smart_amount->amount(selection.entries);
  chosen.print = [&] { print_smart_scan(context, cleaner, groups); };
  chosen.remove = [&](const RemovalOptions& options) {
    cleaner.files = chosen.files;
    cleaner.wasCleaned = chosen.bytes;
    return cleaner.remove_files(options);
  };
  return status_after_looks(carry_out(context, cleaner, chosen), cleaner, groups);
}

}  // namespace tarnby::cli
