#include <algorithm>

#include "cli/advice.h"
#include "cli/commands.h"
#include "cli/json.h"
#include "cli/look_problems.h"
#include "cli/smart_scan_run.h"
#include "cli/smart_scan_table.h"
#include "engine/smart_selection.h"

namespace tarnby::cli {

namespace {

Json json_menu(const Cleaner& cleaner) {
  Json menu = Json::array();
  for (const SmartMenuItem& item : cleaner.smart_menu_items) {
    const auto* header = std::get_if<std::string>(&item);
    menu.push_back(header ? *header : std::get<std::shared_ptr<SmartOutlineItem>>(item)->type);
  }
  return menu;
}

Json json_groups(const Cleaner& cleaner) {
  Json groups = Json::array();
  for (const Category& category : smart_categories()) {
    const SmartOutlineItem& row = *(cleaner.*category.smart.outline);
    Json items = Json::array();
    for (const CleanerEntry& entry : (cleaner.*category.item)->items) items.push_back(json_entry(entry));
    groups.push_back({{"type", row.type},
                      {"label", row.label},
                      {"size", row.size},
                      {"items", std::move(items)},
                      {"problem", json_problem(cleaner.problem_of(category.type))}});
  }
  return groups;
}

}  // namespace

ExitStatus run_scan(Context& context) {
  need_scan_folders(context);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  const auto posted = run_smart_scan(context, cleaner);
  const ExitStatus status = status_of_looks(cleaner, all_groups());
  if (context.asked.json) {
    const Json result = {{"total_smart_size", cleaner.total_smart_size},
                         {"notifications", posted},
                         {"menu", json_menu(cleaner)},
                         {"groups", json_groups(cleaner)}};
    context.out << json_line(json_answer(context.layout(), result));
    return status;
  }
  print_smart_scan(context, cleaner, all_groups());
  constexpr NextStep steps[] = {{"Remove all of it", "clean"},
                                {"Remove some groups", "clean caches logs"},
                                {"List what would go", "clean --dry-run"}};
  if (!select_groups(cleaner, all_groups()).files.empty()) print_next_steps(context, steps);
  return status;
}

}  // namespace tarnby::cli
