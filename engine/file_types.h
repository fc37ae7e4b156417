#pragma once

#include <string>
#include <vector>

namespace tarnby {

// File name extensions by kind of file, lower case, in the order in which they are tried.

std::vector<std::string> archive_extensions();
std::vector<std::string> audio_extensions();
std::vector<std::string> document_extensions();
std::vector<std::string> movie_extensions();
std::vector<std::string> picture_extensions();

}  // namespace tarnby
