#include "cli/smart_scan_table.h"

#include <algorithm>
#include <map>

#include "cli/labels.h"
#include "cli/look_problems.h"
#include "cli/table.h"
#include "engine/entry_text.h"
#include "engine/smart_selection.h"
#include "files/bytes.h"

namespace tarnby::cli {

namespace {

/// The engine's own total of a group also holds what earlier scans found.
std::int64_t sum_of(std::span<const CleanerEntry> entries) {
  std::int64_t sum = 0;
  for (const CleanerEntry& entry : entries) sum = add_bytes(sum, size_of(entry));
  return sum;
}

/// What a person should know of a row before it goes; empty in a home of the macOS kind.
std::string note_of(const CleanerEntry& entry) {
  const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry);
  if (!offered) return {};
  const OfferedItem& item = **offered;
  if (item.running == Running::yes) return "stays: " + one_line(item.offer.owner.name) + " is running";
  if (item.running == Running::unknown) {
    return "stays: nobody can tell whether " + one_line(item.offer.owner.name) + " is running";
  }
  if (!item.starts_ticked()) return item.offer.grade == Grade::may_lose ? "may lose something" : "for you to choose";
  return item.offer.grade == Grade::costs_time ? "costs time" : "";
}

/// One group on its way into the table.
class GroupLines {
 public:
  GroupLines(const Text& text, const Url& home, const CleanerItem& item, Table& table)
      : text_(text), home_(home), items_(item.items), table_(table) {
    for (const CleanerEntry& entry : items_) ++times_[one_line(label_of(entry))];
  }

  void add(std::size_t shown) {
    for (std::size_t at = 0; at < shown; ++at) line(label(items_[at]), size_of(items_[at]), note_of(items_[at]));
    if (shown == items_.size()) return;
    line(more_rows_text(items_.size() - shown), sum_of(std::span(items_).subspan(shown)));
  }

 private:
  void line(const std::string& label, std::int64_t size, const std::string& note = {}) {
    std::vector<std::string> cells = {"    " + label, text_.byte_count(size)};
    if (!note.empty()) cells.push_back(note);
    table_.line(std::move(cells));
  }

  /// Where it lies tells entries of the same name apart.
  std::string label(const CleanerEntry& entry) const {
    std::string label = one_line(label_of(entry));
    if (times_.at(label) > 1) label += "  in " + one_line(place_of(entry, home_));
    return label;
  }

  const Text& text_;
  const Url& home_;
  const std::vector<CleanerEntry>& items_;
  std::map<std::string, int> times_;
  Table& table_;
};

/// A Linux home need not have anything of a category, and then says nothing of it.
bool is_hidden(const Cleaner& cleaner, const Category& category) {
  return cleaner.layout() == HomeKind::linux_desktop && (cleaner.*category.item)->items.empty() &&
         !cleaner.problem_of(category.type);
}

bool is_among(std::span<const std::string_view> groups, std::string_view type) {
  return std::find(groups.begin(), groups.end(), type) != groups.end();
}

}  // namespace

std::vector<std::string_view> all_groups() {
  std::vector<std::string_view> types;
  for (const Category& category : smart_categories()) types.push_back(category.type);
  return types;
}

void print_smart_scan(Context& context, const Cleaner& cleaner, std::span<const std::string_view> groups) {
  const Text& text = context.text();
  Table table({Table::Align::left, Table::Align::right, Table::Align::left}, window_columns());
  std::string_view header;
  bool is_first = true;
  for (const Category& category : smart_categories()) {
    if (!category.smart.header.empty()) header = category.smart.header;
    if (!is_among(groups, category.type) || is_hidden(cleaner, category)) continue;
    if (!header.empty()) {
      if (!is_first) table.blank();
      table.line({std::string(std::exchange(header, {}))});
    }
    is_first = false;
    const SmartOutlineItem& group = *(cleaner.*category.smart.outline);
    const CleanerItem& item = *(cleaner.*category.item);
    table.heading({"  " + group.label + "  [" + group.type + "]", text.byte_count(sum_of(item.items))});
    if (const auto problem = cleaner.problem_of(category.type)) {
      table.line({"    " + problem_text(*problem)});
    } else if (item.items.empty()) {
      table.line({"    everything is clean"});
    }
    GroupLines(text, cleaner.url_home, item, table).add(rows_shown(context, item.items.size()));
  }
  table.blank();
  const std::int64_t bytes = cleaner.smart_amount->amount(select_groups(cleaner, groups, RowsTaken::listed).entries);
  table.heading(
      {groups.size() == all_groups().size() ? "Found in all" : "Found in these groups", text.byte_count(bytes)});
  table.print(context.out);
}

}  // namespace tarnby::cli
