#include "places/trash_info.h"

#include <array>
#include <ctime>
#include <string>

#include "text/key_file.h"
#include "text/whole_number.h"

namespace tarnby {

namespace {

constexpr std::size_t most_bytes = std::size_t{64} << 10U;

/// The bytes that a percent-encoded text (RFC 3986, 2.1) stands for; a "%" without two digits stands for itself.
std::string percent_decoded(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool is_whole = text[at] == '%' && at + 2 < text.size();
    const auto byte = is_whole ? whole_number<unsigned char>(text.substr(at + 1, 2), 16) : std::nullopt;
    bytes += byte ? static_cast<char>(*byte) : text[at];
    if (byte) at += 2;
  }
  return bytes;
}

/// The numbers of "YYYY-MM-DDThh:mm:ss", in this order; none when it is written otherwise.
std::optional<std::array<int, 6>> date_numbers(std::string_view text) {
  constexpr std::string_view form = "0000-00-00T00:00:00";
  if (text.size() != form.size()) return std::nullopt;
  std::array<int, 6> numbers = {};
  std::size_t field = 0;
  for (std::size_t at = 0; at < form.size(); ++at) {
    const bool is_digit = text[at] >= '0' && text[at] <= '9';
    if (form[at] == '0' ? !is_digit : text[at] != form[at]) return std::nullopt;
    if (form[at] == '0') {
      numbers[field] = numbers[field] * 10 + (text[at] - '0');
    } else {
      ++field;
    }
  }
  return numbers;
}

std::optional<Moment> local_moment(std::string_view text) {
  const auto numbers = date_numbers(text);
  if (!numbers) return std::nullopt;
  const auto [year, month, day, hour, minute, second] = *numbers;
  std::tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  time.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&time);
  // A day that no month has becomes one of the next.
  if (time.tm_mday != day || time.tm_mon != month - 1 || time.tm_min != minute) return std::nullopt;
  return Moment(std::chrono::seconds(seconds));
}

}  // namespace

TrashInfo read_trash_info(std::string_view bytes) {
  TrashInfo info;
  if (bytes.size() > most_bytes) return info;
  const auto file = KeyFile::parse(bytes);
  if (!file) return info;
  if (const auto path = file->value("Trash Info", "Path")) info.original = Url::file(percent_decoded(*path));
  if (const auto date = file->value("Trash Info", "DeletionDate")) info.deleted = local_moment(*date);
  return info;
}

}  // namespace tarnby
