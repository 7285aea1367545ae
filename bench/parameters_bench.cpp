// SPDX-License-Identifier: Apache-2.0

// The parameter rows on a record of full size, by family, beside three std::sort of the same heights and ten passes.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "base/text.h"
#include "parameters/driver.h"
#include "parameters/suffix_table.h"
#include "platform/platform.h"
#include "signal/envelope/morphological_envelope.h"
#include "signal/filter/gaussian_filter.h"
#include "signal/sort_descending.h"

namespace texturon {
namespace {

constexpr std::int32_t kPoints = 750'000;
constexpr double kSpacingUM = 0.1;

/// As the console program does.
[[maybe_unused]] const bool kHasLargePages = [] {
  PreferLargePages();
  return true;
}();

/// The three profiles of one record, and the heights of two of them in order.
struct Record {
  std::vector<double> primary, waviness, roughness;
  std::vector<double> sortedPrimary, sortedRoughness;

  void Sort() {
    sortedPrimary = primary;
    sortedRoughness = roughness;
    SortDescending(sortedPrimary);
    SortDescending(sortedRoughness);
  }
};

/// Grain on a wave.
const Record& TheRecord() {
  static const Record record = [] {
    Record made;
    std::mt19937_64 random(5);
    std::normal_distribution<double> noise;
    double grain = 0.0;
    for (std::int32_t i = 0; i < kPoints; ++i) {
      grain = 0.9 * grain + 0.5 * noise(random);
      made.roughness.push_back(grain);
      made.waviness.push_back(std::sin(i * 4e-5) + 0.3 * std::sin(i * 3.1e-4 + 1.0));
      made.primary.push_back(made.roughness.back() + made.waviness.back());
    }
    made.Sort();
    return made;
  }();
  return record;
}

/// A random walk with noise on it, filtered: nowhere smooth, and what a processor foresees of one point says nothing of
/// the next.
const Record& RoughRecord() {
  static const Record record = [] {
    Record made;
    std::mt19937_64 random(5);
    std::normal_distribution<double> noise;
    double walk = 0.0;
    for (std::int32_t i = 0; i < kPoints; ++i) {
      walk += 0.05 * noise(random);
      made.primary.push_back(walk + 0.2 * noise(random));
    }
    made.waviness.resize(kPoints);
    GaussianFilter(made.primary, made.waviness, kSpacingUM, 0.8);
    for (std::size_t i = 0; i < made.primary.size(); ++i) {
      made.roughness.push_back(made.primary[i] - made.waviness[i]);
    }
    made.Sort();
    return made;
  }();
  return record;
}

Profile View(ProfileKind kind, const std::vector<double>& z) {
  return {kind, z, IndexRange::FromCount(0, kPoints), kSpacingUM};
}

void Compute(ParameterCatalogue& catalogue, const Record& record, std::span<const double> sortedPrimary,
             std::span<const double> sortedRoughness) {
  AnalysisSettings settings;
  settings.WindowWidthForWseg = 2.5;
  const DriverInput input{.settings = settings,
                          .formSuppressed = View(ProfileKind::kFormSuppressed, record.primary),
                          .primary = View(ProfileKind::kPrimary, record.primary),
                          .waviness = View(ProfileKind::kWaviness, record.waviness),
                          .roughness = View(ProfileKind::kRoughness, record.roughness),
                          .sortedPrimary = sortedPrimary,
                          .sortedRoughness = sortedRoughness};
  benchmark::DoNotOptimize(ComputeParameters(catalogue, input));
}

bool IsEnvelopeRow(const std::string& name) {
  return name.starts_with("Wv") ? name != "Wv" : name.starts_with("Wcvx");
}

/// All rows but those of envelopes and motifs, sorting included.
void BM_Rows(benchmark::State& state, const Record& (*recordOf)()) {
  const Record& record = recordOf();
  ParameterCatalogue catalogue = MakeWorkingList(DefaultSelection());
  for (ParameterDef& row : catalogue.rows) {
    row.selected = !IsEnvelopeRow(row.name) && FindWholeName(row.name) == nullptr;
  }
  for (auto _ : state) {
    std::vector<double> primary = record.primary;
    std::vector<double> roughness = record.roughness;
    SortDescending(primary);
    SortDescending(roughness);
    Compute(catalogue, record, primary, roughness);
  }
}
BENCHMARK_CAPTURE(BM_Rows, smooth, TheRecord)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Rows, rough, RoughRecord)->Unit(benchmark::kMillisecond);

void BM_ThreeSortsAndTenPasses(benchmark::State& state, const Record& (*recordOf)()) {
  const Record& record = recordOf();
  for (auto _ : state) {
    for (int k = 0; k < 3; ++k) {
      std::vector<double> heights = record.primary;
      std::sort(heights.begin(), heights.end());
      benchmark::DoNotOptimize(heights.data());
    }
    for (int k = 0; k < 10; ++k) {
      benchmark::DoNotOptimize(std::accumulate(record.primary.begin(), record.primary.end(), 0.0));
    }
  }
}
BENCHMARK_CAPTURE(BM_ThreeSortsAndTenPasses, smooth, TheRecord)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ThreeSortsAndTenPasses, rough, RoughRecord)->Unit(benchmark::kMillisecond);

