#pragma once

#include <vector>

#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

/// Adds the entries of a folder that are named as applications; each other entry is listed in turn, `levels` deep in
/// all, so that with 1 only the folder itself is looked at.
void add_applications_in(const FileManager& files, const Url& folder, int levels, std::vector<Url>& found);

/// Adds the applications of the Applications folder, three levels deep. A first-level entry named "Utilities" is passed
/// over: what lies there belongs to the system.
void add_granted_applications(const FileManager& files, const Url& applications, std::vector<Url>& found);

/// The applications that the user put on the disk: those of the Applications folder as above, then those of the folders
/// of the home that people keep applications in. Nothing is made unique; applications inside others are found, too.
std::vector<Url> applications_of_the_user(FileManager& files, const Url& applications, const Url& home);

}  // namespace tarnby
