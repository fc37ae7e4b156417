#include "cli/cleaning.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "cli/json.h"
#include "cli/setting_values.h"
#include "engine/lifetime_total.h"
#include "platform/bytes.h"

namespace tarnby::cli {

namespace {

/// The bytes of a part less those of its files that stay.
std::int64_t bytes_without(Context& context, const CleaningPart& part, const std::unordered_set<Url>& staying) {
  std::vector<Url> here = part.files;
  std::erase_if(here, [&](const Url& url) { return !staying.contains(url); });
  if (here.empty()) return part.bytes;
  if (here.size() == part.files.size()) return 0;
  return std::max<std::int64_t>(0, part.bytes - context.platform.measurer.overall_size_of_files(here));
}

std::int64_t bytes_without(Context& context, const Cleaning& cleaning, const std::unordered_set<Url>& staying) {
  if (staying.empty()) return cleaning.bytes;
  std::int64_t bytes = 0;
  for (const CleaningPart& part : cleaning.parts) bytes = add_bytes(bytes, bytes_without(context, part, staying));
  return bytes;
}

void show_result(Context& context, const Cleaning& cleaning, const RemovalReport& report, std::int64_t was_cleaned,
                 std::int64_t total) {
  if (!context.asked.json) {
    print_removal(context, report);
    const Text& text = context.platform.text;
    context.out << text.byte_count(was_cleaned) << " cleaned, " << text.byte_count(total) << " in all runs so far.\n";
    return;
  }
  Json result = json_removal(report);
  result["was_cleaned"] = was_cleaned;
  result["totally_cleaned"] = total;
  if (cleaning.is_dated) {
    const auto date = context.platform.group_settings.value("Date");
    result["date"] = date ? json_setting(*date) : Json();
  }
  context.out << json_line(result);
}

void need_saved(Context& context, SettingsStore& store, std::string_view what) {
  if (store.synchronize()) return;
  context.err << "tarnby-cleaner-cli: " << what << not_saved_text(context.platform.session) << '\n';
}

std::int64_t count_cleaned(Context& context, const Cleaning& cleaning, std::int64_t was_cleaned) {
  AppSettings& settings = context.platform.app_settings;
  const std::int64_t total = add_to_lifetime_total(settings, was_cleaned);
  need_saved(context, settings.store(), "the total of all runs");
  if (cleaning.is_dated) need_saved(context, context.platform.group_settings, "the date of this run");
  return total;
}

ExitStatus remove_chosen(Context& context, const Cleaner& cleaner, const Cleaning& cleaning) {
  RemovalReport report;
  std::int64_t was_cleaned = 0;
  std::int64_t total = 0;
  {
    // Kept until the bytes are counted: an interrupt must not lose what was removed.
    const StopOnInterrupt stop;
    report = run_removal(context, cleaning.files, stop, cleaning.remove);
    was_cleaned = cleaner.wasCleaned;
    if (report.was_interrupted) {
      std::unordered_set<Url> left;
      for (const auto& entry : report.left) left.insert(entry.url);
      was_cleaned = bytes_without(context, cleaning, left);
    }
    total = count_cleaned(context, cleaning, was_cleaned);
  }
  show_result(context, cleaning, report, was_cleaned, total);
  return status_of_removal(report);
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

ExitStatus carry_out(Context& context, const Cleaner& cleaner, const Cleaning& cleaning) {
  const RemovalPreview preview = preview_removal(context, cleaning.files);
  const std::unordered_set<Url> refused(preview.refused.begin(), preview.refused.end());
  const std::int64_t bytes = bytes_without(context, cleaning, refused);
  if (context.asked.dry_run) {
    print_preview(context, preview, bytes);
    return done;
  }
  if (!removal_is_agreed(context, preview, bytes, cleaning.print)) {
    const std::int64_t total = context.platform.app_settings.integer("TotallyCleaned");
    if (context.asked.json) show_result(context, cleaning, declined_removal(preview), 0, total);
    return done;
  }
  return remove_chosen(context, cleaner, cleaning);
}

}  // namespace tarnby::cli
