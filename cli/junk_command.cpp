#include <algorithm>

#include "cli/advice.h"
#include "cli/commands.h"
#include "cli/json.h"
#include "cli/junk_scan_table.h"
#include "cli/look_problems.h"
#include "cli/progress.h"
#include "cli/removal_flow.h"
#include "files/bytes.h"

namespace tarnby::cli {

namespace {

void run_junk_scan(Context& context, Cleaner& cleaner) {
  Progress progress(context);
  progress.show("Scan in progress…");
  cleaner.clean_with_complete_handler([] {});
}

Json json_categories(const Cleaner& cleaner) {
  Json categories = Json::array();
  for (const Category& category : junk_categories()) {
    const CleanerItem& item = *(cleaner.*category.item);
    categories.push_back({{"key", category.setting},
                          {"size", item.size},
                          {"string_size", json_text(item.string_size)},
                          {"paths", json_paths(item.files)},
                          {"problem", json_problem(cleaner.problem_of(category.setting))}});
  }
  return categories;
}

Json json_clients(const Cleaner& cleaner) {
  Json clients = Json::array();
  for (const Category& category : junk_categories()) {
    if (category.clients == nullptr) continue;
    for (const ClientRow& row : category.clients()) {
      const auto& client = cleaner.*row.item;
      if (!client) continue;
      clients.push_back({{"type", row.type}, {"size", client->size}, {"paths", json_paths(client->files)}});
    }
  }
  return clients;
}

std::vector<std::string_view> all_category_names() {
  std::vector<std::string_view> names;
  for (const Category& category : junk_categories()) names.push_back(category.setting);
  return names;
}

/// Somebody may have switched a category off, and its default is on.
void need_settings(const Context& context) {
  if (context.settings().store().is_readable()) return;
  throw CommandError(no_access, "the settings, which say what to remove, cannot be read in " +
                                    one_line(context.session().settings_folder.path()) +
                                    "; mend them or name the categories");
}

/// With categories named, exactly those are on for this run; otherwise the settings decide.
void switch_categories(Context& context, std::span<const std::string_view> named) {
  if (named.empty()) return need_settings(context);
  for (const Category& category : cleanup_categories()) {
    const bool is_named = std::find(named.begin(), named.end(), category.setting) != named.end();
    context.run_settings.set_for_this_run(category.setting, is_named);
  }
}

std::vector<Category> switched_on(const Context& context) {
  std::vector<Category> categories;
  for (const Category& category : junk_categories()) {
    if (context.settings().boolean(category.setting)) categories.push_back(category);
  }
  return categories;
}

}  // namespace

ExitStatus run_junk(Context& context) {
  need_scan_folders(context);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  run_junk_scan(context, cleaner);
  const ExitStatus status = status_of_looks(cleaner, all_category_names());
  if (context.asked.json) {
    const Json result = {{"apps_junk_size", cleaner.apps_junk_size},
                         {"media_junk_size", cleaner.media_junk_size},
                         {"be_cleaned", cleaner.beCleaned()},
                         {"categories", json_categories(cleaner)},
                         {"clients", json_clients(cleaner)}};
    context.out << json_line(json_answer(context.layout(), result));
    return status;
  }
  print_junk_scan(context, cleaner, junk_categories());
  constexpr NextStep steps[] = {{"Remove what the settings say", "cleanup"},
                                {"Remove some categories", "cleanup Caches Logs"},
                                {"List what would go", "cleanup --dry-run"}};
  if (cleaner.cleanup_amount() > 0) print_next_steps(context, steps);
  return status;
}

ExitStatus run_cleanup(Context& context) {
  const auto named = named_among(context, all_category_names(), "category");
  need_scan_folders(context);
  need_somebody_to_ask(context);
  switch_categories(context, named);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  run_junk_scan(context, cleaner);
  const std::vector<Category> categories = switched_on(context);
  std::vector<std::string_view> names;
  names.reserve(categories.size());
  for (const Category& category : categories) names.push_back(category.setting);
  tell_problems(context, cleaner, names);
  ChosenRemoval chosen;
  chosen.files = cleaner.cleanup_files();
  for (const Category& category : categories) {
    if (!cleaner.is_switched_on(category)) continue;
    const CleanerItem& item = *(cleaner.*category.item);
    chosen.parts.push_back({item.files, item.size});
    chosen.bytes = add_bytes(chosen.bytes, item.size);
  }
  chosen.amount = cleaner.cleanup_amount();
  chosen.print = [&] { print_junk_scan(context, cleaner, categories); };
  chosen.remove = [&](const RemovalOptions& options) {
    CleanupReport report;
    report.options = options;
    cleaner.cleanup_with_complete_handler([] {}, &report);
    return std::move(report.removals);
  };
  chosen.is_dated = true;
  return status_after_looks(carry_out(context, cleaner, chosen), cleaner, names);
}

}  // namespace tarnby::cli
