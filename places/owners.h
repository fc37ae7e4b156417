#pragma once

#include <string_view>

#include "places/names.h"
#include "places/offer.h"

namespace tarnby {

/// A program whose folders carry other names than its desktop entry, or whose executables do.
struct OwnerRow {
  std::string_view id;
  /// How people call it. The same in every language.
  const char* name;
  /// The names of its executables, whole. A service that runs all the time is none of them.
  Names programs;
  /// Its folders below the folders for caches and settings.
  Names folders;
  /// Patterns of the files that the running program holds a lock on, below the home folder and below the folder for
  /// settings.
  Names locks_in_home = {};
  Names locks_in_settings = {};
};

/// The program of an id, or null.
const OwnerRow* owner_row(std::string_view id);

/// The program that a folder of this name belongs to, or null.
const OwnerRow* owner_of_folder(std::string_view folder);

/// The record of a row, without the files it locks.
Owner owner_of(const OwnerRow& row);

}  // namespace tarnby
