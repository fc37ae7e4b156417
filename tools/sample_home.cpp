// Makes a home folder and an Applications folder to try every command on without risk: something for every category,
// invented, with believable sizes. The large files are sparse and take next to no room on the disk.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "files/descriptor.h"
#include "platform/session.h"
#include "text/text.h"
#include "tools/bundle_files.h"
#include "tools/sample_tree.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t KB = 1'000;
constexpr std::int64_t MB = 1'000 * KB;

/// Moments are given in days before now.
constexpr int never = -1;

// In all tables "~" is the home folder, and what does not begin with it lies beside the home folder.

using enum ListForm;

struct ApplicationRow {
  std::string_view path;
  std::string_view identifier;
  std::string_view version;
  ListForm form;
  std::int64_t size;
  int changed;
  int opened;
  std::string_view languages;
};

constexpr std::string_view few = "Base en de fr";
constexpr std::string_view many = "Base en de es fr it ja ko nl pt_BR sv zh_CN zh_TW";

// Unused are those that were neither changed nor opened in the last thirty days; the copy in Downloads belongs to the
// application of the same identifier.
constexpr ApplicationRow applications[] = {
    {"Applications/Airmail.app", "it.bloop.airmail2", "5.7", binary, 96 * MB, 12, 1, few},
    {"Applications/Firefox.app", "org.mozilla.firefox", "128.0", xml, 402 * MB, 9, 0, many},
    {"Applications/Google Chrome.app", "com.google.Chrome", "126.0.6478", binary, 611 * MB, 4, 2, many},
    {"Applications/Plain Tool.app", "", "0.9", xml, 3 * MB, 70, never, ""},
    {"Applications/Safari.app", "com.apple.Safari", "17.5", binary, 14 * MB, 45, 3, few},
    {"Applications/Spark.app", "com.readdle.smartemail-Mac", "3.1", xml, 188 * MB, 21, 5, few},
    {"Applications/Écluse Notes.app", "com.larkfield.ecluse-notes", "2.4.1", binary, 58 * MB, 210, never, many},
    {"Applications/Nordlys/Suite/Nordlys Studio.app", "com.nordlys.studio", "11.0", xml, 1'240 * MB, 320, 95, many},
    {"Applications/Utilities/Disk Lens.app", "com.larkfield.disklens", "1.3", binary, 9 * MB, 150, 140, few},
    {"~/Applications/Meadow Player.app", "net.meadow.player", "4.0", xml, 47 * MB, 60, 44, few},
    {"~/Documents/Projects/Kite Builder.app", "dev.kitehill.builder", "0.3", binary, 22 * MB, 16, 6, "Base en"},
    {"~/Downloads/Écluse Notes.app", "com.larkfield.ecluse-notes", "2.3.0", xml, 55 * MB, 400, 390, few},
    {"~/Library/Developer/Xcode/DerivedData/Kite-bqzx/Build/Products/Kite.app", "dev.kitehill.Kite", "1.0", binary,
     18 * MB, 3, never, "Base en"},
};

struct FileRow {
  std::string_view path;
  std::int64_t size;
  int changed = 0;
};

constexpr FileRow files[] = {
    // Caches: by the identifier and by the name of an installed application, and of nobody known.
    {"~/Library/Caches/com.google.Chrome/Default/Cache/data_0", 45 * MB},
    {"~/Library/Caches/com.google.Chrome/Default/Cache/data_1", 270 * MB},
    {"~/Library/Caches/Firefox/Profiles/k3x9w2ab.default/cache2/entries/0A1B2C", 182 * MB},
    {"~/Library/Caches/com.apple.Safari/WebKitCache/Version 16/Blobs", 64 * MB},
    {"~/Library/Caches/com.larkfield.ecluse-notes/Vorschau – Überblick/page 1.png", 2'450 * KB},
    {"~/Library/Caches/com.nordlys.studio/Render/frame 0001.tile", 340 * MB, 96},
    {"~/Library/Caches/com.nordlys.studio/Render/frame 0002.tile", 355 * MB, 96},
    {"~/Library/Caches/net.meadow.player/covers.db", 18 * MB},
    {"~/Library/Caches/FontRegistry/fonts.db", 7'300 * KB},
    {"~/Library/Caches/.hidden-index", 12 * KB},
    {"~/Library/Containers/com.readdle.smartemail-Mac/Data/Library/Caches/Avatars/avatars.db", 33 * MB},
    {"~/Library/Containers/it.bloop.airmail2/Data/Library/Caches/WebKit/Blobs/1", 21 * MB},
    {"~/Library/Containers/com.apple.mail/Data/Library/Caches/com.apple.mail/Cache.db", 5'600 * KB},
    {"~/Library/Containers/com.larkfield.ecluse-notes/Data/Documents/welcome.note", 40 * KB},

    // Logs.
    {"~/Library/Logs/DiagnosticReports/Firefox_2024-05-02.ips", 410 * KB, 60},
    {"~/Library/Logs/DiagnosticReports/Nordlys Studio_2024-02-11.ips", 1'200 * KB, 140},
    {"~/Library/Logs/Nordlys Studio/render.log", 86 * MB, 95},
    {"~/Library/Logs/Airmail/mail.log", 9'400 * KB},
    {"~/Library/Logs/install.log", 2'100 * KB},
    {"~/Library/Logs/émulateur 📦.log", 730 * KB},

    // Leftovers of removed applications, and what belongs to the installed ones beside them.
    {"~/Library/Caches/com.bluefern.painter/brushes.cache", 124 * MB, 230},
    {"~/Library/Containers/com.bluefern.painter/Data/Library/Caches/thumbs.db", 15 * MB, 230},
    {"~/Library/Saved Application State/com.bluefern.painter.savedState/windows.plist", 9 * KB, 230},
    {"~/Library/Preferences/com.bluefern.painter.plist", 4 * KB, 230},
    {"~/Library/Containers/org.hazelwood.scanner/Data/Library/Application Support/model.bin", 210 * MB, 410},
    {"~/Library/Application Scripts/org.hazelwood.scanner/convert.scpt", 6 * KB, 410},
    {"~/Library/Preferences/org.hazelwood.scanner.plist", 3 * KB, 410},
    {"~/Library/Caches/io.quickstep.remote/session.db", 31 * MB, 75},
    {"~/Library/Saved Application State/io.quickstep.remote.savedState/data.data", 48 * KB, 75},
    {"~/Library/Preferences/io.quickstep.remote.helper.plist", 2 * KB, 75},
    {"~/Library/Application Scripts/net.oldmill.archiver/README.txt", 1 * KB, 500},
    {"~/Library/Preferences/net.oldmill.archiver.plist", 5 * KB, 500},
    {"~/Library/Preferences/com.google.Chrome.plist", 12 * KB},
    {"~/Library/Preferences/org.mozilla.firefox.plist", 3 * KB},
    {"~/Library/Preferences/com.nordlys.studio.plist", 28 * KB, 95},
    {"~/Library/Preferences/com.larkfield.ecluse-notes.plist", 7 * KB, 200},
    {"~/Library/Preferences/com.apple.finder.plist", 16 * KB},
    {"~/Library/Saved Application State/com.nordlys.studio.savedState/windows.plist", 14 * KB, 95},
    {"~/Library/Application Scripts/com.larkfield.ecluse-notes/share.scpt", 4 * KB, 200},
    {"~/Library/Application Support/Nordlys Studio/Presets/Evening.preset", 640 * KB, 120},
    {"~/Library/Application Support/Nordlys Studio/Plug-ins/Grain.data", 22 * MB, 320},
    {"~/Library/Application Support/Meadow Player/library.db", 3'900 * KB},
    {"~/Library/LaunchAgents/com.nordlys.studio.updater.plist", 1 * KB, 320},
    {"~/Library/Cookies/com.nordlys.studio.binarycookies", 5 * KB, 95},

    // Browsers.
    {"~/Library/Application Support/Google/Chrome/Default/Application Cache/Index", 52 * MB},
    {"~/Library/Application Support/Google/Chrome/Default/Local Storage/leveldb/000003.log", 28 * MB},
    {"~/Library/Application Support/Google/Chrome/Default/Storage/ext/def/file__0", 17 * MB},
    {"~/Library/Application Support/Google/Chrome/Default/Sync Data/SyncData.sqlite3", 6'200 * KB},
    {"~/Library/Application Support/Google/Chrome/Default/Thumbnails/thumbnails.db", 11 * MB},
    {"~/Library/Application Support/Google/Chrome/Default/Session Storage/000005.ldb", 4'800 * KB},
    {"~/Library/Application Support/Google/Chrome/Default/Bookmarks", 90 * KB},
    {"~/Library/Application Support/Firefox/Profiles/k3x9w2ab.default/storage/default/site/idb/1.sqlite", 73 * MB},
    {"~/Library/Application Support/Firefox/Profiles/k3x9w2ab.default/places.sqlite", 10'400 * KB},
    {"~/Library/Application Support/Firefox/Profiles/q71mzt5c.work/storage/permanent/chrome/data.sqlite", 19 * MB},
    {"~/Library/Safari/LocalStorage/https_example.org_0.localstorage", 3'300 * KB},
    {"~/Library/Safari/LocalStorage/https_café.example_0.localstorage", 860 * KB},
    {"~/Library/Safari/Bookmarks.plist", 44 * KB},

    // Attachments of mail clients.
    {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/5F0C8A52-3D1B-4E7A-9C44-0B6E2A91D7F3/Angebot.pdf",
     2'700 * KB, 33},
    {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/A9E41D07-72BC-4C0F-8E15-6D3F58B2C610/holiday "
     "🏖.zip",
     94 * MB, 8},
    {"~/Library/Group Containers/2E337YPCZY.airmail/Library/Application "
     "Support/it.bloop.airmail2/Airmail/me@example.org/"
     "AttachmentsNg/1204/contract.pdf",
     5'100 * KB},
    {"~/Library/Group Containers/2E337YPCZY.airmail/Library/Application "
     "Support/it.bloop.airmail2/Airmail/me@example.org/"
     "AttachmentsNg/1377/slides.key",
     41 * MB},
    {"~/Library/Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail/General/Tmp/"
     "draft 12.eml",
     1'900 * KB},
    {"~/Library/Group Containers/3L68KQB4HG.group.com.readdle.smartemail/databases/messagesData/1/4711/photo.heic",
     3'600 * KB},
    {"~/Library/Group Containers/3L68KQB4HG.group.com.readdle.smartemail/databases/messagesData/2/4802/report.docx",
     12 * MB},

    // Installers; a name in capitals is none.
    {"~/Downloads/Firefox 128.0.dmg", 139 * MB, 9},
    {"~/Downloads/Nordlys Studio 11.pkg", 980 * MB, 320},
    {"~/Downloads/Trail Map.apk", 61 * MB, 25},
    {"~/Downloads/Old.DMG", 75 * MB, 700},
    {"~/Downloads/receipts 2024.zip", 6'800 * KB},
    {"~/Downloads/Überweisung.pdf", 240 * KB},
    {"~/Desktop/Printer Driver.pkg", 88 * MB, 50},
    {"~/Documents/Chess.ipa", 117 * MB, 260},
    {"~/Library/Application Support/Meadow Update.pkg", 46 * MB, 61},

    // The trash, hidden entries included.
    {"~/.Trash/old presentation.key", 57 * MB, 20},
    {"~/.Trash/Screenshot 2024-05-01 at 09.41.00.png", 1'800 * KB, 66},
    {"~/.Trash/.hidden notes", 8 * KB, 66},
    {"~/.Trash/Thesis drafts/draft 1.docx", 2'400 * KB, 300},
    {"~/.Trash/Thesis drafts/figures/Fig. 3 (été).tiff", 72 * MB, 300},

    // Large files, one of every type at least; the last is just too small to count.
    {"~/Movies/Birthday 2023.mov", 3'850 * MB, 420},
    {"~/Movies/Concert — Zürich.mp4", 1'470 * MB, 210},
    {"~/Movies/Screen Recordings/tutorial 🎬.m4v", 1'025 * MB, 40},
    {"~/Documents/Backups/server 2022.tar.gz", 2'200 * MB, 600},
    {"~/Documents/Backups/photos.zip", 760 * MB, 380},
    {"~/Documents/Projects/Linux ARM.iso", 1'950 * MB, 120},
    {"~/Documents/Projects/Atlas.pdf", 143 * MB, 80},
    {"~/Documents/Projects/dataset.bin", 512 * MB, 15},
    {"~/Music/Live Sets/Høstfest.wav", 690 * MB, 500},
    {"~/Music/Live Sets/encore.aiff", 205 * MB, 500},
    {"~/Pictures/Panorama.tif", 318 * MB, 90},
    {"~/Pictures/Photos Library.photoslibrary/database/Photos.sqlite", 84 * MB},
    {"~/Pictures/Photos Library.photoslibrary/originals/0/0A7C41D2.heic", 4'100 * KB, 180},
    {"~/Pictures/Photos Library.photoslibrary/originals/1/1F22B9E0.mov", 930 * MB, 175},
    {"~/Documents/just below.dat", 10 * MB - 1},

    // Ordinary files.
    {"~/Desktop/Einkaufsliste.txt", 1 * KB},
    {"~/Desktop/Screenshot 2024-06-14 at 18.02.11.png", 2'300 * KB},
    {"~/Documents/Lettre à Zoë.docx", 64 * KB},
    {"~/Documents/Projects/Kite/main.cpp", 18 * KB},
    {"~/Documents/Projects/Kite/README.md", 3 * KB},
    {"~/Pictures/Été 2023/plage.jpg", 3'400 * KB, 350},
    {"~/Pictures/Été 2023/coucher de soleil 🌅.jpg", 4'050 * KB, 350},
    {"~/Library/Developer/Xcode/DerivedData/Kite-bqzx/Build/Intermediates/main.o", 740 * KB},
    {"~/Library/Developer/Xcode/DerivedData/Kite-bqzx/Index/store.db", 35 * MB},
};

struct LinkRow {
  std::string_view path;
  std::string_view target;
};

constexpr LinkRow links[] = {
    {"~/Desktop/Current Project", "../Documents/Projects/Kite"},
};

void add_languages(SampleTree& tree, const fs::path& resources, std::string_view languages) {
  while (!languages.empty()) {
    const auto end = std::min(languages.find(' '), languages.size());
    const std::string folder = std::string(languages.substr(0, end)) + ".lproj";
    tree.file(resources / folder / "Localizable.strings", {}, 48 * KB);
    languages.remove_prefix(std::min(end + 1, languages.size()));
  }
}

/// Some colour, always the same for a name, so that the icons can be told apart.
Color color_of(std::string_view name) {
  std::uint32_t mixed = 2'166'136'261;
  for (const char c : name) mixed = (mixed ^ static_cast<unsigned char>(c)) * 16'777'619;
  const auto part = [mixed](int shift) { return static_cast<std::uint8_t>(64 + (mixed >> shift & 0x7F)); };
  return {part(24), part(16), part(8)};
}

void add_application(SampleTree& tree, const ApplicationRow& row) {
  const fs::path bundle = tree.place(row.path);
  const fs::path contents = bundle / "Contents";
  const std::string name = bundle.stem().string();
  const BundleValues values = {std::string(row.identifier), name, name, "AppIcon", std::string(row.version)};
  tree.content(contents / "Info.plist", info_list(values, row.form));
  tree.content(contents / "Resources" / "AppIcon.icns", icon_file(color_of(name)));
  add_languages(tree, contents / "Resources", row.languages);
  const fs::path executable = contents / "MacOS" / name;
  tree.file(executable, {}, row.size);
  // Opened is what was read after it was last changed. The folder comes last: each entry made in it changes it.
  tree.date(executable, row.opened == never ? row.changed : row.opened, row.changed);
  tree.date(bundle, row.changed, row.changed);
}

void add_everything(SampleTree& tree) {
  for (const ApplicationRow& row : applications) add_application(tree, row);
  for (const FileRow& row : files) {
    const fs::path path = tree.place(row.path);
    tree.file(path, {}, row.size);
    tree.date(path, row.changed, row.changed);
  }
  for (const LinkRow& row : links) tree.link(tree.place(row.path), row.target);
}

std::string quoted(const fs::path& path) {
  std::string text = "'";
  for (const char c : path.string()) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

void print_summary(const SampleTree& tree, const Text& text) {
  const std::string folders =
      " --home " + quoted(tree.home()) + " --applications " + quoted(tree.applications()) + "\n";
  std::cout << "Home:          " << tree.home().string() << "\n"
            << "Applications:  " << tree.applications().string() << "\n"
            << "Holds:         " << tree.entries() << " entries, " << text.byte_count(tree.bytes())
            << ", nearly all of it holes that take no room\n\nTry:\n";
  const std::string studio = quoted(tree.applications() / "Nordlys/Suite/Nordlys Studio.app");
  const std::string commands[] = {"scan",   "clean --dry-run",   "clean",
                                  "junk",   "cleanup --dry-run", "large",
                                  "apps",   "app " + studio,     "uninstall --dry-run " + studio,
                                  "unused", "languages"};
  for (const std::string& command : commands) std::cout << "  tarnby-cleaner-cli " << command << folders;
}

void print_linux_summary(const SampleTree& tree, const Text& text) {
  std::cout << "Home:   " << tree.home().string() << "\n"
            << "Holds:  " << tree.entries() << " entries, " << text.byte_count(tree.bytes()) << "\n\nTry:\n";
  for (const char* command : {"scan", "clean --dry-run", "clean", "junk", "cleanup --dry-run", "large"}) {
    std::cout << "  tarnby-cleaner-cli " << command << " --home " << quoted(tree.home()) << "\n";
  }
}

/// A kind of home: what fills it, and what is told of it.
struct Kind {
  void (*fill)(SampleTree& tree);
  void (*summary)(const SampleTree& tree, const Text& text);
};
constexpr Kind macos_kind = {add_everything, print_summary};
constexpr Kind linux_kind = {add_linux_home, print_linux_summary};

/// Why nothing may be made in this folder; empty when it may.
std::string objection(const fs::path& folder) {
  if (!fs::exists(fs::symlink_status(folder))) return {};
  if (!fs::is_directory(folder)) return "is not a folder";
  return fs::is_empty(folder) ? "" : "is not empty; name a new folder, nothing is ever replaced";
}

int refuse(const std::string& reason) {
  std::cerr << "sample-home: " << reason << "\n";
  return 2;
}

int run(const fs::path& folder, const Kind& kind) {
  if (const std::string reason = objection(folder); !reason.empty()) return refuse(folder.string() + " " + reason);
  const Session session = current_session();
  if (session.user_name.empty()) return refuse("this account has no user name to call the home folder by");
  fs::create_directories(folder);
  SampleTree tree(fs::canonical(folder), session.user_name);
  kind.fill(tree);
  kind.summary(tree, Text(session.collation_locale, session.number_locale));
  return 0;
}

}  // namespace
}  // namespace tarnby

int main(int count, char** arguments) {
  const bool is_linux = count == 3 && std::string_view(arguments[1]) == "--linux";
  const char* folder = count < 2 ? "" : arguments[count - 1];
  if ((count != 2 && !is_linux) || folder[0] == '-' || folder[0] == '\0') {
    return tarnby::refuse("usage: sample-home [--linux] DIR (a new or empty folder)");
  }
  try {
    return tarnby::run(folder, is_linux ? tarnby::linux_kind : tarnby::macos_kind);
  } catch (const std::exception& error) {
    std::cerr << "sample-home: " << error.what() << "\n";
    return 1;
  }
}
