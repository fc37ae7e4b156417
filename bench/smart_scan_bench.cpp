#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

#include "bench/grants.h"
#include "engine/cleaner.h"
#include "platform/platform.h"

namespace {

using namespace tarnby;

/// A whole smart scan in one process, by the number of files.
void smart_scan(benchmark::State& state) {
  const auto folder = std::filesystem::temp_directory_path() / "tarnby-bench";
  const bench::Home home = bench::make_home(folder.string(), static_cast<std::size_t>(state.range(0)));
  PlainMainQueue main_queue;
  Platform platform(current_session(), bench::granted_settings(home), main_queue);
  const Application inventory(platform);
  Cache cache(platform, inventory);
  Remainders remainders(platform, cache);
  Cleaner cleaner(platform, cache, remainders);
  for (auto _ : state) cleaner.smart_clean_with_complete_handler([] {});
}
BENCHMARK(smart_scan)->Arg(10'000)->Arg(100'000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
