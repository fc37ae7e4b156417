#include "app/parts/category_look.h"

#include <algorithm>

#include "app/parts/notifications.h"
#include "engine/cleaner.h"
#include "leftovers/remainders.h"
#include "text/localization.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

using std::chrono::milliseconds;
using Empty = JunkScanStep::Empty;

/// The applications that are looked through for what removed ones have left.
const std::vector<Url>& installed_applications(const Cleaner& cleaner) {
  return cleaner.remainders().installedApplications;
}

constexpr CategoryLook looks[] = {
    {.type = "caches",
     .color = theme::blue,
     .short_name = english("Caches"),
     .about = {.identifier = "AboutCaches",
               .text = english("Copies of things that applications keep to be faster. They are made anew when they are "
                               "needed, so an application may start a little slower the next time."),
               .button = {.text = english("Show"), .folder = &Cleaner::url_caches, .tries_view_file = true}},
     .page = JunkPage::applications,
     .move = notifications::move_applications_cache,
     .scan = {.begins = milliseconds(0)},
     .removal_text_at = milliseconds(0)},
    {.type = "logs",
     .color = theme::violet,
     .short_name = english("Logs"),
     .about = {.identifier = "AboutLogs",
               .text = english("Diaries that applications write about their own work. They help when something went "
                               "wrong; otherwise nobody reads them."),
               .button = {.text = english("Show"), .folder = &Cleaner::url_logs, .tries_view_file = true}},
     .page = JunkPage::applications,
     .move = notifications::move_applications_logs,
     .scan = {.begins = milliseconds(2000), .empty = Empty::clean},
     .removal_text_at = milliseconds(800)},
    {.type = "remainders",
     .color = theme::amber,
     .short_name = english("Remainders"),
     .about = {.identifier = "AboutRemainders",
               .text = english("Settings and data of applications that are not installed any more. If you mean to "
                               "install one of them again, untick it: it will find its settings.")},
     .page = JunkPage::applications,
     .move = notifications::move_applications_remainders,
     .scan = {.begins = milliseconds(4000), .empty = Empty::wait, .locations = installed_applications},
     .removal_text_at = milliseconds(1500)},
    {.type = "browsers",
     .color = theme::teal,
     .short_name = english("Browsers"),
     .about = {.identifier = "AboutBrowsers",
               .text = english("What web sites have stored in your browsers. Without it some sites forget your "
                               "settings or ask you to sign in again. Quit the browser first. Bookmarks and passwords "
                               "stay."),
               .button = {.text = english("Choose browsers…"), .popover = "SelectBrowsers"}},
     .page = JunkPage::applications,
     .move = notifications::move_browsers,
     .scan = {.begins = milliseconds(7000), .empty = Empty::wait}},
    {.type = "downloads",
     .color = theme::azure,
     .short_name = english("Downloads"),
     .about = {.identifier = "AboutDownloads",
               .text = english("Everything you have saved from the net. Look through it now and then: what you no "
                               "longer need is best removed by hand."),
               .button = {.text = english("Show"),
                          .folder = &Cleaner::url_downloads,
                          .tries_view_file = true,
                          .pressed_by = notifications::show_downloads}},
     .page = JunkPage::media,
     .move = notifications::move_media_downloads,
     .removal_text_at = milliseconds(1800)},
    {.type = "trash",
     .color = theme::silver,
     .short_name = english("Trash"),
     .about = {.identifier = "AboutTrash",
               .text = english("Files you have already thrown away. They still take space until the Trash is emptied. "
                               "Removing them here is permanent."),
               .button = {.text = english("Show"), .folder = &Cleaner::url_trash, .tries_view_file = true}},
     .page = JunkPage::media,
     .move = notifications::move_media_trash,
     .scan = {.begins = milliseconds(0), .empty = Empty::clean},
     .removal_text_at = milliseconds(2200)},
    {.type = "mails",
     .color = theme::pink,
     .short_name = english("Mails"),
     .about = {.identifier = "AboutMails",
               .text = english("Attachments that your mail programs have saved on this disk. The messages stay, and "
                               "attachments that are still on the mail server can be opened again."),
               .button = {.text = english("Show"), .folder = &Cleaner::url_mails}},
     .page = JunkPage::media,
     .move = notifications::move_media_mails,
     .scan = {.begins = milliseconds(1500), .empty = Empty::clean},
     .removal_text_at = milliseconds(2700)},
    {.type = "large-files",
     .color = theme::green,
     .short_name = english("Large files"),
     .about = {.identifier = "AboutLargeFiles",
               .text = english("Single files, applications and packages of 10 MB and more, but for single files in "
                               "Downloads, caches and logs. A row says when another category lists it, too. Nothing is "
                               "chosen until you choose it."),
               .button = {.text = english("Choose…"), .notification = notifications::show_large_files}},
     .page = JunkPage::media,
     .move = notifications::move_media_large_files},
    {.type = "installs",
     .color = theme::orange,
     .short_name = english("Installers"),
     .about = {.identifier = "AboutInstalls",
               .text = english("Disk images and installer packages in Downloads, Desktop, Documents and Application "
                               "Support. Once something is installed its installer is not needed any more.")}},
};

}  // namespace

std::span<const CategoryLook> category_looks() {
  return looks;
}

const CategoryLook& look_of(std::string_view type) {
  const auto* found = std::ranges::find(looks, type, &CategoryLook::type);
  return found == std::end(looks) ? looks[0] : *found;
}

}  // namespace tarnby
