#include "cli/progress.h"

namespace tarnby::cli {

namespace {

constexpr std::string_view start_line_over = "\r\x1b[K";

}  // namespace

Progress::Progress(Context& context) : err_(context.err), shown_(context.err_rewrites_lines && !context.asked.quiet) {}

Progress::~Progress() {
  if (shown_) err_ << start_line_over << std::flush;
}

void Progress::show(std::string_view line) {
  if (shown_) err_ << start_line_over << line << std::flush;
}

}  // namespace tarnby::cli
