#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarnby {

/// A moment as "2024-01-31T23:59:59Z", in UTC. A year has four digits, or as many as it takes after 9999.
std::string iso_date(std::chrono::sys_seconds moment);

/// The moment that a text of exactly that form with four digits for the year writes; none for another text, and for a
/// day or a time of day that there is not.
std::optional<std::chrono::sys_seconds> parse_iso_date(std::string_view text);

}  // namespace tarnby
