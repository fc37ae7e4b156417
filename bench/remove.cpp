// Removes what is in folders the way the program does, and nothing else: no search before, no account after.
//   remove [--unconfined] HOME FOLDER...      the folders lie in HOME; unconfined: the kernel does not check it

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "files/file_manager.h"
#include "files/granted_folders.h"

int main(int argc, char** argv) {
  using namespace tarnby;
  std::vector<std::string> words(argv, argv + argc);
  const bool confined = words.size() < 2 || words[1] != "--unconfined";
  if (!confined) words.erase(words.begin() + 1);
  if (words.size() < 3) {
    std::fputs("usage: remove [--unconfined] HOME FOLDER...\n", stderr);
    return 2;
  }
  FileManager files;
  if (confined) files.confine_threads(FileManager::Callers::keep_their_rights);
  files.granted().add(Grant::home, Url::file(words[1]));
  std::vector<Url> entries;
  for (auto folder = words.begin() + 2; folder != words.end(); ++folder) {
    const std::vector<Url> found = files.list_urls(Url::file(*folder), Hidden::take);
    entries.insert(entries.end(), found.begin(), found.end());
  }
  const std::vector<Removal> removals = files.remove(entries);
  return std::all_of(removals.begin(), removals.end(), [](const Removal& one) { return !one.error; }) ? 0 : 1;
}
