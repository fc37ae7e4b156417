#include <algorithm>
#include <unordered_set>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/removal_report.h"
#include "cli/smart_scan_run.h"
#include "cli/smart_scan_table.h"
#include "engine/lifetime_total.h"
#include "engine/smart_selection.h"
#include "platform/bytes.h"

namespace tarnby::cli {

namespace {

std::vector<std::string_view> named_groups(const Context& context) {
  std::vector<std::string_view> all;
  for (const SmartCategory& category : smart_categories()) all.push_back(category.type);
  const auto& named = context.asked.arguments;
  for (const std::string& name : named) {
    if (std::find(all.begin(), all.end(), name) != all.end()) continue;
    std::string line = "there is no group \"" + one_line(name) + "\"; the groups are";
    for (const std::string_view group : all) line += " " + std::string(group);
    throw CommandError(wrong_usage, line);
  }
  return named.empty() ? all : std::vector<std::string_view>(named.begin(), named.end());
}

/// The chosen bytes less those of paths that would stay.
std::int64_t bytes_to_go(Context& context, const SmartSelection& selection, const RemovalPreview& preview) {
  return selection.bytes - context.platform.measurer.overall_size_of_files(preview.refused);
}

ExitStatus show_preview(Context& context, const SmartSelection& selection) {
  const RemovalPreview preview = preview_removal(context, selection.files);
  const std::int64_t bytes = bytes_to_go(context, selection, preview);
  if (context.asked.json) {
    const Json result = {{"would_remove", json_paths(preview.would_remove)}, {"was_cleaned", bytes}};
    context.out << result.dump() << '\n';
    return done;
  }
  for (const Url& url : preview.would_remove) context.out << one_line(url.path()) << '\n';
  context.out << "Would remove " << preview.would_remove.size() << " entries, "
              << context.platform.text.byte_count(bytes) << ". Nothing was removed.\n";
  return done;
}

/// After an interrupt only the rows that went as a whole count.
std::int64_t bytes_of_rows_gone(const Cleaner& cleaner, std::span<const std::string_view> groups,
                                const RemovalReport& report) {
  std::unordered_set<Url> gone(report.removed.begin(), report.removed.end());
  std::int64_t bytes = 0;
  for (const SmartCategory& category : smart_categories()) {
    if (std::find(groups.begin(), groups.end(), category.type) == groups.end()) continue;
    for (const CleanerEntry& entry : (cleaner.*category.item)->items) {
      const auto urls = locations_of(entry);
      if (std::all_of(urls.begin(), urls.end(), [&](const Url& url) { return gone.contains(url); })) {
        bytes = add_bytes(bytes, size_of(entry));
      }
    }
  }
  return bytes;
}

void show_result(Context& context, const RemovalReport& report, std::int64_t was_cleaned, std::int64_t total) {
  if (context.asked.json) {
    std::vector<Url> left;
    for (const auto& entry : report.left) left.push_back(entry.url);
    const Json result = {{"removed", json_paths(report.removed)},
                         {"left", json_paths(left)},
                         {"was_cleaned", was_cleaned},
                         {"totally_cleaned", total}};
    context.out << result.dump() << '\n';
    return;
  }
  print_removal(context, report);
  const Text& text = context.platform.text;
  context.out << text.byte_count(was_cleaned) << " was cleaned, " << text.byte_count(total) << " so far.\n";
}

}  // namespace

ExitStatus run_clean(Context& context) {
  const auto groups = named_groups(context);
  need_folders(context);
  need_somebody_to_ask(context);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  run_smart_scan(context, cleaner);
  const SmartSelection selection = select_groups(cleaner, groups);
  if (context.asked.dry_run) return show_preview(context, selection);
  if (!context.asked.yes && !context.asked.json) print_smart_scan(context, cleaner);
  cleaner.files = selection.files;
  cleaner.wasCleaned = selection.bytes;
  const std::string question = "Remove " + std::to_string(selection.files.size()) + " entries with " +
                               context.platform.text.byte_count(selection.bytes) + " for good";
  if (!user_agrees(context, question)) {
    context.err << "Nothing was removed.\n";
    return done;
  }
  const RemovalReport report =
      run_removal(context, cleaner.files, [&](const std::atomic<bool>* stop) { return cleaner.remove_files(stop); });
  if (report.was_interrupted) cleaner.wasCleaned = bytes_of_rows_gone(cleaner, groups, report);
  const std::int64_t total = add_to_lifetime_total(context.platform.app_settings, cleaner.wasCleaned);
  show_result(context, report, cleaner.wasCleaned, total);
  return status_of_removal(report);
}

}  // namespace tarnby::cli
