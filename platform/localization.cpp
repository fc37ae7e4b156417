#include "platform/localization.h"

#include <cstddef>
#include <string_view>

namespace tarnby {

namespace {

/// What stands for a value: "%@" for the next one, "%1$@" to "%9$@" for a certain one.
struct Placeholder {
  std::size_t length = 0;  // 0: there is none here
  std::size_t value = 0;
};

Placeholder placeholder_at(std::string_view text, std::size_t at, std::size_t next) {
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("%@")) return {2, next};
  const bool numbered = rest.size() >= 4 && rest[0] == '%' && rest[1] >= '1' && rest[1] <= '9' && rest[2] == '$';
  if (numbered && rest[3] == '@') return {4, static_cast<std::size_t>(rest[1] - '1')};
  return {};
}

}  // namespace

const std::string& Localization::text(const std::string& english) const {
  const auto found = table_.find(english);
  return found == table_.end() ? english : found->second;
}

std::string Localization::text(const std::string& english, std::span<const std::string> values) const {
  const std::string& pattern = text(english);
  std::string filled;
  std::size_t next = 0;
  for (std::size_t at = 0; at < pattern.size();) {
    const Placeholder found = placeholder_at(pattern, at, next);
    if (found.length == 0 || found.value >= values.size()) {
      filled += pattern[at++];
      continue;
    }
    filled += values[found.value];
    next = found.value + 1;
    at += found.length;
  }
  return filled;
}

}  // namespace tarnby
