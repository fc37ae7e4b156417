// Stops the terminal program's commands (a signal) and the engine's searches (as a closing screen does) at random
// moments and prints how long that took at worst.
//   cancel FOLDER [FILES...]      on homes of that many files, made in FOLDER and kept, and on one of many short lists

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/grants.h"
#include "engine/cleaner.h"
#include "platform/platform.h"

extern char** environ;  // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace {

using namespace tarnby;
using bench::Home;
using Clock = std::chrono::steady_clock;
using Words = std::vector<std::string>;

constexpr int rounds = 20;

double ms_since(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// Times a piece of work when it is left alone, then stops it at random moments of that time.
/// @param start begins it; `stop` ends it; `wait` returns when it has ended.
void measure(const std::string& name, const std::function<void()>& start, const std::function<void()>& stop,
             const std::function<void()>& wait) {
  const auto begin = Clock::now();
  start();
  wait();
  const double whole = ms_since(begin);
  std::minstd_rand random(20'240'501);
  std::vector<double> took;
  for (int round = 0; round < rounds; ++round) {
    const double moment = std::uniform_real_distribution<double>(0, whole)(random);
    start();
    std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(moment));
    const auto asked = Clock::now();
    stop();
    wait();
    took.push_back(ms_since(asked));
  }
  std::sort(took.begin(), took.end());
  std::printf("%-24s runs %8.1f ms   stops after %6.2f ms, at worst %7.2f of %d%s\n", name.c_str(), whole,
              took[took.size() / 2], took.back(), rounds, took.back() > 100 ? "   TOO LATE" : "");
}

/// The terminal program with these words, its output going nowhere.
void measure_command(const Home& home, Words words) {
  const std::string name = "Ctrl-C  " + words.front();
  words.insert(words.begin(), TARNBY_CLI);
  words.insert(words.end(), {"--json", "--home", home.home, "--applications", home.applications});
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files = {};
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  measure(
      name,
      [&] {
        if (posix_spawn(&child, arguments[0], &files, nullptr, arguments.data(), environ) != 0) std::abort();
      },
      [&] { kill(child, SIGINT); }, [&] { waitpid(child, nullptr, 0); });
  posix_spawn_file_actions_destroy(&files);
}

/// The engine of a window, with grants of its own and settings that are nowhere.
struct Engine {
  explicit Engine(const Home& home) : platform(current_session(), settings_of(home), main_queue) {}

  static std::unique_ptr<SettingsStore> settings_of(const Home& home) {
    auto settings = bench::granted_settings(home);
    settings->set_for_this_run("include_user_apps", 1);
    return settings;
  }

  PlainMainQueue main_queue;
  Platform platform;
  Application inventory{platform};
  Cache cache{platform, inventory};
  Remainders remainders{platform, cache};
  Cleaner cleaner{platform, cache, remainders};
};

void measure_search(const Home& home, const char* name, const std::function<void(Engine&)>& search) {
  Engine engine(home);
  std::thread thread;
  const auto start = [&] {
    engine.platform.files.look_again();
    thread = std::thread([&] { search(engine); });
  };
  measure(
      std::string("screen  ") + name, start, [&] { engine.platform.files.stop_looking(); }, [&] { thread.join(); });
}

void measure_all(const Home& home) {
  measure_command(home, {"scan"});
  measure_command(home, {"junk"});
  measure_command(home, {"large"});
  measure_command(home, {"apps"});
  measure_command(home, {"app", home.applications + "/App0.app"});
  measure_command(home, {"unused"});
  measure_command(home, {"languages"});
  measure_search(home, "smart scan", [](Engine& engine) { engine.cleaner.smart_clean_with_complete_handler([] {}); });
  measure_search(home, "junk scan", [](Engine& engine) { engine.cleaner.clean_with_complete_handler([] {}); });
  measure_search(home, "large files", [](Engine& engine) {
    engine.cleaner.search_large_files_with_complete_handler([](const auto&, const auto&, std::int64_t) {});
  });
  measure_search(home, "applications", [](Engine& engine) { engine.inventory.installedApplications([](bool) {}); });
  measure_search(home, "unused applications", [](Engine& engine) { engine.inventory.unusedApplications([](bool) {}); });
  measure_search(home, "related files", [&](Engine& engine) {
    engine.inventory.application(Url::file(home.applications + "/App0.app"))->getfiles(engine.platform, [] {});
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    (void)std::fprintf(stderr, "usage: cancel FOLDER [FILES...]   (makes its homes in FOLDER and keeps them)\n");
    return 2;
  }
  const std::string settings = std::string(argv[1]) + "/settings";  // nobody's own are touched
  setenv("XDG_CONFIG_HOME", settings.c_str(), 1);                   // NOLINT(concurrency-mt-unsafe): no thread yet
  (void)std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  for (int at = 2; at < argc; ++at) {
    std::printf("%s files\n", argv[at]);
    measure_all(bench::make_home(argv[1], std::strtoul(argv[at], nullptr, 10)));
  }
  const auto& [logs, applications, caches] = bench::wide_home;
  std::printf("%zu logs, %zu applications, %zu caches\n", logs, applications, caches);
  measure_all(bench::make_wide_home(argv[1]));
  return 0;
}
