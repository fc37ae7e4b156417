#include "files/removal_remnant.h"

#include <stdlib.h>

#include <algorithm>

namespace tarnby {

namespace {

constexpr std::string_view beginning = ".tarnby-removed-";
constexpr std::string_view letters = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr std::size_t random_letters = 8;

}  // namespace

std::string new_removal_remnant_name() {
  std::string name(beginning);
  while (name.size() < beginning.size() + random_letters) name += letters[arc4random_uniform(letters.size())];
  return name;
}

bool is_removal_remnant(std::string_view name) {
  if (!name.starts_with(beginning) || name.size() != beginning.size() + random_letters) return false;
  name.remove_prefix(beginning.size());
  return name.find_first_not_of(letters) == std::string_view::npos;
}

}  // namespace tarnby
