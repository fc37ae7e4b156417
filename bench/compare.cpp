#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/home.h"

// Times a smart scan against du(1) over the same folders, one after the other in turn, and prints medians, ratios and
// peak memory. Both are whole processes; what they print goes nowhere.

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

void compare(const char* state, const std::vector<std::string>& ours, const std::vector<std::string>& theirs,
             int rounds, const std::function<bool()>& prepare) {
  std::vector<double> our_seconds;
  std::vector<double> their_seconds;
  std::vector<double> ratios;
  long our_peak = 0;
  long their_peak = 0;
  for (int round = 0; round < rounds; ++round) {
    if (!prepare()) {
      std::printf("%-5s  not measured: only root may drop the caches\n", state);
      return;
    }
    const Run our = run_once(ours);
    prepare();
    const Run their = run_once(theirs);
    our_seconds.push_back(our.seconds);
    their_seconds.push_back(their.seconds);
    ratios.push_back(our.seconds / their.seconds);
    our_peak = std::max(our_peak, our.peak_kilobytes);
    their_peak = std::max(their_peak, their.peak_kilobytes);
  }
  std::printf("%-5s  scan %.3f s, %.1f MB   du %.3f s, %.1f MB   ratio %.2f (%.2f to %.2f)\n", state,
              median(our_seconds), static_cast<double>(our_peak) / 1000, median(their_seconds),
              static_cast<double>(their_peak) / 1000, median(ratios), *std::min_element(ratios.begin(), ratios.end()),
              *std::max_element(ratios.begin(), ratios.end()));
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
  for (const std::size_t count : counts) {
    const Home home = tarnby::bench::make_home(argv[1], count);
    const std::vector<std::string> scan = {TARNBY_CLI, "scan",    "--json",         "--quiet",
                                           "--home",   home.home, "--applications", home.applications};
    std::vector<std::string> du = {"du", "-s", "--apparent-size"};
    du.insert(du.end(), home.measured.begin(), home.measured.end());
    std::printf("%zu files\n", count);
    const bool is_large = count > 300'000;
    run_once(du);
    compare("warm", scan, du, is_large ? 7 : 15, [] { return true; });
    compare("cold", scan, du, is_large ? 3 : 7, drop_caches);
  }
  return 0;
}
