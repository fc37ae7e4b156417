#include "app/junk/junk_rows.h"

#include <algorithm>

#include "app/parts/notifications.h"
#include "text/localization.h"

namespace tarnby {

namespace {

constexpr JunkRow applications[] = {
    {"caches", english("Applications caches"), &Cleaner::apps_caches_item, "Caches",
     notifications::move_applications_cache, "AboutCaches"},
    {"logs", english("Applications logs"), &Cleaner::apps_logs_item, "Logs", notifications::move_applications_logs,
     "AboutLogs"},
    {"remainders", english("Applications remainders"), &Cleaner::apps_remainders_item, "Remainders",
     notifications::move_applications_remainders, "AboutRemainders"},
    {"browsers", english("Browsers"), &Cleaner::browser_item, "Browsers", notifications::move_browsers,
     "AboutBrowsers"},
};

constexpr JunkRow media[] = {
    {"downloads", english("Downloads"), &Cleaner::downloads_item, "Downloads", notifications::move_media_downloads,
     "AboutDownloads"},
    {"trash", english("Trash Bin"), &Cleaner::trash_item, "Trash", notifications::move_media_trash, "AboutTrash"},
    {"mails", english("Mail attachments"), &Cleaner::mails_item, "Mails", notifications::move_media_mails,
     "AboutMails"},
    {"large-files", english("Large files"), &Cleaner::large_files_item, "LargeFiles",
     notifications::move_media_large_files, "AboutLargeFiles"},
};

}  // namespace

std::span<const JunkRow> applications_rows() {
  return applications;
}

std::span<const JunkRow> media_rows() {
  return media;
}

const JunkRow& junk_row(std::string_view type) {
  for (const auto rows : {applications_rows(), media_rows()}) {
    const auto row = std::ranges::find(rows, type, &JunkRow::type);
    if (row != rows.end()) return *row;
  }
  return applications[0];
}

}  // namespace tarnby
