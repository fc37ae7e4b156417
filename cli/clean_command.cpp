#include <algorithm>
#include <unordered_set>

#include "cli/commands.h"
#include "cli/json.h"
#include "cli/removal_report.h"
#include "cli/setting_values.h"
#include "cli/smart_scan_run.h"
#include "cli/smart_scan_table.h"
#include "engine/lifetime_total.h"
#include "engine/smart_selection.h"
#include "platform/bytes.h"

namespace tarnby::cli {

namespace {

using Groups = std::vector<std::string_view>;

/// The groups that were asked for, each once, in their fixed order.
Groups named_groups(const Context& context) {
  Groups all = all_groups();
  const auto& named = context.asked.arguments;
  for (const std::string& name : named) {
    if (std::find(all.begin(), all.end(), name) != all.end()) continue;
    std::string line = "there is no group \"" + one_line(name) + "\"; the groups are";
    for (const std::string_view group : all) line += " " + std::string(group);
    throw CommandError(wrong_usage, line);
  }
  if (named.empty()) return all;
  Groups groups;
  for (const std::string_view group : all) {
    if (std::find(named.begin(), named.end(), group) != named.end()) groups.push_back(group);
  }
  return groups;
}

/// The bytes of a row less those of its locations that stay.
std::int64_t bytes_without(Context& context, const CleanerEntry& entry, const std::unordered_set<Url>& staying) {
  std::vector<Url> here = locations_of(entry);
  const std::size_t all = here.size();
  std::erase_if(here, [&](const Url& url) { return !staying.contains(url); });
  if (here.empty()) return size_of(entry);
  if (here.size() == all) return 0;
  return std::max<std::int64_t>(0, size_of(entry) - context.platform.measurer.overall_size_of_files(here));
}

/// The bytes of these groups less those of locations that stay.
std::int64_t bytes_without(Context& context, const Cleaner& cleaner, const Groups& groups,
                           const std::unordered_set<Url>& staying) {
  std::int64_t bytes = 0;
  for (const SmartCategory& category : smart_categories()) {
    if (std::find(groups.begin(), groups.end(), category.type) == groups.end()) continue;
    for (const CleanerEntry& entry : (cleaner.*category.item)->items) {
      bytes = add_bytes(bytes, bytes_without(context, entry, staying));
    }
  }
  return bytes;
}

ExitStatus show_preview(Context& context, const RemovalPreview& preview, std::int64_t bytes) {
  if (context.asked.json) {
    const Json result = {{"would_remove", json_paths(preview.would_remove)}, {"was_cleaned", bytes}};
    context.out << result.dump() << '\n';
    return done;
  }
  for (const Url& url : preview.would_remove) context.out << one_line(url.path()) << '\n';
  for (const Url& url : preview.refused) {
    context.out << "Would stay, for it is never removed whole: " << one_line(url.path()) << '\n';
  }
  context.out << "Would remove " << entries_text(preview.would_remove.size()) << ", "
              << context.platform.text.byte_count(bytes) << ". Nothing was removed.\n";
  return done;
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
  context.out << text.byte_count(was_cleaned) << " cleaned, " << text.byte_count(total) << " in all runs so far.\n";
}

/// Nothing was touched, as the user wished.
ExitStatus show_declined(Context& context, const RemovalPreview& preview) {
  context.err << "Nothing was removed.\n";
  if (!context.asked.json) return done;
  RemovalReport report;
  for (const auto* urls : {&preview.would_remove, &preview.refused}) {
    for (const Url& url : *urls) report.left.push_back({url, {}});
  }
  show_result(context, report, 0, context.platform.app_settings.integer("TotallyCleaned"));
  return done;
}

std::int64_t count_cleaned(Context& context, std::int64_t was_cleaned) {
  AppSettings& settings = context.platform.app_settings;
  const std::int64_t total = add_to_lifetime_total(settings, was_cleaned);
  if (!settings.synchronize()) {
    context.err << "tarnby-cleaner-cli: the total of all runs" << not_saved_text(context.platform.session) << '\n';
  }
  return total;
}

bool was_agreed_to(Context& context, const Cleaner& cleaner, const Groups& groups, const RemovalPreview& preview,
                   std::int64_t bytes) {
  if (context.asked.yes) return true;
  if (!context.asked.json) print_smart_scan(context, cleaner, groups);
  if (preview.would_remove.empty()) return true;  // nothing that anybody could agree to
  context.out << '\n';
  return user_agrees(context, "Remove " + entries_text(preview.would_remove.size()) + ", " +
                                  context.platform.text.byte_count(bytes) + ", for good");
}

ExitStatus remove_chosen(Context& context, Cleaner& cleaner, const Groups& groups) {
  RemovalReport report;
  std::int64_t total = 0;
  {
    // Kept until the bytes are counted: an interrupt must not lose what was removed.
    const StopOnInterrupt stop;
    report = run_removal(context, cleaner.files, stop,
                         [&](const std::atomic<bool>* stop_asked) { return cleaner.remove_files(stop_asked); });
    if (report.was_interrupted) {
      std::unordered_set<Url> left;
      for (const auto& entry : report.left) left.insert(entry.url);
      cleaner.wasCleaned = bytes_without(context, cleaner, groups, left);
    }
    total = count_cleaned(context, cleaner.wasCleaned);
  }
  show_result(context, report, cleaner.wasCleaned, total);
  return status_of_removal(report);
}

}  // namespace

ExitStatus run_clean(Context& context) {
  const Groups groups = named_groups(context);
  need_folders(context);
  need_somebody_to_ask(context);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  run_smart_scan(context, cleaner);
  SmartSelection selection = select_groups(cleaner, groups);
  const RemovalPreview preview = preview_removal(context, selection.files);
  const std::unordered_set<Url> refused(preview.refused.begin(), preview.refused.end());
  const std::int64_t bytes = refused.empty() ? selection.bytes : bytes_without(context, cleaner, groups, refused);
  if (context.asked.dry_run) return show_preview(context, preview, bytes);
  if (!was_agreed_to(context, cleaner, groups, preview, bytes)) return show_declined(context, preview);
  cleaner.files = std::move(selection.files);
  cleaner.wasCleaned = selection.bytes;
  return remove_chosen(context, cleaner, groups);
}

}  // namespace tarnby::cli
