#include "cli/table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "cli/terminal.h"
#include "text/text.h"

namespace tarnby::cli {

namespace {

constexpr std::size_t least_first_column = 20;
/// Where there is no window, a longer cell is shown whole and only its own line goes out of step.
constexpr std::size_t most_first_column = 60;
constexpr std::size_t gap = 2;

bool continues_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

void drop_last_character(std::string& utf8) {
  while (!utf8.empty() && continues_character(utf8.back())) utf8.pop_back();
  if (!utf8.empty()) utf8.pop_back();
}

std::string cut_to(std::string cell, std::size_t columns) {
  if (display_columns(cell) <= columns) return cell;
  while (!cell.empty() && display_columns(cell) + 1 > columns) drop_last_character(cell);
  return cell + "…";
}

}  // namespace

unsigned window_columns() {
  winsize size = {};
  if (isatty(STDOUT_FILENO) == 0) return 0;
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80U;
}

std::vector<std::size_t> Table::widths() const {
  std::vector<std::size_t> widths(columns_.size());
  for (const Line& line : lines_) {
    for (std::size_t at = 0; at < line.cells.size(); ++at) {
      widths[at] = std::max(widths[at], display_columns(line.cells[at]));
    }
  }
  if (window_ == 0) {
    widths[0] = std::min(widths[0], most_first_column);
  } else {
    std::size_t others = 1;  // the last column stays free: some terminals break the line after it
    for (std::size_t at = 1; at < widths.size(); ++at) others += gap + widths[at];
    const std::size_t room = window_ > others ? window_ - others : 0;
    widths[0] = std::min(widths[0], std::max(room, least_first_column));
  }
  return widths;
}

std::string Table::text_of(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) const {
  std::string text;
  std::size_t missing = 0;  // blanks to set before the next cell that is not empty
  for (std::size_t at = 0; at < cells.size(); ++at) {
    const std::string cell = at == 0 && window_ > 0 ? cut_to(cells[at], widths[at]) : cells[at];
    const std::size_t blanks = widths[at] - std::min(widths[at], display_columns(cell));
    const bool on_the_right = columns_[at] == Align::right;
    if (on_the_right) missing += blanks;
    if (!cell.empty()) text += std::string(std::exchange(missing, 0), ' ') + cell;
    if (!on_the_right) missing += blanks;
    missing += gap;
  }
  return text;
}

void Table::print(std::ostream& out) const {
  const auto widths_of_columns = widths();
  const bool may_be_bold = window_ > 0 && shows_bold();
  for (const Line& line : lines_) {
    const bool bold = line.stands_out && may_be_bold;
    out << (bold ? "\x1b[1m" : "") << text_of(line.cells, widths_of_columns) << (bold ? "\x1b[0m" : "") << '\n';
  }
}

}  // namespace tarnby::cli
