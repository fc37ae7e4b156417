#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "platform/running_programs.h"
#include "platform/session.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

/// A /proc with 500 processes of this user, each with what is read of one; gone at the end.
class Processes {
 public:
  Processes() {
    for (int number = 1; number <= 500; ++number) {
      const fs::path process = proc_ / std::to_string(number);
      fs::create_directories(process);
      fs::create_symlink("/usr/lib/program" + std::to_string(number), process / "exe");
      std::ofstream(process / "cgroup") << "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-x.scope\n";
    }
    fs::create_symlink("1", proc_ / "self");
  }
  ~Processes() {
    std::error_code ignored;
    fs::remove_all(proc_, ignored);
  }
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;

  Url url() const { return Url::file(proc_.string()); }

 private:
  fs::path proc_ = fs::temp_directory_path() / ("tarnby-bench-proc-" + std::to_string(getpid()));
};

/// What a scan asks: one look, and then who owns a hundred places.
void ask(const ProcessPlaces& places) {
  const RunningPrograms running = RunningPrograms::look(places);
  constexpr std::array<std::string_view, 3> names = {"firefox", "firefox-esr", "firefox-bin"};
  for (int place = 0; place < 100; ++place) benchmark::DoNotOptimize(running.program(names));
}

void look_at_500_processes(benchmark::State& state) {
  static const Processes processes;
  for (auto _ : state) ask({processes.url(), Url()});
}
BENCHMARK(look_at_500_processes)->Unit(benchmark::kMillisecond);

/// Those of this machine, however many there are.
void look_at_own_processes(benchmark::State& state) {
  const ProcessPlaces places = process_places(current_session());
  for (auto _ : state) ask(places);
}
BENCHMARK(look_at_own_processes)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarnby
