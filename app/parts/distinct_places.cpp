#include "app/parts/distinct_places.h"

#include <algorithm>

namespace tarnby {

namespace {

using Components = std::vector<std::string>;

/// "~" and "Library" are said along with what follows them.
constexpr std::size_t short_beginning = 2;

Components components_of(const std::string& path) {
  Components components;
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    components.push_back(path.substr(begin, end - begin));
    begin = end + 1;
  }
  return components;
}

/// How many components all paths begin with, or end with when `at` counts from their ends.
template <class At>
std::size_t common(const std::vector<Components>& paths, std::size_t most, At at) {
  std::size_t count = 0;
  const auto same = [&](const Components& path) { return at(path, count) == at(paths.front(), count); };
  while (count < most && std::ranges::all_of(paths, same)) ++count;
  return count;
}

std::string joined(const Components& path, std::size_t begin, std::size_t end) {
  std::string text = begin > 0 ? "…" : "";
  for (std::size_t at = begin; at < end; ++at) text.append(at > 0 ? "/" : "").append(path[at]);
  return end < path.size() ? text + "/…" : text;
}

}  // namespace

std::vector<std::string> distinct_places(const std::vector<std::string>& folders) {
  std::vector<Components> paths;
  paths.reserve(folders.size());
  std::size_t shortest = folders.empty() ? 0 : std::string::npos;
  for (const std::string& folder : folders) {
    paths.push_back(components_of(folder));
    shortest = std::min(shortest, paths.back().size());
  }
  // One component of each stays, whatever they have in common.
  const std::size_t most = shortest == 0 ? 0 : shortest - 1;
  const std::size_t begin = common(paths, most, [](const Components& path, std::size_t at) { return path[at]; });
  const std::size_t end =
      common(paths, most - begin, [](const Components& path, std::size_t at) { return path[path.size() - 1 - at]; });
  std::vector<std::string> places;
  places.reserve(paths.size());
  for (const Components& path : paths) {
    places.push_back(joined(path, begin > short_beginning ? begin : 0, path.size() - end));
  }
  return places;
}

EqualNames equal_names(std::size_t rows, const std::function<std::string(std::size_t)>& name,
                       const std::function<std::string(std::size_t)>& folder) {
  std::unordered_map<std::string, std::vector<std::size_t>> named;
  for (std::size_t row = 0; row < rows; ++row) named[name(row)].push_back(row);
  EqualNames told;
  for (const auto& [same, at] : named) {
    if (at.size() < 2) continue;
    std::vector<std::string> folders;
    folders.reserve(at.size());
    for (const std::size_t row : at) folders.push_back(folder(row));
    std::vector<std::string> places = distinct_places(folders);
    for (std::size_t one = 0; one < at.size(); ++one) told[at[one]] = std::move(places[one]);
  }
  return told;
}

}  // namespace tarnby
