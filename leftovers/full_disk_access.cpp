#include "leftovers/full_disk_access.h"

#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

constexpr SystemVersion first_with_switches = {10, 14};

struct ProbeRow {
  SystemVersion since;
  std::string_view file;
};

/// The newest first.
constexpr ProbeRow probe_rows[] = {
    {{10, 15}, "Library/Safari/CloudTabs.db"},
    {{0, 0}, "Library/Safari/Bookmarks.plist"},
};

}  // namespace

FullDiskAccess::FullDiskAccess(Platform& platform) : FullDiskAccess(platform, platform.session.system_version) {}

bool FullDiskAccess::is_guarded() const {
  return !version_ || !(*version_ < first_with_switches);
}

std::string_view FullDiskAccess::probe_file() const {
  const ProbeRow* row = probe_rows;
  while (version_ && *version_ < row->since) ++row;
  return row->file;
}

DiskAccess FullDiskAccess::test() {
  const Url home = platform_.bookmarks.resolve_and_access(Grant::home);
  const Readability probe = platform_.files.readability(home.appending(probe_file()));
  if (probe == Readability::absent || (probe == Readability::unreadable && !version_)) return DiskAccess::unknown;
  const bool granted = probe == Readability::readable;
  platform_.app_settings.set_boolean("PrivacyFullDisk", granted);
  platform_.app_settings.synchronize();
  return granted ? DiskAccess::granted : DiskAccess::denied;
}

void FullDiskAccess::privacy_for_directories() {
  const Url home = platform_.bookmarks.resolve_and_access(Grant::home);
  for (const std::string_view folder : macos_home::personal_folders)
    (void)platform_.files.list_urls(home.appending(folder));
  platform_.app_settings.set_boolean("PrivacyAccess", true);
  platform_.app_settings.synchronize();
}

}  // namespace tarnby
