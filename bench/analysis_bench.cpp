// SPDX-License-Identifier: Apache-2.0

// Reading a file and the whole of Compute, without the trace file but where it is named.

#include <benchmark/benchmark.h>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "analysis/pipeline.h"
#include "formats/native_format.h"
#include "platform/platform.h"
#include "signal/sort_descending.h"

namespace texturon {
namespace {

/// As the console program does.
[[maybe_unused]] const bool kHasLargePages = [] {
  PreferLargePages();
  return true;
}();

std::vector<double> Surface(std::size_t n) {
  std::mt19937_64 random(5);
  std::normal_distribution<double> noise;
  std::vector<double> z(n);
  double grain = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    grain = 0.9 * grain + 0.1 * noise(random);
    z[i] = grain + 0.3 * std::sin(static_cast<double>(i) * 0.002) + 1e-4 * static_cast<double>(i);
  }
  return z;
}

void BM_Compute(benchmark::State& state, std::int32_t filterType, bool writesTraceFile) {
  Document document = MakeDocument();  // all rows
  document.wanted = {.spectrum = false, .heightCurves = false};
  document.settings.analysis.FilterType = filterType;
  document.writesTraceFile = writesTraceFile;
  SetProfile(document, MakeProfileSet(Surface(static_cast<std::size_t>(state.range(0))), 0.5));
  SilentPrompts prompts;
  const Environment environment = SystemEnvironment();
  for (auto _ : state) benchmark::DoNotOptimize(Compute(document, prompts, environment));
}
BENCHMARK_CAPTURE(BM_Compute, gaussian, kFilterGaussian, false)->Arg(8000)->Arg(750'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Compute, spline, kFilterSplineGaussian, false)
    ->Arg(8000)
    ->Arg(750'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Compute, iso13565, kFilterIso13565, false)->Arg(8000)->Arg(750'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Compute, robust, kFilterRobustGaussian, false)->Arg(8000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Compute, gaussian_with_trace, kFilterGaussian, true)
    ->Arg(8000)
    ->Arg(750'000)
    ->Unit(benchmark::kMillisecond);

void BM_ReadNative(benchmark::State& state) {
  const std::vector<double> heights = Surface(static_cast<std::size_t>(state.range(0)));
  const std::string text =
      NativeProfileText({.heightsUM = heights, .spacingUM = 0.5, .identification = "bench", .savedAt = {.tm_mday = 1}});
  const std::filesystem::path path = "bench.lmt";
  const ImportOptions options;
  SilentPrompts prompts;
  for (auto _ : state) {
    ImportedProfile profile;
    benchmark::DoNotOptimize(ReadNativeProfile({path, text, options, prompts}, profile));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_ReadNative)->Arg(750'000)->Unit(benchmark::kMillisecond);

void BM_SortDescending(benchmark::State& state) {
  const std::vector<double> heights = Surface(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::vector<double> sorted = heights;
    SortDescending(sorted);
    benchmark::DoNotOptimize(sorted.data());
  }
}
BENCHMARK(BM_SortDescending)->Arg(8000)->Arg(750'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace texturon
