#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarnby {

/// Of the folders that entries of one name lie in, the part of each that tells it from the others: "…/Beta/…" of
/// "~/Library/Containers/Beta/Data" beside "~/Library/Containers/Alpha/Data". What all have in common stays where it is
/// short.
std::vector<std::string> distinct_places(const std::vector<std::string>& folders);

/// What tells entries of one name apart, by their row; the other rows are not in it.
using EqualNames = std::unordered_map<std::size_t, std::string>;

/// @param name,folder what people read of a row and of the folder that it lies in.
EqualNames equal_names(std::size_t rows, const std::function<std::string(std::size_t)>& name,
                       const std::function<std::string(std::size_t)>& folder);

}  // namespace tarnby
