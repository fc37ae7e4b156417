#pragma once

#include <string>
#include <vector>

namespace tarnby::bench {

/// A home folder and an Applications folder made for measuring.
struct Home {
  std::string home;
  std::string applications;
  /// Folders that a smart scan measures whole, so that another tool can be given the same work.
  std::vector<std::string> measured;
  /// Those, and the folders that it goes through for the names in them.
  std::vector<std::string> gone_through = {};
};

/// Makes a home of about `files` files below `folder`, or takes the one that an earlier call with the same number made
/// there. The shape is that of a home in daily use: most files in caches, many folders of few files and some of many,
/// and a tenth of all in Documents, Desktop and build products, where a scan looks for applications by name only.
/// Throws std::system_error when the disk does not take it.
Home make_home(const std::string& folder, std::size_t files);

/// The same for a home whose lists are long: `wide_home` entries of each kind, most of them empty.
Home make_wide_home(const std::string& folder);

struct WideHome {
  std::size_t logs;
  std::size_t applications;
  /// Caches, half of them of applications that are gone.
  std::size_t caches;
};
constexpr WideHome wide_home = {100'000, 1'000, 10'000};

}  // namespace tarnby::bench
