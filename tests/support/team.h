#pragma once

#include <cstddef>
#include <string>

namespace tarnby::test {

/// How many work at once and how many folders they may keep open (0: as many as they like). No result depends on it.
struct Team {
  unsigned workers;
  std::size_t handles;

  std::string why() const { return std::to_string(workers) + " workers, " + std::to_string(handles) + " handles"; }
};

/// One that reads in order, those that race, and those that have to close and open folders again all the time.
inline constexpr Team teams[] = {{1, 0}, {2, 0}, {8, 0}, {1, 1}, {8, 3}};

}  // namespace tarnby::test
