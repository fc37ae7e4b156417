#pragma once

#include "engine/notifications.h"

// The notifications of the window. Those named after a screen ask for it; the table in app/shell/view_controller.cpp
// says which layer it comes in. Those named after an animation tell that it has ended. All on the main queue.

namespace tarnby::notifications {

inline constexpr const char* sandbox_view_controller = "sandbox_view_controller";
inline constexpr const char* home_view_controller_for_launch = "home_view_controller_for_launch";
inline constexpr const char* home_view_controller = "home_view_controller";
inline constexpr const char* scan_view_controller = "scan_view_controller";
inline constexpr const char* page_controller = "page_controller";
inline constexpr const char* delete_view_controller = "delete_view_controller";
inline constexpr const char* smart_scan_view_controller = "smart_scan_view_controller";
inline constexpr const char* smart_clean_view_controller = "smart_clean_view_controller";
inline constexpr const char* smart_cleanup_view_controller = "smart_cleanup_view_controller";
inline constexpr const char* sandbox_end_anim_complete = "sandbox_end_anim_complete";
inline constexpr const char* home_end_anim = "home_end_anim";
inline constexpr const char* home_end_anim_complete = "home_end_anim_complete";
inline constexpr const char* scan_end_anim_complete = "scan_end_anim_complete";
inline constexpr const char* navigate_forward = "navigate_forward";
inline constexpr const char* navigate_back = "navigate_back";
inline constexpr const char* navigate_next_in_privacy_full_disk = "navigate_next_in_privacy_full_disk";
inline constexpr const char* navigate_back_in_privacy_full_disk = "navigate_back_in_privacy_full_disk";
inline constexpr const char* show_large_files = "show_large_files";
inline constexpr const char* show_downloads = "show_downloads";
inline constexpr const char* update_browsers = "update_browsers";
inline constexpr const char* update_ui_with_large_files_item_size = "update_ui_with_large_files_item_size";
inline constexpr const char* move_applications_cache = "move_applications_cache";
inline constexpr const char* move_applications_logs = "move_applications_logs";
inline constexpr const char* move_applications_remainders = "move_applications_remainders";
inline constexpr const char* move_browsers = "move_browsers";
inline constexpr const char* move_media_downloads = "move_media_downloads";
inline constexpr const char* move_media_trash = "move_media_trash";
inline constexpr const char* move_media_mails = "move_media_mails";
inline constexpr const char* move_media_large_files = "move_media_large_files";

}  // namespace tarnby::notifications
