// SPDX-License-Identifier: Apache-2.0

// Reading profile files of 750 000 heights inside the readers, from bytes in memory.

#include <benchmark/benchmark.h>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "formats/column_text.h"
#include "formats/native_format.h"
#include "formats/pr_format.h"
#include "formats/prf_format.h"
#include "formats/sdf_format.h"

namespace texturon {
namespace {

constexpr std::size_t kPoints = 750'000;

const std::vector<double>& Heights() {
  static const std::vector<double> heights = [] {
    std::mt19937_64 random(5);
    std::normal_distribution<double> noise(0.0, 2.0);
    std::vector<double> z(kPoints);
    for (double& value : z) value = noise(random);
    return z;
  }();
  return heights;
}

std::string TwoColumns() {
  std::string text;
  for (std::size_t i = 0; i < kPoints; ++i) {
    AppendFixed(text, static_cast<double>(i) * 0.0005, 6);
    text += '\t';
    AppendFixed(text, Heights()[i], 6);
    text += "\r\n";
  }
  return text;
}

void Read(benchmark::State& state, ReadFunction read, const std::string& text) {
  const std::filesystem::path path = "bench";
  const ImportOptions options;
  SilentPrompts prompts;
  for (auto _ : state) {
    ImportedProfile profile;
    const ReadResult result = read({path, text, options, prompts}, profile);
    if (result.status != ReadResult::Status::kRead || profile.heightsUM.size() != kPoints) {
      state.SkipWithError(result.reason.c_str());
      return;
    }
    benchmark::DoNotOptimize(profile.heightsUM.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void BM_Read(benchmark::State& state, ReadFunction read, std::string (*write)(const ProfileToWrite&)) {
  Read(state, read, write({Heights(), 0.5, "bench", std::tm{.tm_mday = 1}}));
}
BENCHMARK_CAPTURE(BM_Read, lmt, ReadNativeProfile, NativeProfileText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, sdf, ReadSdfProfile, SdfProfileText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, prf, ReadPrfProfile, PrfProfileText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, pr, ReadPrProfile, PrProfileText)->Unit(benchmark::kMillisecond);

void BM_ReadTwoColumns(benchmark::State& state, ReadFunction read) {
  Read(state, read, TwoColumns());
}
BENCHMARK_CAPTURE(BM_ReadTwoColumns, two_columns, ReadTwoColumnText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadTwoColumns, generic, ReadGenericText)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace texturon
