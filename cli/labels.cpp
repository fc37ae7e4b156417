#include "cli/labels.h"

namespace tarnby::cli {

namespace {

constexpr std::size_t rows_in_window = 12;

}  // namespace

std::size_t rows_shown(const Context& context, std::size_t rows) {
  // A rest of one takes no more room than telling of it.
  return context.out_is_terminal && rows > rows_in_window + 1 ? rows_in_window : rows;
}

std::string more_rows_text(std::size_t rows) {
  return "… and " + std::to_string(rows) + " more (--json lists all of them)";
}

}  // namespace tarnby::cli
