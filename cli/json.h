#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "engine/cleaner.h"
#include "files/home_kind.h"
#include "inventory/application_item.h"
#include "text/property_list.h"

namespace tarnby::cli {

/// Objects keep their keys in the order in which they are written down.
using Json = nlohmann::ordered_json;

/// The value as text. In it every character that drives a terminal, turns the order of what is read, or ends a line for
/// some readers is written as its number.
std::string json_text_of(const Json& value);
/// The same as a line of its own.
std::string json_line(const Json& value);

/// Bytes that are not UTF-8 appear as U+FFFD.
Json json_text(std::string_view bytes);
/// The text, or null.
Json json_optional(const std::optional<std::string>& text);
/// The paths in the order given.
Json json_paths(std::span<const Url> urls);

/// An answer about a home: the number of this format, of which kind the home is, and then these fields.
Json json_answer(HomeKind layout, const Json& fields);

/// One row of a smart scan: label, bytes, paths. A browser or mail program is labelled by its type, which is the same
/// in every language.
Json json_entry(const CleanerEntry& entry);
/// One application with the fields of its record, as its bundle has them.
Json json_application(const ApplicationItem& item);
/// A value of the settings: data as text, dates as ISO 8601, UTC.
Json json_setting(const PropertyList& value);

}  // namespace tarnby::cli
