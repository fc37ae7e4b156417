#include "places/home_kind.h"

#include <algorithm>

#include "places/macos_home.h"

namespace tarnby {

HomeKind kind_of_home(const FileManager& files, const Url& home) {
  const auto is_folder_in = [&](const Url& above) {
    return [&files, above](std::string_view name) { return files.is_folder(above.appending(name)); };
  };
  const LookWatch told_by_others(LookWatch::Tells::here);
  if (std::ranges::any_of(macos_home::library_folders, is_folder_in(home.appending(macos_home::library)))) {
    return HomeKind::macos;
  }
  return std::ranges::any_of(macos_home::folders_of_other_kinds, is_folder_in(home)) ? HomeKind::linux_desktop
                                                                                     : HomeKind::macos;
}

}  // namespace tarnby
