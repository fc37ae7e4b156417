#pragma once

#include <string_view>

/// The addresses that the window opens. Software centres open "appstream:" addresses at the page of that program.
namespace tarnby::links {

inline constexpr std::string_view store_page = "appstream://com.corvash.tarnby-cleaner";
inline constexpr std::string_view companion_page = "appstream://com.corvash.uninstaller-orvane";
/// Where people get the helper; empty: nowhere yet, and then nobody is sent there.
inline constexpr std::string_view helper_page = "";
inline constexpr std::string_view privacy_settings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";
/// Where people can tell what they think; empty: nowhere, and then there is no such menu entry.
inline constexpr std::string_view feedback = "";
/// Below the folder of the program's resources.
inline constexpr std::string_view folder_access_page = "help/folder-access.html";

}  // namespace tarnby::links
