#pragma once

#include <string>
#include <string_view>

namespace tarnby {

/// A name that a NUL follows, as system calls take it. Valid as long as the bytes it was made of. What is cut out of it
/// is a plain std::string_view.
class TerminatedName : public std::string_view {
 public:
  TerminatedName(const char* name) : std::string_view(name) {}
  TerminatedName(const std::string& name) : std::string_view(name) {}

  /// For system calls.
  const char* c_str() const { return data(); }

  void remove_suffix(size_type) = delete;  // no NUL would follow
};

}  // namespace tarnby
