#include "platform/system_services.h"

#include "platform/file_times.h"
#include "platform/linux/autostart.h"

namespace tarnby {

std::unique_ptr<SettingsStore> open_standard_settings(const Session& session) {
  return open_settings_file(session.settings_folder.appending("settings.plist"));
}

std::unique_ptr<SettingsStore> open_group_settings(const Session& session) {
  return open_settings_file(session.settings_folder.appending("QJ4RW7NX2P.com.corvash.tarnby-cleaner.plist"));
}

std::unique_ptr<FileMetadata> open_file_metadata(const FileManager& files) {
  return file_times(files);
}

std::unique_ptr<LoginItems> open_login_items(const Session& session) {
  return autostart_entries(session.autostart_folder, session.system_autostart_folders, session.program_folders);
}

}  // namespace tarnby
