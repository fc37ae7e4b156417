#pragma once

#include "files/file_manager.h"
#include "files/home_kind.h"
#include "files/url.h"

namespace tarnby {

/// Tells from a home folder how it is laid out. A Library with a folder that applications make in it goes first, since
/// macOS homes have .config and .cache, too. A home of neither kind is read by the rules of macOS, and none of the
/// places of those is in it.
HomeKind kind_of_home(const FileManager& files, const Url& home);

}  // namespace tarnby
