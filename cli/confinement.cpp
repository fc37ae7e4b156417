#include "cli/confinement.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "cli/command_table.h"
#include "files/confinement.h"
#include "files/directory.h"
#include "platform/platform.h"
#include "platform/system_services.h"

namespace tarnby::cli {

namespace {

/// The folder, or the nearest above it that is there and will hold it.
Descriptor open_nearest(Url folder) {
  for (;; folder = folder.parent()) {
    Descriptor opened = open_path_handle_following(AT_FDCWD, folder.path().c_str());
    if (opened || errno != ENOENT || folder.parent() == folder) return opened;
  }
}

std::vector<Descriptor> settings_folders(const Session& session) {
  std::vector<Descriptor> folders;
  for (const Url& file : settings_files(session)) {
    const Url place = place_of_settings(file);
    if (!place.is_file_url()) continue;
    if (Descriptor folder = open_nearest(place.parent())) folders.push_back(std::move(folder));
  }
  return folders;
}

bool removes(const Invocation& asked) {
  return !asked.dry_run && asked.command->effect == Effect::removes;
}

bool stores(const Invocation& asked) {
  return asked.command->effect == Effect::stores && asked.arguments.size() > 1;  // with fewer it shows
}

}  // namespace

void confine_to_command(const Invocation& asked, const Session& session) {
  (void)give_up_network();
  if (removes(asked)) return;
  MayChange but;
  if (stores(asked)) but.writing = settings_folders(session);
  (void)give_up_changing(but);
}

void confine_to_grants(const Context& context) {
  if (!removes(context.asked)) return;
  Platform& platform = context.platform;
  platform.files.confine_threads(FileManager::Callers::give_theirs_up);
  (void)give_up_changing({platform.files.granted().handles(), settings_folders(platform.session)});
}

}  // namespace tarnby::cli
