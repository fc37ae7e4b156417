#include "files/mount_points.h"

#include <fcntl.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "files/descriptor.h"

namespace tarnby {

namespace {

constexpr const char* mount_table = "/proc/self/mountinfo";
constexpr int fields_before_path = 4;

std::string content_of(int handle) {
  std::string text;
  char piece[16 * 1024];
  ssize_t got = 0;
  while ((got = uninterrupted([&] { return ::read(handle, piece, sizeof piece); })) > 0) {
    text.append(piece, static_cast<std::size_t>(got));
  }
  return text;
}

bool is_octal(char c) {
  return c >= '0' && c <= '7';
}

/// The table has blanks, line ends and backslashes as a backslash and three octal digits (proc(5)).
std::string without_escapes(std::string_view field) {
  std::string path;
  for (std::size_t at = 0; at < field.size(); ++at) {
    const std::string_view digits = field.substr(at + 1, 3);
    if (field[at] != '\\' || digits.size() < 3 || !is_octal(digits[0]) || !is_octal(digits[1]) ||
        !is_octal(digits[2])) {
      path += field[at];
      continue;
    }
    path += static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0'));
    at += digits.size();
  }
  return path;
}

std::string_view field_of(std::string_view line, int before) {
  for (; before > 0; --before) line.remove_prefix(std::min(line.size(), line.find(' ') + 1));
  return line.substr(0, line.find(' '));
}

}  // namespace

std::vector<Url> mount_points() {
  const Descriptor table(uninterrupted([] { return ::open(mount_table, O_RDONLY | O_CLOEXEC); }));
  const std::string text = table ? content_of(table.get()) : std::string();
  std::vector<Url> points;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    Url point = Url::file(without_escapes(field_of(line, fields_before_path)));
    if (!point.empty()) points.push_back(std::move(point));
  }
  return points;
}

}  // namespace tarnby
