#include <benchmark/benchmark.h>

#include <filesystem>

#include "bench/home.h"
#include "files/file_manager.h"
#include "files/measurer.h"

namespace {

using namespace tarnby;

const bench::Home& home() {
  static const bench::Home made =
      bench::make_home((std::filesystem::temp_directory_path() / "tarnby-bench").string(), 100'000);
  return made;
}

/// All caches in one go, by the number of workers.
void measure_caches(benchmark::State& state) {
  FileManager files(static_cast<unsigned>(state.range(0)));
  Measurer measurer(files);
  const Url caches = Url::file(home().home).appending("Library/Caches");
  for (auto _ : state) benchmark::DoNotOptimize(measurer.overall_size_of_direcory(caches));
}
BENCHMARK(measure_caches)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->UseRealTime()->Unit(benchmark::kMillisecond);

/// A folder's entries with their kinds, in order.
void list_folder(benchmark::State& state) {
  const FileManager files(1);
  const Url caches = Url::file(home().home).appending("Library/Caches");
  for (auto _ : state) benchmark::DoNotOptimize(files.list(caches));
}
BENCHMARK(list_folder)->Unit(benchmark::kMicrosecond);

/// Looking for applications by name.
void walk_for_applications(benchmark::State& state) {
  FileManager files(static_cast<unsigned>(state.range(0)));
  const Url documents = Url::file(home().home).appending("Documents");
  const auto is_application = [](std::string_view name, EntryKind) { return is_application_name(name); };
  for (auto _ : state) {
    benchmark::DoNotOptimize(files.walk(documents, Hidden::skip, Packages::enter, is_application));
  }
}
BENCHMARK(walk_for_applications)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
