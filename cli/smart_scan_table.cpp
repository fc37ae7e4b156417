#include "cli/smart_scan_table.h"

#include <algorithm>

#include "cli/table.h"
#include "engine/smart_selection.h"

namespace tarnby::cli {

namespace {

constexpr std::size_t rows_in_window = 12;

/// How people call a client; the engine knows it by its type.
struct ClientName {
  std::string_view type;
  std::string_view name;
};

constexpr ClientName client_names[] = {{"chrome", "Google Chrome"}, {"mozilla", "Firefox"}, {"safari", "Safari"},
                                       {"apple-mail", "Mail"},      {"airmail", "Airmail"}, {"spark", "Spark"}};

struct ReadableLabel {
  std::string operator()(const std::shared_ptr<CacheItem>& item) const { return item->label; }
  std::string operator()(const std::shared_ptr<LargeFile>& file) const { return file->name; }
  std::string operator()(const std::shared_ptr<RemainderItem>& item) const { return item->label; }
  std::string operator()(const std::shared_ptr<CleanerItem>& item) const {
    const auto* row = std::find_if(std::begin(client_names), std::end(client_names),
                                   [&](const ClientName& client) { return client.type == item->type; });
    return row == std::end(client_names) ? item->type : std::string(row->name);
  }
};

void add_rows(const Context& context, const CleanerItem& item, std::size_t most, Table& table) {
  const Text& text = context.platform.text;
  const std::size_t shown = item.items.size() > most + 1 ? most : item.items.size();
  for (std::size_t at = 0; at < shown; ++at) {
    table.row(2, one_line(std::visit(ReadableLabel{}, item.items[at])), text.byte_count(size_of(item.items[at])));
  }
  if (shown == item.items.size()) return;
  std::int64_t rest = 0;
  for (std::size_t at = shown; at < item.items.size(); ++at) rest += size_of(item.items[at]);
  table.row(2, "… and " + std::to_string(item.items.size() - shown) + " more (all of them with --json)",
            text.byte_count(rest));
}

}  // namespace

void print_smart_scan(Context& context, const Cleaner& cleaner) {
  const Text& text = context.platform.text;
  const std::size_t most = context.out_is_terminal ? rows_in_window : SIZE_MAX - 1;
  Table table(window_columns());
  for (const SmartCategory& category : smart_categories()) {
    const SmartOutlineItem& group = *(cleaner.*category.outline);
    if (!category.header.empty()) {
      if (category.type != "caches") table.blank();
      table.row(0, std::string(category.header), "");
    }
    const CleanerItem& item = *(cleaner.*category.item);
    table.heading("  " + group.label + "  [" + group.type + "]", text.byte_count(group.size));
    if (item.items.empty()) table.row(2, "everything is clean", "");
    add_rows(context, item, most, table);
  }
  table.blank();
  table.heading("Found in all", text.byte_count(cleaner.total_smart_size));
  table.print(context.out);
}

}  // namespace tarnby::cli
