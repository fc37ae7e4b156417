#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "text/folded_index.h"
#include "text/text.h"

namespace tarnby {
namespace {

const std::string ascii_path =
    "/Users/somebody/Library/Application Support/Example Vendor/Photo Editor/Plug-ins/Filters/Sharp.data";
const std::string accented_path =
    "/Users/somebody/Library/Application Support/Caf\u00e9 Z\u00fcrich/\u00c9diteur/R\u00e9sum\u00e9s/\u00dcbung/"
    "Na\u00efve1.data.db";
const std::string japanese_path =
    "/Users/somebody/\u66f8\u985e/\u5199\u771f\u30c7\u30fc\u30bf\u30d9\u30fc\u30b9/2024-03-27 0900/"
    "\u30d0\u30c3\u30af\u30a2\u30c3\u30d7/\u30d5\u30a1\u30a4\u30eb.db";

void fold(benchmark::State& state, const std::string& path) {
  for (auto _ : state) benchmark::DoNotOptimize(FoldedText(path));
  state.counters["bytes"] = static_cast<double>(path.size());
}
BENCHMARK_CAPTURE(fold, ascii, ascii_path);
BENCHMARK_CAPTURE(fold, accented, accented_path);
BENCHMARK_CAPTURE(fold, japanese, japanese_path);

void contain(benchmark::State& state, const std::string& part) {
  const FoldedText path(ascii_path);
  const FoldedText folded(part);
  for (auto _ : state) benchmark::DoNotOptimize(path.contains(folded));
}
BENCHMARK_CAPTURE(contain, found_late, "sharp");
BENCHMARK_CAPTURE(contain, absent, "com.example.photoeditor");

/// The leftovers search: each of 300 identifiers is looked for in 3,000 names of which few hold it.
void match_identifiers(benchmark::State& state) {
  std::vector<FoldedText> names;
  std::vector<FoldedText> identifiers;
  for (int at = 0; at < 3'000; ++at) {
    names.emplace_back("com.vendor" + std::to_string(at % 170) + ".Application" + std::to_string(at) + ".plist");
    if (at % 10 == 0)
      identifiers.emplace_back("com.vendor" + std::to_string(at % 170) + ".application" + std::to_string(at));
  }
  for (auto _ : state) {
    std::size_t found = 0;
    for (const FoldedText& identifier : identifiers) {
      for (const FoldedText& name : names) found += name.contains(identifier) ? 1 : 0;
    }
    benchmark::DoNotOptimize(found);
  }
}
BENCHMARK(match_identifiers)->Unit(benchmark::kMillisecond);

/// Each of so many identifiers is looked for among all of them, and in names that almost hold many of them.
void match_identifiers_by_index(benchmark::State& state) {
  std::vector<FoldedText> identifiers;
  for (std::int64_t at = 0; at < state.range(0); ++at) {
    identifiers.emplace_back("com.gone.tool" + std::to_string(at));
  }
  const std::size_t names = identifiers.size();
  for (std::size_t at = 0; at < 200; ++at) identifiers.emplace_back(std::string(at, 'a') + ".a.a");
  const FoldedText repeating(std::string(255, 'a'));
  for (auto _ : state) {
    const FoldedIndex index(identifiers);
    for (std::size_t at = 0; at < names; ++at) benchmark::DoNotOptimize(index.parts_in(identifiers[at]));
    for (std::size_t at = 0; at < names / 50; ++at) benchmark::DoNotOptimize(index.parts_in(repeating));
  }
}
BENCHMARK(match_identifiers_by_index)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// What a command pays that shows one size and sorts nothing.
void first_byte_count(benchmark::State& state, const char* locale) {
  for (auto _ : state) benchmark::DoNotOptimize(Text(locale, locale).byte_count(1'500'000'000));
}
BENCHMARK_CAPTURE(first_byte_count, c, "C");
BENCHMARK_CAPTURE(first_byte_count, english, "en_US.UTF-8");
BENCHMARK_CAPTURE(first_byte_count, german, "de_DE.UTF-8");

void sort_names(benchmark::State& state) {
  const Text text("en_US.UTF-8", "en_US.UTF-8");
  std::vector<std::string> names;
  for (unsigned index = 0; index < 10'000; ++index) {
    names.push_back("Vacation \u00e9t\u00e9 " + std::to_string(index * 2'654'435'761U) + ".mov");
  }
  for (auto _ : state) {
    std::vector<std::string> sorted = names;
    text.sort_by_label(sorted, [](const std::string& name) { return name; });
    benchmark::DoNotOptimize(sorted);
  }
}
BENCHMARK(sort_names)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarnby
