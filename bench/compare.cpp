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

// Times what this program does beside what the system brings for the same work (du, find, rm, true) and beside
// bench/limit, the least that the kernel has to be asked for: one after the other in turn, whole processes, what they
// print goes nowhere. Prints medians, the medians of the ratios, and how much of the other's time ours may take.

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

/// One program of a comparison, and what its runs took.
struct Side {
  std::string name;
  std::vector<std::string> words;
  /// How much of its time ours may take; 0 where nothing is asked.
  double at_most = 0;
  std::vector<double> seconds = {};
  long peak_kilobytes = 0;

  void run() {
    const Run run = run_once(words);
    seconds.push_back(run.seconds);
    peak_kilobytes = std::max(peak_kilobytes, run.peak_kilobytes);
  }
};

void print_verdict(double value, double at_most) {
  if (at_most > 0) std::printf("   at most %.2f%s", at_most, value > at_most ? ": OVER" : "");
  std::printf("\n");
}

void print_side(const Side& side) {
  std::printf("      %-12s %8.4f s %6.1f MB", side.name.c_str(), median(side.seconds),
              static_cast<double>(side.peak_kilobytes) / 1000);
}

void print(const char* state, const std::vector<Side>& sides) {
  std::printf("%s\n", state);
  print_side(sides[0]);
  std::printf("\n");
  for (std::size_t other = 1; other < sides.size(); ++other) {
    std::vector<double> ratios;
    for (std::size_t at = 0; at < sides[0].seconds.size(); ++at) {
      ratios.push_back(sides[0].seconds[at] / sides[other].seconds[at]);
    }
    print_side(sides[other]);
    std::printf("   ratio %.2f (%.2f to %.2f)", median(ratios), *std::min_element(ratios.begin(), ratios.end()),
                *std::max_element(ratios.begin(), ratios.end()));
    print_verdict(median(ratios), sides[other].at_most);
  }
  std::fflush(stdout);
}

/// Runs the sides in turn, ours first in the list.
/// @param prepare is called before each run; false when it could not.
/// @return the median seconds of each side; empty when nothing was measured.
std::vector<double> compare(const char* state, std::vector<Side> sides, int rounds,
                            const std::function<bool()>& prepare) {
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t turn = 0; turn < sides.size(); ++turn) {
      if (!prepare()) {
        std::printf("%s\n      not measured: only root may drop the caches\n", state);
        return {};
      }
      // Whoever comes later may find the disk still busy with the one before.
      sides[(static_cast<std::size_t>(round) + turn) % sides.size()].run();
    }
  }
  print(state, sides);
  std::vector<double> medians;
  medians.reserve(sides.size());
  for (const Side& side : sides) medians.push_back(median(side.seconds));
  return medians;
}

bool nothing_to_prepare() {
  return true;
}

/// Words for this program's command over a home.
std::vector<std::string> our_command(std::vector<std::string> words, const std::string& home,
                                     const std::string& applications) {
  words.insert(words.begin(), TARNBY_CLI);
  words.insert(words.end(), {"--json", "--quiet", "--home", home, "--applications", applications});
  return words;
}

std::vector<std::string> joined(std::vector<std::string> words, const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

Side limit(const char* work, const char* threads, const std::vector<std::string>& folders, double at_most) {
  return {std::string("limit, ") + threads, joined({TARNBY_LIMIT, work, threads}, folders), at_most};
}

/// Removes the same from copies of the home, one a side, which are made anew for each round. The whole command searches
/// first and measures, which the others do not.
void compare_removal(const Home& home, const std::string& folder, int rounds) {
  const std::vector<std::string> copies = {folder + "/ours", folder + "/limit", folder + "/theirs", folder + "/whole",
                                           folder + "/unconfined"};
  const auto measured_in = [&](const std::string& copy) {
    std::vector<std::string> folders;
    for (const std::string& measured : home.measured) folders.push_back(copy + measured.substr(home.home.size()));
    return folders;
  };
  const std::vector<std::string> cleanup = {"cleanup",  "Caches", "Logs",  "Remainders",
                                            "Browsers", "Mails",  "Trash", "--yes"};
  const std::vector<Side> sides = {
      {"remove", joined({TARNBY_REMOVE, copies[0]}, measured_in(copies[0]))},
      limit("remove", "8", measured_in(copies[1]), 0),
      {"rm -rf", joined({"rm", "-rf"}, measured_in(copies[2])), 0.5},
      {"cleanup", our_command(cleanup, copies[3], home.applications)},
      {"unconfined", joined({TARNBY_REMOVE, "--unconfined", copies[4]}, measured_in(copies[4])), 1.25}};
  std::size_t prepared = 0;
  const auto prepare = [&] {
    if (prepared++ % copies.size() == 0) {
      for (const std::string& copy : copies) {
        run_once({"rm", "-rf", copy});
        run_once({"cp", "-a", home.home, copy});
      }
    }
    sync();
    return true;
  };
  compare("removal", sides, rounds, prepare);
  for (const std::string& copy : copies) run_once({"rm", "-rf", copy});
}

/// Every command that looks, once each: none may need much memory however many files there are.
void print_memory(const Home& home) {
  constexpr double most_megabytes = 64;
  std::printf("peak memory\n");
  for (const char* command : {"scan", "junk", "large", "apps", "unused", "languages"}) {
    const Run run = run_once(our_command({command}, home.home, home.applications));
    const double megabytes = static_cast<double>(run.peak_kilobytes) / 1000;
    std::printf("      %-12s %6.1f MB", command, megabytes);
    print_verdict(megabytes, most_megabytes);
  }
}

/// What a home took to scan, and the least it can take.
struct Scanned {
  std::size_t files = 0;
  double scan = 0;
  double limit = 0;
};

/// What it takes to start and find nothing.
Scanned compare_start(const std::string& folder) {
  constexpr double most_milliseconds = 10;
  constexpr int rounds = 41;
  const std::string home = folder + "/empty/user";
  const std::string applications = folder + "/empty/Applications";
  run_once({"mkdir", "-p", home, applications});
  const auto seconds =
      compare("almost empty home",
              {{"scan", our_command({"scan"}, home, applications)}, limit("walk", "2", {home}, 0), {"true", {"true"}}},
              rounds, nothing_to_prepare);
  const double more = (seconds[0] - seconds[2]) * 1000;
  std::printf("      %.1f ms more than true", more);
  print_verdict(more, most_milliseconds);
  return {0, seconds[0], seconds[1]};
}

Scanned compare_home(const std::string& folder, std::size_t files) {
  const Home home = tarnby::bench::make_home(folder, files);
  // The shorter a run, the more of them.
  const int warm = static_cast<int>(std::clamp<std::size_t>(1'500'000 / files, 7, 61));
  const int cold = static_cast<int>(std::clamp<std::size_t>(700'000 / files, 3, 7));
  // A small home is there for the growth; its times are mostly the start's.
  const auto at_most = [&](double ratio) { return files < 100'000 ? 0 : ratio; };
  const Side scan{"scan", our_command({"scan"}, home.home, home.applications)};
  const Side large{"large", our_command({"large"}, home.home, home.applications)};
  // The folders that are measured, and all that a scan goes through: of the others it needs no sizes, only names.
  const auto du = [&](const char* name, const std::vector<std::string>& folders, double ratio) {
    return Side{name, joined({"du", "-s", "--apparent-size"}, folders), at_most(ratio)};
  };
  const auto compare_scan = [&](const char* state, const char* threads, double of_limit, double of_du, int rounds,
                                const std::function<bool()>& prepare) {
    return compare(state,
                   {scan, limit("walk", threads, home.measured, at_most(of_limit)),
                    du("du, measured", home.measured, of_du), du("du, all", home.gone_through, of_du)},
                   rounds, prepare);
  };
  const auto find = [&](double ratio) {
    return Side{"find", {"find", home.home, "-size", "+9999999c"}, at_most(ratio)};
  };
  std::printf("\n%zu files\n", files);
  run_once(find(0).words);
  const auto scanned = compare_scan("smart scan, warm", "2", 1.2, 0.48, warm, nothing_to_prepare);
  compare_scan("smart scan, cold", "8", 1.3, 0.4, cold, drop_caches);
  run_once(find(0).words);
  compare("large files, warm", {large, find(0.42)}, warm, nothing_to_prepare);
  compare("large files, cold", {large, find(0.4)}, cold, drop_caches);
  compare_removal(home, folder, cold);
  print_memory(home);
  return {files, scanned[0], scanned[1]};
}

/// How much longer a file takes in the largest home than in the smallest, beyond what the start takes anyway. The limit
/// tells how much of it is the machine's: fewer files fit its nearer caches better.
void print_growth(const Scanned& start, const Scanned& small, const Scanned& large) {
  const double times = static_cast<double>(large.files) / static_cast<double>(small.files);
  const double growth = (large.scan - start.scan) / (small.scan - start.scan) / times;
  std::printf("\ngrowth from %zu to %zu files, a file: %.2f times", small.files, large.files, growth);
  std::printf(" (limit: %.2f)", (large.limit - start.limit) / (small.limit - start.limit) / times);
  print_verdict(growth, 1.1);
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
  const Scanned start = compare_start(argv[1]);
  std::vector<Scanned> scanned;
  scanned.reserve(counts.size());
  for (const std::size_t count : counts) scanned.push_back(compare_home(argv[1], count));
  if (scanned.size() > 1) print_growth(start, scanned.front(), scanned.back());
  return 0;
}
