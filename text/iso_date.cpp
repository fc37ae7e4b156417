#include "text/iso_date.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "text/whole_number.h"

namespace tarnby {

namespace {

/// Two texts of the same form: the same length, and where the form has a '0' some digit, else the form's character.
bool has_form(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(),
                    [](char c, char expected) { return expected == '0' ? c >= '0' && c <= '9' : c == expected; });
}

}  // namespace

std::string iso_date(std::chrono::sys_seconds moment) {
  const std::time_t seconds = moment.time_since_epoch().count();
  std::tm fields = {};
  gmtime_r(&seconds, &fields);
  std::array<char, 80> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02dZ", fields.tm_year + 1900,
                                   fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::optional<std::chrono::sys_seconds> parse_iso_date(std::string_view text) {
  namespace chrono = std::chrono;
  if (!has_form(text, "0000-00-00T00:00:00Z")) return std::nullopt;
  const auto part = [text](std::size_t start, std::size_t length) {
    return static_cast<unsigned>(whole_number<std::uint64_t>(text.substr(start, length)).value_or(0));
  };
  const chrono::year_month_day day(chrono::year(static_cast<int>(part(0, 4))), chrono::month(part(5, 2)),
                                   chrono::day(part(8, 2)));
  const unsigned hour = part(11, 2);
  const unsigned minute = part(14, 2);
  const unsigned second = part(17, 2);
  if (!day.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return chrono::sys_days(day) + chrono::hours(hour) + chrono::minutes(minute) + chrono::seconds(second);
}

}  // namespace tarnby
