#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/home.h"

// Times a smart scan against du(1) over the same folders, a search for large files against find(1), and a junk scan
// with its removal against rm(1) on equal trees, one after the other in turn, and prints medians, ratios and peak
// memory. All are whole processes; what they print goes nowhere.

extern char** environ;  // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace {

using tarnby::bench::Home;

struct Run {
  double seconds = 0;
  long peak_kilobytes = 0;
};

Run run_once(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files = {};
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  const auto begin = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ) != 0) {
    std::fprintf(stderr, "compare: %s cannot be started\n", arguments[0]);
    _exit(2);
  }
  int status = 0;
  rusage used = {};
  wait4(child, &status, 0, &used);
  posix_spawn_file_actions_destroy(&files);
  if (status != 0) {
    std::fprintf(stderr, "compare: %s ended with status %d\n", arguments[0], status);
    _exit(2);
  }
  return {std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(), used.ru_maxrss};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

bool drop_caches() {
  sync();
  const int file = open("/proc/sys/vm/drop_caches", O_WRONLY | O_CLOEXEC);
  const bool dropped = file >= 0 && write(file, "3", 1) == 1;
  close(file);
  return dropped;
}

/// One of the two programs of a comparison, and what its runs took.
struct Side {
  std::string name;
  std::vector<std::string> words;
  std::vector<double> seconds = {};
  long peak_kilobytes = 0;

  void run() {
    const Run run = run_once(words);
    seconds.push_back(run.seconds);
    peak_kilobytes = std::max(peak_kilobytes, run.peak_kilobytes);
  }
};

void print(const char* state, const Side& ours, const Side& theirs) {
  std::vector<double> ratios;
  for (std::size_t at = 0; at < ours.seconds.size(); ++at) ratios.push_back(ours.seconds[at] / theirs.seconds[at]);
  std::printf("%-5s  %s %.3f s, %.1f MB   %s %.3f s, %.1f MB   ratio %.2f (%.2f to %.2f)\n", state, ours.name.c_str(),
              median(ours.seconds), static_cast<double>(ours.peak_kilobytes) / 1000, theirs.name.c_str(),
              median(theirs.seconds), static_cast<double>(theirs.peak_kilobytes) / 1000, median(ratios),
              *std::min_element(ratios.begin(), ratios.end()), *std::max_element(ratios.begin(), ratios.end()));
}

/// @param prepare is called before each run; false when it could not.
void compare(const char* state, Side ours, Side theirs, int rounds, const std::function<bool()>& prepare) {
  for (int round = 0; round < rounds; ++round) {
    // Whoever comes second may find the disk still busy with the first.
    Side* const turns[] = {round % 2 == 0 ? &ours : &theirs, round % 2 == 0 ? &theirs : &ours};
    for (Side* side : turns) {
      if (!prepare()) {
        std::printf("%-5s  not measured: only root may drop the caches\n", state);
        return;
      }
      side->run();
    }
  }
  print(state, ours, theirs);
}

/// Words for this program's command over a home.
std::vector<std::string> our_command(std::vector<std::string> words, const std::string& home,
                                     const std::string& applications) {
  words.insert(words.begin(), TARNBY_CLI);
  words.insert(words.end(), {"--json", "--quiet", "--home", home, "--applications", applications});
  return words;
}

/// Removes the same from two copies of the home, which are made anew for each round.
void compare_removal(const Home& home, const std::string& folder, int rounds) {
  const std::string copies[] = {folder + "/ours", folder + "/theirs"};
  Side ours{"junk scan and cleanup",
            our_command({"cleanup", "Caches", "Logs", "Remainders", "Browsers", "Mails", "Trash", "--yes"}, copies[0],
                        home.applications)};
  Side theirs{"rm", {"rm", "-rf"}};
  for (const std::string& measured : home.measured) {
    theirs.words.push_back(copies[1] + measured.substr(home.home.size()));
  }
  int prepared = 0;
  const auto prepare = [&] {
    if (prepared++ % 2 == 0) {
      for (const std::string& copy : copies) {
        run_once({"rm", "-rf", copy});
        run_once({"cp", "-a", home.home, copy});
      }
    }
    sync();
    return true;
  };
  compare("warm", ours, theirs, rounds, prepare);
  for (const std::string& copy : copies) run_once({"rm", "-rf", copy});
}

std::vector<std::size_t> asked_counts(int argc, char** argv) {
  std::vector<std::size_t> counts;
  for (int at = 2; at < argc; ++at) {
    std::size_t count = 0;
    const char* end = argv[at] + std::strlen(argv[at]);
    if (std::from_chars(argv[at], end, count).ptr != end || count == 0) return {};
    counts.push_back(count);
  }
  return counts;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::size_t> counts = asked_counts(argc, argv);
  if (counts.empty()) {
    std::fprintf(stderr,
                 "usage: compare FOLDER FILES...   (makes homes of that many files in FOLDER and keeps them)\n");
    return 2;
  }
  const std::string settings = std::string(argv[1]) + "/settings";  // nobody's own are touched
  setenv("XDG_CONFIG_HOME", settings.c_str(), 1);                   // NOLINT(concurrency-mt-unsafe): no thread yet
  for (const std::size_t count : counts) {
    const Home home = tarnby::bench::make_home(argv[1], count);
    const Side scan{"scan", our_command({"scan"}, home.home, home.applications)};
    Side du{"du", {"du", "-s", "--apparent-size"}};
    du.words.insert(du.words.end(), home.measured.begin(), home.measured.end());
    const Side large{"large", our_command({"large"}, home.home, home.applications)};
    const Side find{"find", {"find", home.home, "-size", "+9999999c"}};
    std::printf("%zu files\n", count);
    const bool is_large = count > 300'000;
    const auto nothing = [] { return true; };
    for (const auto& [ours, theirs] : {std::pair(scan, du), std::pair(large, find)}) {
      run_once(theirs.words);
      compare("warm", ours, theirs, is_large ? 7 : 15, nothing);
      compare("cold", ours, theirs, is_large ? 3 : 7, drop_caches);
    }
    compare_removal(home, argv[1], is_large ? 3 : 7);
  }
  return 0;
}