/// Some rows alone, with sorted curves at hand.
void BM_Family(benchmark::State& state, const char* names) {
  ParameterCatalogue catalogue;
  std::string name;
  for (const char* c = names;; ++c) {
    if (*c != ' ' && *c != '\0') {
      name += *c;
      continue;
    }
    catalogue.rows.push_back({.name = name});
    name.clear();
    if (*c == '\0') break;
  }
  for (auto _ : state) Compute(catalogue, TheRecord(), TheRecord().sortedPrimary, TheRecord().sortedRoughness);
}
#define FAMILY(title, names) BENCHMARK_CAPTURE(BM_Family, title, names)->Unit(benchmark::kMillisecond)
FAMILY(none_selected, "Special");
FAMILY(amplitude, "Pt Pa Pq Psk Pku Wt Wa Wq Rt Ra Rq Rsk Rku Rtwi");
FAMILY(peak_to_valley, "RzDIN Rzi R3z RzJIS Rpm Rpm/3z Rvm Rmax");
FAMILY(elements, "Psm Pdsm Wsm Wc Wtc Rsm Rc Rcl");
FAMILY(core_roughness, "Rk Rpk Rvk Rpk* Rmr1 Rmr2 Rvo");
FAMILY(probability, "Rpq Rvq Rmq");
FAMILY(slopes, "Wdq Rdq Rdmd Rdmn Rdsk");
FAMILY(moments_and_peaks, "Pm0 Pm2 Pm4 Rm0 Rm2 Rm4 Ps Ws Rs");
FAMILY(counts, "Phsc Pvc Rhsc Rvc Ppc Wpc Rpc");
FAMILY(windows, "Ra1 Ra7 Rpm7 Wseg Wlslp Weslp Wpl Wpr");
FAMILY(envelopes, "Wvoid Wvdd Wvdm Wvda Wcvx Wcvxm");
FAMILY(motifs, "R Rx AR W Wx AW Wte");

/// A ball of 1 m on noise and on a wavy record.
void BM_Closing(benchmark::State& state, bool isWavy) {
  const std::vector<double>& source = isWavy ? TheRecord().waviness : TheRecord().roughness;
  const std::vector<double> z(source.begin(), source.begin() + 96'000);
  std::vector<double> envelope(z.size());
  for (auto _ : state) benchmark::DoNotOptimize(ClosingEnvelope(z, envelope, 0.5, 1e6));
}
BENCHMARK_CAPTURE(BM_Closing, rough, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Closing, wavy, true)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace texturon
