#include "cli/byte_size.h"
#include "cli/commands.h"
#include "cli/json.h"
#include "cli/labels.h"
#include "cli/look_problems.h"
#include "cli/progress.h"
#include "cli/table.h"
#include "engine/cleaner.h"
#include "engine/entry_text.h"
#include "files/bytes.h"

namespace tarnby::cli {

namespace {

/// No less than what counts as large at all.
std::int64_t least_bytes(const Context& context) {
  const auto& typed = context.asked.at_least;
  if (!typed) return 0;
  if (const auto bytes = byte_size(*typed)) return *bytes;
  throw CommandError(wrong_usage, "--at-least takes a size such as 500MB or 1.5GB, not \"" + one_line(*typed) + "\"");
}

LargeFileSelection found_files(Context& context, Cleaner& cleaner, std::int64_t least) {
  Progress progress(context);
  progress.show("Search for large files…");
  LargeFileSelection found;
  cleaner.search_large_files_with_complete_handler(
      [&](const LargeFileRows& /*rows*/, const LargeFileList& files, std::int64_t /*total*/) {
        found = large_files_of_at_least(least, files);
      });
  return found;
}

Json json_files(const LargeFileList& files) {
  Json list = Json::array();
  for (const auto& file : files) {
    list.push_back({{"name", json_text(file->name)},
                    {"path", json_text(file->url_file.path())},
                    {"size", file->size},
                    {"type", file->type}});
  }
  return list;
}

void print_json(Context& context, const Cleaner& cleaner, const LargeFileSelection& found) {
  Json groups = Json::array();
  for (const auto& row : found.rows) groups.push_back({{"label", row->label}, {"items", json_files(row->items)}});
  const Json result = {{"total", found.total},
                       {"groups", std::move(groups)},
                       {"files", json_files(found.files)},
                       {"problem", json_problem(cleaner.problem_of("LargeFiles"))}};
  context.out << json_line(json_answer(context.layout(), result));
}

void print_table(Context& context, const Cleaner& cleaner, const LargeFileSelection& found) {
  const Text& text = context.text();
  Table table({Table::Align::left, Table::Align::right}, window_columns());
  for (const auto& row : found.rows) {
    std::int64_t bytes = 0;
    for (const auto& file : row->items) bytes = add_bytes(bytes, file->size);
    table.heading({"  " + row->label, text.byte_count(bytes)});
    const std::size_t shown = rows_shown(context, row->items.size());
    for (std::size_t at = 0; at < shown; ++at) {
      const LargeFile& file = *row->items[at];
      const std::string folder = one_line(short_path(file.url_file.parent(), cleaner.url_home));
      table.line({"    " + one_line(file.name) + "  in " + folder, text.byte_count(file.size)});
    }
    if (shown < row->items.size()) table.line({"    " + more_rows_text(row->items.size() - shown)});
  }
  if (!found.rows.empty()) table.blank();
  if (const auto problem = cleaner.problem_of("LargeFiles")) table.line({problem_text(*problem)});
  table.heading({found.rows.empty() ? "No large files were found" : "Found in all", text.byte_count(found.total)});
  table.print(context.out);
}

}  // namespace

ExitStatus run_large(Context& context) {
  const std::int64_t least = least_bytes(context);
  need_home(context);
  Cleaner& cleaner = Cleaner::sharedCleaner();
  const LargeFileSelection found = found_files(context, cleaner, least);
  if (context.asked.json) {
    print_json(context, cleaner, found);
  } else {
    print_table(context, cleaner, found);
  }
  return status_of_look(cleaner.problem_of("LargeFiles"));
}

}  // namespace tarnby::cli
