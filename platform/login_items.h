#pragma once

#include <string_view>

namespace tarnby {

/// The programs that start when the user logs in.
class LoginItems {
 public:
  virtual ~LoginItems() = default;

  /// From now on the program of this identifier ("org.example.helper") starts at every login, or no more. False when
  /// that could not be brought about; everything is as before then. Any thread may call.
  virtual bool set_enabled(std::string_view identifier, bool enabled) = 0;

  /// Whether the program of this identifier is there to be started. Any thread may call; folders are looked at.
  virtual bool is_installed(std::string_view identifier) const = 0;
};

}  // namespace tarnby
