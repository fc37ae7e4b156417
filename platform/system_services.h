#pragma once

#include <memory>
#include <vector>

#include "platform/file_metadata.h"
#include "platform/login_items.h"
#include "platform/session.h"
#include "platform/settings_store.h"

// What each system brings to the platform of a program.

namespace tarnby {

/// The user's standard settings. A session that names a settings folder has them there, in a file.
std::unique_ptr<SettingsStore> open_standard_settings(const Session& session);

/// The files that both kinds of settings are in; none where the system keeps them otherwise.
std::vector<Url> settings_files(const Session& session);

/// The settings that this program shares with its scheduler.
std::unique_ptr<SettingsStore> open_group_settings(const Session& session);

/// The index of the system, or what stands in for it. `files` must outlive it.
std::unique_ptr<FileMetadata> open_file_metadata(const FileManager& files);

/// What starts at login in this session.
std::unique_ptr<LoginItems> open_login_items(const Session& session);

}  // namespace tarnby
