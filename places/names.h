#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace tarnby {

/// A few names in a row of a table.
class Names {
 public:
  constexpr Names() = default;
  constexpr Names(std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) listed_[count_++] = name;
  }
  constexpr const std::string_view* begin() const { return listed_.data(); }
  constexpr const std::string_view* end() const { return listed_.data() + count_; }
  constexpr bool empty() const { return count_ == 0; }
  constexpr bool contain(std::string_view name) const {
    for (const std::string_view listed : *this) {
      if (listed == name) return true;
    }
    return false;
  }

 private:
  std::array<std::string_view, 20> listed_ = {};
  std::size_t count_ = 0;
};

}  // namespace tarnby
