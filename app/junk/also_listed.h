#pragma once

#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "engine/large_file.h"

namespace tarnby {

class Cleaner;

/// Large files that another category lists as well, alone, within something larger or around something smaller; each
/// with the labels of those categories, in English.
using AlsoListed = std::unordered_map<const LargeFile*, std::vector<const char*>>;

/// Asks no disk. For the background: there may be many locations. What it reads changes with the next scan only.
AlsoListed also_listed(const Cleaner& cleaner, std::span<const std::shared_ptr<LargeFile>> files);

}  // namespace tarnby
