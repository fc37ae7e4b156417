#pragma once

#include <span>

#include "cli/context.h"
#include "engine/cleaner.h"

namespace tarnby::cli {

/// Prints these categories of a junk scan with their sizes: for browsers and mail programs which there are, for the
/// others what is in them. In a window, of a long category only the beginning.
void print_junk_scan(Context& context, const Cleaner& cleaner, std::span<const Category> categories);

}  // namespace tarnby::cli
