#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "files/file_manager.h"

namespace tarnby {
namespace {

/// Folders in one another, made by handle since no path is long enough.
void make_chain(const std::string& top, std::int64_t depth) {
  int folder = open(top.c_str(), O_DIRECTORY | O_RDONLY | O_CLOEXEC);
  for (; depth > 0; --depth) {
    if (mkdirat(folder, "d", 0700) != 0) std::abort();
    const int below = openat(folder, "d", O_DIRECTORY | O_RDONLY | O_CLOEXEC);
    close(folder);
    folder = below;
  }
  close(folder);
}

/// Ten times the depth is to take ten times as long, although the kernel looks upwards for the right to remove.
void remove_deep_tree(benchmark::State& state) {
  const std::string top = (std::filesystem::temp_directory_path() / "tarnby-deep-XXXXXX").string();
  std::string home = top;
  if (mkdtemp(home.data()) == nullptr) std::abort();
  FileManager files;
  files.granted().add(Grant::home, Url::file(home));
  files.confine_threads(FileManager::Callers::keep_their_rights);
  const Url urls[] = {Url::file(home + "/d")};
  for (auto _ : state) {
    state.PauseTiming();
    make_chain(home, state.range(0));
    state.ResumeTiming();
    if (files.remove(urls).front().error) std::abort();
  }
  rmdir(home.c_str());
}
BENCHMARK(remove_deep_tree)->Arg(1'000)->Arg(10'000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarnby
