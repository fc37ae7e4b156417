#include "cli/removal_report.h"

#include <iostream>
#include <unordered_set>

#include "cli/progress.h"
#include "engine/why_left.h"

namespace tarnby::cli {

namespace {

/// Nothing is told of it, which need not mean that it is gone.
bool may_be_there(const Status& status) {
  return status.kind != EntryKind::none || is_failure(status.error);
}

/// The listed paths that exist, each once, with their places in the list.
std::vector<std::size_t> existing_once(const FileManager& files, std::span<const Url> urls) {
  const std::vector<Status> statuses = files.statuses(urls);
  std::unordered_set<Url> met;
  std::vector<std::size_t> places;
  for (std::size_t at = 0; at < urls.size(); ++at) {
    if (may_be_there(statuses[at]) && met.insert(urls[at]).second) places.push_back(at);
  }
  return places;
}

bool user_agrees(Context& context, const std::string& what) {
  context.err << what << "? It does not go to the Trash. [y/N] " << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) context.err << '\n';  // nobody has ended the line
  return answer == "y" || answer == "Y" || answer == "yes";
}

}  // namespace

void need_somebody_to_ask(const Context& context) {
  if (context.asked.yes || context.asked.dry_run || context.in_is_terminal) return;
  throw CommandError(
      wrong_usage,
      "nobody can be asked whether to remove; use --yes to remove without asking, or --dry-run to see what would go");
}

RemovalPreview preview_removal(Context& context, std::span<const Url> urls) {
  const FileManager& files = context.platform.files;
  const std::vector<bool> refused = files.refuses_to_remove(urls);
  RemovalPreview preview;
  for (const std::size_t at : existing_once(files, urls)) {
    (refused[at] ? preview.refused : preview.would_remove).push_back(urls[at]);
  }
  return preview;
}

void print_preview(Context& context, const RemovalPreview& preview, std::int64_t bytes) {
  if (context.asked.json) {
    const Json result = {{"would_remove", json_paths(preview.would_remove)}, {"was_cleaned", bytes}};
    context.out << json_line(result);
    return;
  }
  for (const Url& url : preview.would_remove) context.out << one_line(url.path()) << '\n';
  for (const Url& url : preview.refused) {
    context.out << "Would stay, for it is never removed whole: " << one_line(url.path()) << '\n';
  }
  context.out << "Would remove " << entries_text(preview.would_remove.size()) << ", "
              << context.platform.text.byte_count(bytes) << ". Nothing was removed.\n";
}

bool removal_is_agreed(Context& context, const RemovalPreview& preview, std::int64_t bytes,
                       const std::function<void()>& show) {
  if (context.asked.yes) return true;
  if (!context.asked.json) {
    show();
    for (const Url& url : preview.refused) {
      context.out << "Stays, for it is never removed whole: " << one_line(url.path()) << '\n';
    }
  }
  if (preview.would_remove.empty()) return true;
  if (!context.asked.json) context.out << '\n';
  if (user_agrees(context, "Remove " + entries_text(preview.would_remove.size()) + ", " +
                               context.platform.text.byte_count(bytes) + ", for good")) {
    return true;
  }
  context.err << "Nothing was removed.\n";
  return false;
}

RemovalReport declined_removal(const RemovalPreview& preview) {
  RemovalReport report;
  for (const auto* urls : {&preview.would_remove, &preview.refused}) {
    for (const Url& url : *urls) report.left.push_back({url, {}});
  }
  return report;
}

RemovalReport run_removal(Context& context, std::span<const Url> urls, const StopOnInterrupt& stop,
                          const RemoveListed& remove) {
  const FileManager& files = context.platform.files;
  const std::vector<std::size_t> places = existing_once(files, urls);
  const std::vector<bool> refused = files.refuses_to_remove(urls);
  Progress progress(context);
  progress.show("Removing " + entries_text(places.size()));
  const std::vector<Removal> removals = remove(stop.options());
  const std::vector<Status> after = files.statuses(urls);
  RemovalReport report;
  report.was_interrupted = stop.asked();
  for (const std::size_t at : places) {
    const bool is_said_to_be_gone = removals[at].attempted && !removals[at].error;
    if (after[at].kind != EntryKind::none || (may_be_there(after[at]) && !is_said_to_be_gone)) {
      report.left.push_back({urls[at], left_reason_text(why_left(removals[at], refused[at]))});
    } else {
      report.removed.push_back(urls[at]);
    }
  }
  return report;
}

void print_removal(Context& context, const RemovalReport& report) {
  context.out << "Removed " << entries_text(report.removed.size()) << ".\n";
  if (report.was_interrupted) context.out << "Interrupted before the end.\n";
  if (report.left.empty()) return;
  context.out << "Left " << entries_text(report.left.size()) << ":\n";
  for (const RemovalReport::Left& left : report.left) {
    context.out << "  " << one_line(left.url.path()) << ": " << left.why << '\n';
  }
}

Json json_removal(const RemovalReport& report) {
  std::vector<Url> left;
  for (const RemovalReport::Left& entry : report.left) left.push_back(entry.url);
  return {{"removed", json_paths(report.removed)}, {"left", json_paths(left)}};
}

ExitStatus status_of_removal(const RemovalReport& report) {
  if (report.was_interrupted) return interrupted;
  return report.left.empty() ? done : left_something;
}

std::string entries_text(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

}  // namespace tarnby::cli
