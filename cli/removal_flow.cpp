#include "cli/removal_flow.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "cli/json.h"
#include "cli/setting_values.h"
#include "engine/lifetime_total.h"
#include "files/bytes.h"
#include "platform/platform.h"

namespace tarnby::cli {

namespace {

/// The bytes of a part less those of its files that stay.
std::int64_t bytes_without(Context& context, const ChosenPart& part, const std::unordered_set<Url>& staying) {
  std::vector<Url> here = part.files;
  std::erase_if(here, [&](const Url& url) { return !staying.contains(url); });
  if (here.empty()) return part.bytes;
  if (here.size() == part.files.size()) return 0;
  return std::max<std::int64_t>(0, part.bytes - context.measurer().overall_size_of_files(here));
}

std::int64_t bytes_without(Context& context, const ChosenRemoval& chosen, const std::unordered_set<Url>& staying) {
  if (staying.empty()) return chosen.bytes;
  std::int64_t bytes = 0;
  for (const ChosenPart& part : chosen.parts) bytes = add_bytes(bytes, bytes_without(context, part, staying));
  return bytes;
}

/// What one run has cleaned, in bytes.
struct CleanedAmounts {
  /// As the engine counts, less what an interrupt left.
  std::int64_t counted = 0;
  /// What this run took and what is not there any more: what people read.
  std::int64_t amount = 0;
  std::int64_t total = 0;
  bool is_total_saved = true;
  bool is_date_saved = true;
};

void print_json(Context& context, const ChosenRemoval& chosen, const RemovalReport& report,
                const CleanedAmounts& cleaned) {
  Json result = json_removal(report);
  result["was_cleaned"] = cleaned.counted;
  result["totally_cleaned"] = cleaned.total;
  if (chosen.is_dated) {
    const auto date = context.platform.group_settings.value("Date");
    result["date"] = date ? json_setting(*date) : Json();
  }
  context.out << json_line(json_answer(context.layout(), result));
}

void print_amount(Context& context, const CleanedAmounts& cleaned) {
  const Text& text = context.text();
  context.out << text.byte_count(cleaned.amount) << " cleaned";
  if (cleaned.is_total_saved) context.out << ", " << text.byte_count(cleaned.total) << " in all runs so far";
  context.out << ".\n";
}

/// May wait a few seconds for another program that holds the settings.
void add_to_total(Context& context, const ChosenRemoval& chosen, CleanedAmounts& cleaned) {
  cleaned.total = add_to_lifetime_total(context.settings(), cleaned.amount, &cleaned.is_total_saved);
  if (chosen.is_dated) cleaned.is_date_saved = context.platform.group_settings.synchronize();
}

void tell_what_is_not_saved(Context& context, const CleanedAmounts& cleaned) {
  context.out << std::flush;  // what was removed is told first
  const auto tell = [&](std::string_view what) {
    context.err << "tarnby-cleaner-cli: " << what << not_saved_text(context.session()) << '\n';
  };
  if (!cleaned.is_total_saved) tell("the total of all runs");
  if (!cleaned.is_date_saved) tell("the date of this run");
}

CleanedAmounts count_cleaned(Context& context, Cleaner& cleaner, const ChosenRemoval& chosen,
                             const RemovalReport& report) {
  CleanedAmounts cleaned;
  cleaned.counted = std::exchange(cleaner.wasCleaned, 0);
  cleaned.amount = cleaned_amount(cleaner.layout(), cleaned.counted, context.measurer(), report.left, report.removals);
  if (!report.was_interrupted) return cleaned;
  std::unordered_set<Url> left;
  for (const LeftEntry& entry : report.left) left.insert(entry.url);
  cleaned.counted = bytes_without(context, chosen, left);
  return cleaned;
}

ExitStatus remove_chosen(Context& context, Cleaner& cleaner, const ChosenRemoval& chosen) {
  // Kept until all is told and counted: an interrupt must not lose what was removed.
  const StopOnInterrupt stop;
  const RemovalReport report = run_removal(context, chosen.files, stop, chosen.remove);
  CleanedAmounts cleaned = count_cleaned(context, cleaner, chosen, report);
  if (context.asked.json) {
    add_to_total(context, chosen, cleaned);
    print_json(context, chosen, report, cleaned);
  } else {
    print_removal(context, report);
    context.out << std::flush;
    add_to_total(context, chosen, cleaned);
    print_amount(context, cleaned);
  }
  tell_what_is_not_saved(context, cleaned);
  return status_of_removal(report);
}

std::int64_t bytes_without_refused(Context& context, const ChosenRemoval& chosen, const RemovalPreview& preview) {
  std::unordered_set<Url> refused;
  for (const LeftEntry& entry : preview.staying) {
    if (entry.reason != LeftReason::other_disk) refused.insert(entry.url);
  }
  return bytes_without(context, chosen, refused);
}

}  // namespace

std::vector<std::string_view> named_among(const Context& context, std::span<const std::string_view> all,
                                          std::string_view noun) {
  const auto& named = context.asked.arguments;
  for (const std::string& name : named) {
    if (std::find(all.begin(), all.end(), name) != all.end()) continue;
    const std::string called(noun);
    std::string line = "there is no " + called + " \"" + one_line(name) + "\"; the names are";
    for (const std::string_view one : all) line += " " + std::string(one);
    throw CommandError(wrong_usage, line);
  }
  std::vector<std::string_view> chosen;
  for (const std::string_view one : all) {
    if (std::find(named.begin(), named.end(), one) != named.end()) chosen.push_back(one);
  }
  return chosen;
}

ExitStatus carry_out(Context& context, Cleaner& cleaner, const ChosenRemoval& chosen) {
  const RemovalPreview preview = preview_removal(context, chosen.files);
  const std::int64_t amount = std::max<std::int64_t>(0, chosen.amount - bytes_staying(context, preview, true));
  if (context.asked.dry_run) {
    print_preview(context, preview, {bytes_without_refused(context, chosen, preview), amount});
    return done;
  }
  if (!removal_is_agreed(context, preview, amount, chosen.print)) {
    if (!context.asked.json) return done;
    CleanedAmounts nothing;
    nothing.total = context.settings().integer("TotallyCleaned");
    print_json(context, chosen, declined_removal(context, preview), nothing);
    return done;
  }
  return remove_chosen(context, cleaner, chosen);
}

}  // namespace tarnby::cli
