// Variables and a user-dirs.dirs of any bytes: no folder lies outside the home or is the home, and the cache folder
// holds no other. The input holds the four variables, each ended by a NUL, and then the file.

#include "fuzz/fuzzer.h"
#include "places/user_folders.h"

using namespace tarnby;

namespace {

const Url home = Url::file("/data/home/ada");
const Url account = Url::file("/home/ada");

void check_folder(const Url& folder) {
  if (folder.empty()) return;
  fuzz::check(folder.is_within(home) && folder != home, "a folder lies below the home");
  fuzz::check((folder.path() + "/").find("/../") == std::string::npos, "and no path leads back up");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = fuzz::text_of(data, size);
  BaseFolderVariables variables;
  for (std::string* variable : {&variables.cache, &variables.config, &variables.data, &variables.state}) {
    *variable = fuzz::next_word(rest);
  }
  UserFolders folders = base_folders(home, account, variables);
  add_named_folders(folders, home, account, rest);
  check_folder(folders.cache);
  for (const Url* folder :
       {&folders.config, &folders.data, &folders.state, &folders.desktop, &folders.downloads, &folders.templates,
        &folders.public_share, &folders.documents, &folders.music, &folders.pictures, &folders.videos}) {
    check_folder(*folder);
    fuzz::check(folders.cache.empty() || !folder->is_within(folders.cache), "the cache folder holds no other");
  }
  for (const Url* base : {&folders.config, &folders.data, &folders.state}) {
    fuzz::check(!base->empty(), "settings, data and state are always somewhere");
  }
  return 0;
}
