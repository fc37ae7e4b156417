#pragma once

// The notifications that the engine posts itself, on the main queue: the next step of the smart scan is about to begin
// (smart_scan_…), and how a removal ended that was handed on.

namespace tarnby::notifications {

inline constexpr const char* cleaned_view_controller = "cleaned_view_controller";
inline constexpr const char* cleanup_with_file_exist = "cleanup_with_file_exist";
inline constexpr const char* smart_scan_logs = "smart_scan_logs";
inline constexpr const char* smart_scan_remainders = "smart_scan_remainders";
inline constexpr const char* smart_scan_browsers = "smart_scan_browsers";
inline constexpr const char* smart_scan_mails = "smart_scan_mails";
inline constexpr const char* smart_scan_installs = "smart_scan_installs";
inline constexpr const char* smart_scan_trash = "smart_scan_trash";

}  // namespace tarnby::notifications
