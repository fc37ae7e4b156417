#pragma once

#include <string_view>

namespace tarnby {

/// The programs that start when the user logs in.
class LoginItems {
 public:
  virtual ~LoginItems() = default;

  /// Makes the program of this identifier ("org.example.helper") start at every login from now on, or no longer. False,
  /// and nothing is changed, when that fails. Any thread may call.
  virtual bool set_enabled(std::string_view identifier, bool enabled) = 0;

  /// Whether the program of this identifier is installed. Looks into folders. Any thread may call.
  virtual bool is_installed(std::string_view identifier) const = 0;
};

}  // namespace tarnby
