#pragma once

#include <cstddef>
#include <string>

#include "cli/context.h"

namespace tarnby::cli {

/// How many rows of a group are shown: in a window only the beginning of a long one.
std::size_t rows_shown(const Context& context, std::size_t rows);

/// The line that stands for the rows that are not shown.
std::string more_rows_text(std::size_t rows);

}  // namespace tarnby::cli
