#pragma once

#include <cstdint>
#include <string_view>

// Where things lie in a home of the macOS kind. Paths are relative: to the home folder, or to its Library where the
// name of the constant or member says so. What is done with a place, and in which order, is said where the tables are
// read.

namespace tarnby::macos_home {

inline constexpr std::string_view library = "Library";
inline constexpr std::string_view trash = ".Trash";
inline constexpr std::string_view downloads = "Downloads";

/// Below the Library.
inline constexpr std::string_view caches = "Caches";
inline constexpr std::string_view logs = "Logs";
inline constexpr std::string_view containers = "Containers";
/// Of one container.
inline constexpr std::string_view container_caches = "Data/Library/Caches";

/// The folders that are searched for applications, in this order. Documents and Desktop are walked since people keep
/// applications anywhere in them; Downloads and Applications are only listed.
struct ApplicationPlace {
  std::string_view beneath_home;
  bool walked;
};
inline constexpr ApplicationPlace application_places[] = {
    {"Downloads", false},
    {"Documents", true},
    {"Desktop", true},
    {"Applications", false},
    {"Library/Developer/Xcode/DerivedData", true},
};

/// A folder of applications below any Applications folder that belongs to the system.
inline constexpr std::string_view system_applications = "Utilities";

/// Where installers lie. Applications keep files of their own named "apk" in Application Support, so those are not
/// collected there.
struct InstallerPlace {
  std::string_view beneath_home;
  bool takes_apk;
};
inline constexpr InstallerPlace installer_places[] = {
    {"Downloads", true},
    {"Desktop", true},
    {"Documents", true},
    {"Library/Application Support", false},
};

/// How an entry is named after the application that it belongs to.
enum class NamedBy : std::uint8_t { identifier, identifier_and_saved_state, identifier_and_extension };

/// The folders of the Library whose entries are named after applications, in the order in which they are searched.
struct LeftoverPlace {
  std::string_view beneath_library;
  NamedBy named_by;
};
inline constexpr LeftoverPlace leftover_places[] = {
    {"Caches", NamedBy::identifier},
    {"Containers", NamedBy::identifier},
    {"Saved Application State", NamedBy::identifier_and_saved_state},
    {"Application Scripts", NamedBy::identifier},
    {"Preferences", NamedBy::identifier_and_extension},
};

/// Where an application may be that owns what lies in these; all of them are listed, none is walked.
inline constexpr std::string_view owner_places[] = {"Downloads", "Documents", "Desktop", "Applications"};

/// The data of browsers and mail programs, below the Library.
inline constexpr std::string_view chrome_profile = "Application Support/Google/Chrome/Default";
inline constexpr std::string_view chrome_application_cache =
    "Application Support/Google/Chrome/Default/Application Cache";
/// Of a profile of it.
inline constexpr std::string_view chrome_data[] = {"Application Cache", "Local Storage", "Storage",
                                                   "Sync Data",         "Thumbnails",    "Session Storage"};
inline constexpr std::string_view firefox_profiles = "Application Support/Firefox/Profiles";
/// Of a profile of it.
inline constexpr std::string_view firefox_storage = "storage";
inline constexpr std::string_view safari_storage = "Safari/LocalStorage";
inline constexpr std::string_view apple_mail_downloads = "Containers/com.apple.mail/Data/Library/Mail Downloads";
inline constexpr std::string_view airmail =
    "Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail";
/// Of an account of it, and of the program itself.
inline constexpr std::string_view airmail_attachments = "AttachmentsNg";
inline constexpr std::string_view airmail_temporary = "General/Tmp";
inline constexpr std::string_view spark_messages =
    "Group Containers/3L68KQB4HG.group.com.readdle.smartemail/databases/messagesData";

/// Of the Library; not searched for large files: other categories clean it, or it belongs to tools that look after it
/// themselves.
inline constexpr std::string_view without_large_files[] = {"Developer/Xcode/DocumentationCache",
                                                           "Developer/CoreSimulator", "iTunes"};

/// Which folders a home must have, one of each list, for a scan to know where to look at all.
inline constexpr std::string_view known_library_places[] = {
    "Library/Caches", "Library/Preferences", "Library/Application Support", "Library/Containers", "Library/Logs",
    "Library/Mail",   "Library/Safari",
};
inline constexpr std::string_view known_trash_places[] = {".Trash"};
inline constexpr std::string_view known_download_places[] = {"Downloads", "Desktop", "Documents",
                                                             "Library/Application Support"};

/// Of the Library; only a home with one of these is laid out by applications from the Applications folder.
inline constexpr std::string_view library_folders[] = {
    "Application Scripts", "Application Support",     "Caches", "Containers", "Logs", "Mail",
    "Preferences",         "Saved Application State", "Safari"};
/// A home with one of these and none of those is of another kind.
inline constexpr std::string_view folders_of_other_kinds[] = {".config", ".cache", ".local/share"};

/// Folders that the system guards by a switch of its own each; in the order in which the user is asked.
inline constexpr std::string_view personal_folders[] = {
    "Desktop",
    "Downloads",
    "Documents",
    "Pictures/Photos Library.photoslibrary",
};

}  // namespace tarnby::macos_home
