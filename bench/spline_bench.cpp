// SPDX-License-Identifier: Apache-2.0

// Spline filters and forms over the longest record, and the five-band solver beside LAPACK's where that is installed.

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "signal/filter/pentadiagonal.h"
#include "signal/filter/robust_filter.h"
#include "signal/filter/spline_filter.h"
#include "signal/form/form_arc.h"
#include "signal/form/form_line.h"
#include "signal/form/form_polynomial.h"

#ifdef TEXTURON_PEER_LAPACK
extern "C" void dpbsv_(const char* uplo, const int* n, const int* kd, const int* nrhs, double* ab, const int* ldab,
                       double* b, const int* ldb, int* info);
#endif

namespace texturon {
namespace {

constexpr std::size_t kSize = 750'000;
constexpr double kSpacingUM = 0.5;

std::vector<double> Record() {
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 0.2);
  std::vector<double> z(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    const double t = 2.0 * static_cast<double>(i) / kSize - 1.0;
    z[i] = 100.0 * t * t + std::sin(static_cast<double>(i) * 0.003) + noise(random);
  }
  return z;
}

// The bands of the spline filter at cutoff / spacing about 15 without tension.
struct Bands {
  std::vector<double> main = std::vector<double>(kSize, 1.0 + 6.0 * 30.0);
  std::vector<double> first = std::vector<double>(kSize - 1, -4.0 * 30.0);
  std::vector<double> second = std::vector<double>(kSize - 2, 30.0);
};

void Pentadiagonal(benchmark::State& state) {
  const Bands bands;
  const std::vector<double> rhs = Record();
  std::vector<double> x(kSize);
  for (auto _ : state) {
    benchmark::DoNotOptimize(SolvePentadiagonal(bands.main, bands.first, bands.second, rhs, x));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Pentadiagonal)->Unit(benchmark::kMillisecond);

#ifdef TEXTURON_PEER_LAPACK
// Overwrites its input, so the three bands are packed anew each time; reported with and without that.
void Dpbsv(benchmark::State& state) {
  const Bands bands;
  const std::vector<double> rhs = Record();
  std::vector<double> packed(3 * kSize), x(kSize);
  const bool countPacking = state.range(0) != 0;
  for (auto _ : state) {
    if (!countPacking) state.PauseTiming();
    for (std::size_t i = 0; i < kSize; ++i) {
      packed[3 * i] = bands.main[i];
      if (i + 1 < kSize) packed[3 * i + 1] = bands.first[i];
      if (i + 2 < kSize) packed[3 * i + 2] = bands.second[i];
    }
    x = rhs;
    if (!countPacking) state.ResumeTiming();
    const int n = static_cast<int>(kSize), bandwidth = 2, one = 1, leading = 3;
    int info = 0;
    dpbsv_("L", &n, &bandwidth, &one, packed.data(), &leading, x.data(), &n, &info);
    if (info != 0) state.SkipWithError("dpbsv failed");
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Dpbsv)->ArgName("packing")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
#endif

void Spline(benchmark::State& state) {
  const std::vector<double> z = Record();
  std::vector<double> w(kSize);
  const double cutoffMM = static_cast<double>(state.range(0)) * kSpacingUM * 0.001;
  for (auto _ : state) benchmark::DoNotOptimize(SplineFilter(z, w, kSpacingUM, cutoffMM, kGaussianLikeTension));
}
BENCHMARK(Spline)->ArgName("cutoff/spacing")->Arg(5)->Arg(1600)->Arg(80'000)->Unit(benchmark::kMillisecond);

void Robust(benchmark::State& state) {
  const std::vector<double> z = Record();
  std::vector<double> w(kSize);
  int passes = 0;
  for (auto _ : state) passes = RobustSplineFilter(z, w, kSpacingUM, 0.8, kGaussianLikeTension, nullptr).iterations;
  state.counters["passes"] = passes;
}
BENCHMARK(Robust)->Unit(benchmark::kMillisecond);

template <typename Fit>
void RunForm(benchmark::State& state, ResidualKind kind, const Fit& fit) {
  const std::vector<double> z = Record();
  std::vector<double> form(kSize), residual(kSize);
  const FormInput input{z, kSpacingUM, 1, {}, kind};
  for (auto _ : state) benchmark::DoNotOptimize(fit(input, FormOutput{form, residual}));
}

void Line(benchmark::State& state) {
  RunForm(state, ResidualKind::kPerpendicular, FitLine);
}
BENCHMARK(Line)->Unit(benchmark::kMillisecond);

void Arc(benchmark::State& state) {
  RunForm(state, state.range(0) == 0 ? ResidualKind::kPerpendicular : ResidualKind::kVertical, FitArc);
}
BENCHMARK(Arc)->ArgName("vertical")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void Polynomial(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  RunForm(state, ResidualKind::kVertical,
          [order](const FormInput& input, FormOutput output) { return FitPolynomial(input, order, output); });
}
BENCHMARK(Polynomial)->ArgName("order")->Arg(4)->Arg(20)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace texturon
