#include "bench/home.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace tarnby::bench {

namespace {

namespace fs = std::filesystem;

/// Where the files of the home go: a folder of which there may be several, and its share of all files in percent.
struct ShareRow {
  const char* beneath_home;
  int percent;
  int copies;  // "%" in the path becomes the number of the copy
};

constexpr ShareRow shares[] = {
    {"Library/Caches/com.example.app%", 40, 60},
    {"Library/Caches/com.gone.tool%", 6, 20},
    {"Library/Containers/com.example.app%/Data/Library/Caches", 14, 40},
    {"Library/Containers/com.gone.tool%/Data/Library/Caches", 3, 20},
    {"Library/Logs/app%", 6, 20},
    {"Library/Application Support/Google/Chrome/Default/Application Cache/%", 4, 4},
    {"Library/Application Support/Firefox/Profiles/p%.default/storage", 4, 2},
    {"Library/Safari/LocalStorage/%", 2, 2},
    {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads/%", 3, 30},
    {".Trash/%", 8, 20},
    {"Documents/project%", 5, 10},
    {"Desktop/%", 1, 5},
    {"Library/Developer/Xcode/DerivedData/build%", 4, 4},
};

constexpr const char* measured_folders[] = {
    "Library/Caches",
    "Library/Containers",
    "Library/Logs",
    "Library/Application Support/Google/Chrome/Default/Application Cache",
    "Library/Application Support/Firefox/Profiles",
    "Library/Safari/LocalStorage",
    ".Trash",
};

/// Where it looks for applications.
constexpr const char* searched_folders[] = {"Documents", "Desktop", "Library/Developer/Xcode/DerivedData"};

void make_file(int folder, const std::string& name, off_t size) {
  const int file = openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
  if (file < 0 || ftruncate(file, size) != 0) throw std::system_error(errno, std::generic_category(), name);
  close(file);
}

/// Folders of a few files, some with folders of their own, now and then one of many.
void fill(const fs::path& top, std::size_t files, std::mt19937& random) {
  fs::path folder = top;
  for (std::size_t made = 0, depth = 0; made < files;) {
    fs::create_directories(folder);
    const std::size_t many = random() % 40 == 0 ? 300 : 4 + random() % 16;
    const std::size_t here = std::min(files - made, many);
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (std::size_t at = 0; at < here; ++at) {
      make_file(handle, "entry-" + std::to_string(at) + ".bin", static_cast<off_t>(random() % 200'000));
    }
    close(handle);
    made += here;
    const bool deeper = depth < 5 && random() % 3 != 0;
    folder = (deeper ? folder : top) / ("f" + std::to_string(made));
    depth = deeper ? depth + 1 : 0;
  }
}

std::string numbered(std::string path, int number) {
  const auto at = path.find('%');
  if (at != std::string::npos) path.replace(at, 1, std::to_string(number));
  return path;
}

void make_application(const fs::path& applications, int number) {
  const fs::path contents = applications / ("App" + std::to_string(number) + ".app") / "Contents";
  fs::create_directories(contents / "MacOS");
  std::ofstream(contents / "Info.plist") << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                                         << "<key>CFBundleIdentifier</key><string>com.example.app" << number
                                         << "</string>"
                                         << "<key>CFBundleName</key><string>App " << number
                                         << "</string></dict></plist>\n";
}

void make_files(const fs::path& folder, std::size_t count, const std::string& name) {
  fs::create_directories(folder);
  const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (std::size_t at = 0; at < count; ++at) {
    make_file(handle, name + std::to_string(at * 7919 % count), static_cast<off_t>(at % 4000 + 1));
  }
  close(handle);
}

}  // namespace

Home make_wide_home(const std::string& folder) {
  const fs::path top = fs::path(folder) / "home-wide";
  const fs::path library = top / "user" / "Library";
  if (!fs::exists(top / "finished")) {
    fs::remove_all(top);
    make_files(library / "Logs", wide_home.logs, "tool ");
    for (std::size_t at = 0; at < wide_home.applications; ++at) make_application(top / "Applications", int(at));
    for (std::size_t at = 0; at < wide_home.caches; ++at) {
      make_files(library / "Caches" / ((at % 2 == 0 ? "com.example.app" : "com.gone.tool") + std::to_string(at)), 1,
                 "f");
    }
    std::ofstream(top / "finished") << wide_home.logs << '\n';
  }
  return {(top / "user").string(), (top / "Applications").string(), {}};
}

Home make_home(const std::string& folder, std::size_t files) {
  const fs::path top = fs::path(folder) / ("home-" + std::to_string(files));
  const fs::path home = top / "user";
  const fs::path finished = top / "finished";
  if (!fs::exists(finished)) {
    fs::remove_all(top);
    std::mt19937 random(20'240'501);  // the same home every time, so that results can be compared
    for (const ShareRow& share : shares) {
      const std::size_t each =
          files * static_cast<std::size_t>(share.percent) / 100 / static_cast<std::size_t>(share.copies);
      for (int copy = 0; copy < share.copies; ++copy) fill(home / numbered(share.beneath_home, copy), each, random);
    }
    for (int number = 0; number < 60; ++number) make_application(top / "Applications", number);
    std::ofstream(finished) << files << '\n';
  }
  Home made{home.string(), (top / "Applications").string(), {}};
  for (const char* measured : measured_folders) made.measured.push_back((home / measured).string());
  made.gone_through = made.measured;
  for (const char* searched : searched_folders) made.gone_through.push_back((home / searched).string());
  return made;
}

}  // namespace tarnby::bench
