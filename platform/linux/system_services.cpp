#include "platform/system_services.h"

#include "platform/file_times.h"
#include "platform/linux/autostart.h"

namespace tarnby {

namespace {

Url standard_file(const Session& session) {
  return session.settings_folder.appending("settings.plist");
}

Url group_file(const Session& session) {
  return session.settings_folder.appending("QJ4RW7NX2P.com.corvash.tarnby-cleaner.plist");
}

}  // namespace

std::unique_ptr<SettingsStore> open_standard_settings(const Session& session) {
  return open_settings_file(standard_file(session));
}

std::unique_ptr<SettingsStore> open_group_settings(const Session& session) {
  return open_settings_file(group_file(session));
}

std::vector<Url> settings_files(const Session& session) {
  return {standard_file(session), group_file(session)};
}

std::unique_ptr<FileMetadata> open_file_metadata(const FileManager& files) {
  return file_times(files);
}

std::unique_ptr<LoginItems> open_login_items(const Session& session) {
  return autostart_entries(session.autostart_folder, session.system_autostart_folders, session.program_folders);
}

}  // namespace tarnby
