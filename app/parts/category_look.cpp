#include "app/parts/category_look.h"

#include <algorithm>
#include <iterator>

#include "text/localization.h"
#include "ui/theme.h"

namespace tarnby {

namespace {

const CategoryLook looks[] = {
    {"caches", theme::blue, english("Caches"), "AboutCaches",
     english("Copies of things that applications keep to be faster. They are made anew when they are needed, so an "
             "application may start a little slower the next time.")},
    {"logs", theme::violet, english("Logs"), "AboutLogs",
     english("Diaries that applications write about their own work. They help when something went wrong; otherwise "
             "nobody reads them.")},
    {"remainders", theme::amber, english("Remainders"), "AboutRemainders",
     english("Settings and data of applications that are not installed any more. If you mean to install one of them "
             "again, untick it: it will find its settings.")},
    {"browsers", theme::teal, english("Browsers"), "AboutBrowsers",
     english("What web sites have stored in your browsers. Without it some sites forget your settings or ask you to "
             "sign in again. Quit the browser first. Bookmarks and passwords stay.")},
    {"mails", theme::pink, english("Mails"), "AboutMails",
     english("Attachments that your mail programs have saved on this disk. The messages stay, and attachments that are "
             "still on the mail server can be opened again.")},
    {"installs", theme::orange, english("Installers"), "AboutInstalls",
     english("Disk images and installer packages in Downloads, Desktop, Documents and Application Support. Once "
             "something is installed its installer is not needed any more.")},
    {"trash", theme::silver, english("Trash"), "AboutTrash",
     english("Files you have already thrown away. They still take space until the Trash is emptied. Removing them here "
             "is permanent.")},
    {"downloads", theme::azure, english("Downloads"), "AboutDownloads",
     english("Everything you have saved from the net. Look through it now and then: what you no longer need is best "
             "removed by hand.")},
    {"large-files", theme::green, english("Large files"), "AboutLargeFiles",
     english("Single files, applications and packages of 10 MB and more, but for single files in Downloads, caches and "
             "logs. A row says when another category lists it, too. Nothing is chosen until you choose it.")},
};

}  // namespace

const CategoryLook& look_of(std::string_view type) {
  const auto* found =
      std::find_if(std::begin(looks), std::end(looks), [&](const CategoryLook& look) { return look.type == type; });
  return found == std::end(looks) ? looks[0] : *found;
}

}  // namespace tarnby
