#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "inventory/application.h"
#include "platform/platform.h"

// The files of one application in a Library of 200,000 entries, in turn with find(1) over the folders that are walked
// for it: getfiles with its sizes against one `find FOLDERS -name NOTHING`.

extern char** environ;  // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace {

using namespace tarnby;
namespace fs = std::filesystem;

/// A folder of the Library and its share of the entries, in percent.
struct ShareRow {
  const char* beneath_library;
  int percent;
};

constexpr ShareRow walked[] = {{"Application Support", 70}, {"Logs", 10}, {"Caches/com.apple.helpd", 4}};
constexpr ShareRow listed[] = {
    {"Preferences", 4}, {"Containers", 4}, {"Caches", 4}, {"Group Containers", 2}, {"Application Scripts", 2}};
constexpr int entries = 200'000;

void make_file(const fs::path& path) {
  std::ofstream(path) << "x";
}

/// Vendors' folders with folders of a few files.
void fill_deep(const fs::path& top, int count, std::mt19937& random) {
  for (int made = 0, number = 0; made < count; ++number) {
    const fs::path folder = top / ("Vendor " + std::to_string(number / 40)) / ("part" + std::to_string(number % 8)) /
                            ("com.vendor.item" + std::to_string(number));
    fs::create_directories(folder);
    const int files = 5 + static_cast<int>(random() % 20);
    for (int at = 0; at < files; ++at) make_file(folder / ("resource-" + std::to_string(at) + ".data"));
    made += files + 1;
  }
}

fs::path make_tree() {
  fs::path top = fs::temp_directory_path() / "tarnby-bench-related";
  if (fs::exists(top / "finished")) return top;
  fs::remove_all(top);
  const fs::path library = top / "home/Library";
  std::mt19937 random(20'240'501);  // the same every time, so that results can be compared
  for (const ShareRow& row : walked) fill_deep(library / row.beneath_library, entries / 100 * row.percent, random);
  for (const ShareRow& row : listed) {
    fs::create_directories(library / row.beneath_library);
    for (int at = 0; at < entries / 100 * row.percent; ++at) {
      make_file(library / row.beneath_library / ("com.vendor" + std::to_string(at) + ".Product.plist"));
    }
  }
  const fs::path contents = top / "Applications/Item Editor.app/Contents";
  fs::create_directories(contents);
  std::ofstream(contents / "Info.plist") << "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                                            "<string>com.vendor77.item1234</string><key>CFBundleName</key>"
                                            "<string>item1234</string></dict></plist>";
  make_file(top / "finished");
  return top;
}

void run_find(const std::vector<std::string>& folders) {
  std::vector<std::string> words = {"find"};
  words.insert(words.end(), folders.begin(), folders.end());
  words.insert(words.end(), {"-name", "no such name"});
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  int status = 0;
  if (posix_spawnp(&child, "find", nullptr, nullptr, arguments.data(), environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error("find did not work");
  }
}

template <typename Work>
double seconds_of(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// The time is ours; the counters have the median of find's and of the ratios.
void related_files(benchmark::State& state) {
  const fs::path top = make_tree();
  PlainMainQueue queue;
  Session session;
  session.settings_folder = Url::file((top / "settings").string());
  Platform platform(session, nullptr, queue);
  if (!platform.bookmarks.store(Grant::home, Url::file((top / "home").string()))) state.SkipWithError("no settings");
  if (!platform.bookmarks.store(Grant::applications, Url::file((top / "Applications").string()))) return;
  std::vector<std::string> folders;
  for (const ShareRow& row : walked) folders.push_back((top / "home/Library" / row.beneath_library).string());
  const Application inventory(platform);
  const Url bundle = Url::file((top / "Applications/Item Editor.app").string());
  std::vector<double> finds;
  std::vector<double> ratios;
  std::size_t found = 0;
  run_find(folders);
  for (auto _ : state) {
    const auto item = inventory.application(bundle);
    const double ours = seconds_of([&] { item->getfiles(platform, [] {}); });
    finds.push_back(seconds_of([&] { run_find(folders); }));
    ratios.push_back(ours / finds.back());
    found = item->listed_files().size();
    state.SetIterationTime(ours);
  }
  state.counters["found"] = static_cast<double>(found);
  state.counters["find_ms"] = median(finds) * 1'000;
  state.counters["ratio_to_find"] = median(ratios);
}
BENCHMARK(related_files)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace
