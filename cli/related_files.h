#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "cli/context.h"
#include "cli/json.h"
#include "inventory/application_item.h"

namespace tarnby::cli {

/// The bundle that a typed path means: the links that the person's own path leads through are resolved, the bundle
/// itself must be none. Throws CommandError with `wrong_usage` when it is no application.
Url application_at(const Context& context, const std::string& typed);

/// The groups with their files and sizes: [{"name", "items": [{"path", "size"}]}].
Json json_related_files(const ApplicationItem& item);

/// Prints the groups with their files and sizes.
void print_related_files(Context& context, const ApplicationItem& item);

/// The bytes of some of the listed files; what lies inside another of them and is counted there counts once.
std::int64_t bytes_of(const ApplicationItem& item, std::span<const Url> urls);

}  // namespace tarnby::cli
