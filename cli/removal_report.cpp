#include "cli/removal_report.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "cli/progress.h"
#include "files/bytes.h"
#include "files/free_space.h"

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

std::optional<std::int64_t> free_space(const Context& context) {
  const Url home = context.bookmarks().resolve_and_access(Grant::home);
  return free_bytes(context.files().granted(), home);
}

std::string line_of(const LeftEntry& entry) {
  return one_line(entry.url.path()) + ": " + left_reason_text(entry.reason) + "\n";
}

void print_staying(Context& context, const RemovalPreview& preview, std::string_view word) {
  for (const LeftEntry& entry : preview.staying) context.out << word << line_of(entry);
}

void add_left(Json& result, std::span<const LeftEntry> left) {
  Json paths = Json::array();
  Json reasons = Json::array();
  for (const LeftEntry& entry : left) {
    paths.push_back(json_text(entry.url.path()));
    reasons.push_back(left_reason_text(entry.reason));
  }
  result["left"] = std::move(paths);
  result["left_reasons"] = std::move(reasons);
}

/// Which of the listed entries that are gone this run itself took.
class OwnRemovals {
 public:
  OwnRemovals(std::span<const Url> urls, std::span<const Removal> removals) {
    for (std::size_t at = 0; at < urls.size(); ++at) {
      if (removals[at].taken) taken_.insert(urls[at]);
      if (removals[at].taken || removals[at].error) entered_.insert(urls[at]);
    }
  }

  bool took(const Url& url) const { return taken_.contains(url) || went_with_another(url); }

 private:
  /// It lies inside one that went, or went in part, and was gone when its own turn came.
  bool went_with_another(const Url& url) const {
    for (Url around = url.parent(); around.path() != "/"; around = around.parent()) {
      if (entered_.contains(around)) return true;
    }
    return false;
  }

  std::unordered_set<Url> taken_;
  std::unordered_set<Url> entered_;
};

bool user_agrees(Context& context, const std::string& what) {
  context.err << what << "? It does not go to the Trash. [y/N] " << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) context.err << '\n';  // at the end of input the prompt's line is still open
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
  const FileManager& files = context.files();
  std::vector<Url> listed;
  for (const std::size_t at : existing_once(files, urls)) listed.push_back(urls[at]);
  RemovalPreview preview;
  preview.staying = known_to_stay(files, listed);
  std::unordered_set<Url> staying;
  for (const LeftEntry& entry : preview.staying) staying.insert(entry.url);
  std::ranges::remove_copy_if(listed, std::back_inserter(preview.would_remove),
                              [&](const Url& url) { return staying.contains(url); });
  return preview;
}

std::int64_t bytes_staying(Context& context, const RemovalPreview& preview, bool with_refused) {
  std::vector<Url> urls;
  for (const LeftEntry& entry : preview.staying) {
    if (with_refused || entry.reason == LeftReason::other_disk) urls.push_back(entry.url);
  }
  return context.measurer().overall_size_of_files(outermost_of(urls));
}

void print_preview(Context& context, const RemovalPreview& preview, const PreviewBytes& bytes) {
  if (context.asked.json) {
    Json result = {{"would_remove", json_paths(preview.would_remove)}, {"was_cleaned", bytes.counted}};
    result["would_free"] = bytes.would_free;
    add_left(result, preview.staying);
    context.out << json_line(json_answer(context.layout(), result));
    return;
  }
  for (const Url& url : preview.would_remove) context.out << one_line(url.path()) << '\n';
  print_staying(context, preview, "Would stay: ");
  context.out << "Would remove " << entries_text(preview.would_remove.size()) << ", "
              << context.text().byte_count(bytes.would_free) << ". Nothing was removed.\n";
}

bool removal_is_agreed(Context& context, const RemovalPreview& preview, std::int64_t bytes,
                       const std::function<void()>& show) {
  if (context.asked.yes) return true;
  if (!context.asked.json) {
    show();
    print_staying(context, preview, "Stays: ");
  }
  if (preview.would_remove.empty()) return true;
  if (!context.asked.json) context.out << '\n';
  if (user_agrees(context, "Remove " + entries_text(preview.would_remove.size()) + ", " +
                               context.text().byte_count(bytes) + ", for good")) {
    return true;
  }
  context.err << "Nothing was removed.\n";
  return false;
}

RemovalReport declined_removal(Context& context, const RemovalPreview& preview) {
  RemovalReport report;
  report.free_before = report.free_after = free_space(context);
  for (const Url& url : preview.would_remove) report.left.push_back({url, LeftReason::not_attempted});
  for (const LeftEntry& entry : preview.staying) {
    const bool is_listed =
        std::ranges::none_of(preview.would_remove, [&](const Url& listed) { return entry.url.is_within(listed); });
    if (is_listed) report.left.push_back(entry);
  }
  return report;
}

RemovalReport run_removal(Context& context, std::span<const Url> urls, const StopOnInterrupt& stop,
                          const RemoveListed& remove) {
  const FileManager& files = context.files();
  const std::vector<std::size_t> places = existing_once(files, urls);
  RemovalReport report;
  report.free_before = free_space(context);
  {
    Progress progress(context);
    progress.show("Removing " + entries_text(places.size()));
    report.removals = remove(stop.options());
  }
  report.free_after = free_space(context);
  report.was_interrupted = stop.asked();
  report.left = left_of(files, urls, report.removals);
  const OwnRemovals own(urls, report.removals);
  std::unordered_map<Url, LeftReason> left;
  for (const LeftEntry& entry : std::exchange(report.left, {})) left.emplace(entry.url, entry.reason);
  for (const std::size_t at : places) {
    if (const auto stays = left.find(urls[at]); stays != left.end()) {
      report.left.push_back({stays->first, stays->second});
    } else if (own.took(urls[at])) {
      report.removed.push_back(urls[at]);
    } else {
      ++report.taken_by_others;
    }
  }
  return report;
}

void print_removal(Context& context, const RemovalReport& report) {
  context.out << "Removed " << entries_text(report.removed.size()) << ".\n";
  if (report.was_interrupted) context.out << "Interrupted before the end.\n";
  if (report.taken_by_others > 0) {
    context.out << "Somebody else removed " << entries_text(report.taken_by_others) << " meanwhile.\n";
  }
  if (report.left.empty()) return;
  context.out << "Left " << entries_text(report.left.size()) << ":\n";
  for (const LeftEntry& entry : report.left) context.out << "  " << line_of(entry);
}

Json json_removal(const RemovalReport& report) {
  Json result = {{"removed", json_paths(report.removed)}};
  add_left(result, report.left);
  std::int64_t freed = 0;
  for (const Removal& removal : report.removals) freed = add_bytes(freed, removal.bytes);
  result["freed"] = freed;
  result["free_before"] = report.free_before ? Json(*report.free_before) : Json();
  result["free_after"] = report.free_after ? Json(*report.free_after) : Json();
  return result;
}

ExitStatus status_of_removal(const RemovalReport& report) {
  if (report.was_interrupted) return interrupted;
  return report.left.empty() ? done : left_something;
}

std::string entries_text(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

}  // namespace tarnby::cli
