#include "cli/table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "platform/text.h"

namespace tarnby::cli {

namespace {

constexpr std::size_t least_label = 20;

std::string cut_to(const std::string& label, std::size_t columns) {
  if (display_columns(label) <= columns) return label;
  std::string kept = label;
  while (!kept.empty() && display_columns(kept) + 1 > columns) {
    do {
      kept.pop_back();
    } while (!kept.empty() && (static_cast<unsigned char>(kept.back()) & 0xC0U) == 0x80U);
    if (!kept.empty() && (static_cast<unsigned char>(kept.back()) & 0xC0U) == 0xC0U) kept.pop_back();
  }
  return kept + "…";
}

}  // namespace

unsigned window_columns() {
  winsize size = {};
  if (isatty(STDOUT_FILENO) == 0) return 0;
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80U;
}

void Table::heading(std::string label, std::string size) {
  rows_.push_back({std::move(label), std::move(size), true});
}

void Table::row(unsigned indent, std::string label, std::string size) {
  rows_.push_back({std::string(std::size_t{2} * indent, ' ') + label, std::move(size), false});
}

void Table::blank() {
  rows_.emplace_back();
}

void Table::print(std::ostream& out) const {
  std::size_t widest_label = 0;
  std::size_t widest_size = 0;
  for (const Row& row : rows_) {
    widest_label = std::max(widest_label, display_columns(row.label));
    widest_size = std::max(widest_size, display_columns(row.size));
  }
  if (columns_ > 0) {
    const std::size_t for_labels = columns_ > widest_size + 3 ? columns_ - widest_size - 3 : 0;
    widest_label = std::min(widest_label, std::max(for_labels, least_label));
  }
  for (const Row& row : rows_) {
    if (row.label.empty()) {
      out << '\n';
      continue;
    }
    const std::string label = columns_ > 0 ? cut_to(row.label, widest_label) : row.label;
    const bool bold = row.stands_out && columns_ > 0;
    if (bold) out << "\x1b[1m";
    out << label;
    if (!row.size.empty()) {
      out << std::string(widest_label - display_columns(label) + 2 + widest_size - display_columns(row.size), ' ')
          << row.size;
    }
    if (bold) out << "\x1b[0m";
    out << '\n';
  }
}

}  // namespace tarnby::cli
