#include "platform/system_services.h"

#include "platform/macos/login_items.h"
#include "platform/macos/metadata_index.h"
#include "platform/macos/user_defaults.h"

namespace tarnby {

std::unique_ptr<SettingsStore> open_standard_settings(const Session& session) {
  if (session.settings_folder.empty()) return user_defaults("com.corvash.tarnby-cleaner");
  return open_settings_file(session.settings_folder.appending("settings.plist"));
}

std::unique_ptr<SettingsStore> open_group_settings(const Session& session) {
  constexpr const char* group = "QJ4RW7NX2P.com.corvash.tarnby-cleaner";
  if (session.settings_folder.empty()) return user_defaults(group);
  return open_settings_file(session.settings_folder.appending(std::string(group) + ".plist"));
}

std::vector<Url> settings_files(const Session& /*session*/) {
  return {};
}

std::unique_ptr<FileMetadata> open_file_metadata(const FileManager& files) {
  return metadata_index(files);
}

std::unique_ptr<LoginItems> open_login_items(const Session& /*session*/) {
  return service_login_items();
}

}  // namespace tarnby
