#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "places/desktop_entries.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

/// A folder of 3,000 entries as desktops have them: each with names and comments in 60 languages; gone at the end.
class Applications {
 public:
  Applications() {
    fs::create_directories(folder_);
    std::string translations;
    for (int language = 0; language < 60; ++language) {
      const std::string tag = {'[', static_cast<char>('a' + language / 26), static_cast<char>('a' + language % 26),
                               ']'};
      translations.append("Name").append(tag).append("=Ein Programm\nComment").append(tag);
      translations.append("=Was es tut, in einem kurzen Satz\n");
    }
    for (int number = 0; number < 3'000; ++number) {
      const std::string name = "org.example.Program" + std::to_string(number);
      std::ofstream(folder_ / (name + ".desktop"))
          << "[Desktop Entry]\nType=Application\nName=A program\n"
          << translations << "Exec=/usr/bin/program" << number << " --new-window %U\nIcon=" << name
          << "\nStartupWMClass=" << name << "\n\n[Desktop Action New]\nName=New\n";
    }
  }
  ~Applications() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  Applications(const Applications&) = delete;
  Applications& operator=(const Applications&) = delete;

  RegistryPlaces places() const { return {{Url::file(folder_.string())}, {}, true}; }

 private:
  fs::path folder_ = fs::temp_directory_path() / ("tarnby-bench-applications-" + std::to_string(getpid()));
};

void read_3000_entries(benchmark::State& state) {
  static const Applications applications;
  const std::string languages[] = {"de-AT", "en-US"};
  for (auto _ : state) benchmark::DoNotOptimize(DesktopEntries::read(applications.places(), languages));
}
BENCHMARK(read_3000_entries)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarnby
