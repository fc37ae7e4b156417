#include "cli/junk_scan_table.h"

#include "cli/labels.h"
#include "cli/look_problems.h"
#include "cli/table.h"
#include "engine/entry_text.h"
#include "engine/smart_selection.h"

namespace tarnby::cli {

namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows rows_of_clients(const Text& text, const Cleaner& cleaner, std::span<const ClientRow> clients) {
  Rows rows;
  for (const ClientRow& row : clients) {
    const auto& client = cleaner.*row.item;
    if (client && !client->files.empty())
      rows.push_back({std::string("    ") + row.name, text.byte_count(client->size)});
  }
  return rows;
}

Rows rows_of_files(const Context& context, const Cleaner& cleaner, const CleanerItem& item) {
  Rows rows;
  const std::size_t shown = rows_shown(context, item.files.size());
  for (std::size_t at = 0; at < shown; ++at)
    rows.push_back({"    " + one_line(short_path(item.files[at], cleaner.url_home))});
  if (shown < item.files.size()) rows.push_back({"    " + more_rows_text(item.files.size() - shown)});
  return rows;
}

/// The rows of a Linux home that a removal run takes.
Rows rows_of_offers(const Context& context, const CleanerItem& item) {
  Rows rows;
  const std::size_t shown = rows_shown(context, item.items.size());
  for (std::size_t at = 0; at < shown; ++at) {
    const CleanerEntry& entry = item.items[at];
    rows.push_back({"    " + one_line(label_of(entry)), context.text().byte_count(size_of(entry))});
  }
  if (shown < item.items.size()) rows.push_back({"    " + more_rows_text(item.items.size() - shown)});
  return rows;
}

Rows rows_of(const Context& context, const Cleaner& cleaner, const Category& category) {
  const CleanerItem& item = *(cleaner.*category.item);
  if (cleaner.layout() == HomeKind::linux_desktop) return rows_of_offers(context, item);
  return category.clients ? rows_of_clients(context.text(), cleaner, category.clients())
                          : rows_of_files(context, cleaner, item);
}

}  // namespace

void print_junk_scan(Context& context, const Cleaner& cleaner, std::span<const Category> categories) {
  const Text& text = context.text();
  Table table({Table::Align::left, Table::Align::right}, window_columns());
  std::vector<CleanerEntry> shown;
  for (const Category& category : categories) {
    const CleanerItem& item = *(cleaner.*category.item);
    shown.emplace_back(cleaner.*category.item);
    const Rows rows = rows_of(context, cleaner, category);
    const auto problem = cleaner.problem_of(category.setting);
    // Of a Linux home there may be more, which a person has to choose, so nothing is called clean.
    if (cleaner.layout() == HomeKind::linux_desktop && rows.empty() && !problem) continue;
    table.heading({"  " + std::string(category.label) + "  [" + std::string(category.setting) + "]", item.string_size});
    if (problem) {
      table.line({"    " + problem_text(*problem)});
    } else if (rows.empty()) {
      table.line({"    everything is clean"});
    }
    for (const auto& row : rows) table.line(row);
  }
  table.blank();
  const bool is_all = categories.size() == junk_categories().size();
  table.heading(
      {is_all ? "Found in all" : "Found in these categories", text.byte_count(cleaner.junk_amount->amount(shown))});
  table.print(context.out);
}

}  // namespace tarnby::cli
