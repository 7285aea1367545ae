// SPDX-License-Identifier: Apache-2.0

// Complex Fourier transforms of the lengths that matter, against FFTW 3 where it is installed (double precision,
// interleaved, FFTW_ESTIMATE, plan made outside the timed loop). "Execute" reuses a plan, "Whole" makes one per call.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "signal/fft/fft.h"
#include "signal/fft/real_fft.h"
#include "signal/filter/gaussian_filter.h"

#ifdef TEXTURON_PEER_FFTW
#include <fftw3.h>
#endif

namespace texturon {
namespace {

struct Signal {
  explicit Signal(std::size_t n) : re(n), im(n) {
    for (std::size_t i = 0; i < n; ++i) {
      re[i] = std::sin(0.1 * static_cast<double>(i * i % 1000));
      im[i] = std::cos(0.3 * static_cast<double>(i % 777));
    }
  }
  std::vector<double> re;
  std::vector<double> im;
};

void Lengths(benchmark::internal::Benchmark* bench) {
  for (const int n : {1024, 8'000, 100'000, 262'144, 750'000, 1'000'000}) bench->Arg(n);             // common records
  for (const int n : {499, 982, 2'994, 5'604, 7'919 - 1, 249'001, 498'002, 749'469}) bench->Arg(n);  // long primes
}

void Execute(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const std::optional<FftPlan> plan = FftPlan::Make(n);
  if (!plan) return state.SkipWithError("refused length");
  const Signal x(n);
  Signal y(n);
  for (auto _ : state) {
    plan->Forward(x.re, x.im, y.re, y.im);
    benchmark::DoNotOptimize(y.re.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Execute)->Apply(Lengths)->Unit(benchmark::kMicrosecond);

void Whole(benchmark::State& state) {
  const Signal x(static_cast<std::size_t>(state.range(0)));
  Signal y = x;
  for (auto _ : state) {
    if (!Fft(x.re, x.im, y.re, y.im)) return state.SkipWithError("refused length");
    benchmark::DoNotOptimize(y.re.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Whole)->Apply(Lengths)->Unit(benchmark::kMicrosecond);

void RealLengths(benchmark::internal::Benchmark* bench) {
  for (const int n : {8'000, 100'000, 749'469, 750'000, 750'141}) bench->Arg(n);  // even, even, odd, even, odd
}

void RealExecute(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const std::optional<RealFftPlan> plan = RealFftPlan::Make(n);
  if (!plan) return state.SkipWithError("refused length");
  const Signal x(n);
  Signal y(n / 2 + 1);
  for (auto _ : state) {
    plan->Forward(x.re, y.re, y.im);
    benchmark::DoNotOptimize(y.re.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(RealExecute)->Apply(RealLengths)->Unit(benchmark::kMicrosecond);

/// 0.8 mm cutoff at 0.5 um spacing.
void Gaussian(benchmark::State& state) {
  const Signal x(static_cast<std::size_t>(state.range(0)));
  std::vector<double> w(x.re.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(GaussianFilter(x.re, w, 0.5, 0.8));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(Gaussian)->Apply(RealLengths)->Unit(benchmark::kMicrosecond);

#ifdef TEXTURON_PEER_FFTW
void PeerExecute(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const Signal x(n);
  fftw_complex* in = fftw_alloc_complex(n);
  fftw_complex* out = fftw_alloc_complex(n);
  const fftw_plan plan = fftw_plan_dft_1d(static_cast<int>(n), in, out, FFTW_FORWARD, FFTW_ESTIMATE);
  for (std::size_t i = 0; i < n; ++i) {
    in[i][0] = x.re[i];
    in[i][1] = x.im[i];
  }
  for (auto _ : state) {
    fftw_execute(plan);
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
  }
  fftw_destroy_plan(plan);
  fftw_free(in);
  fftw_free(out);
}
BENCHMARK(PeerExecute)->Apply(Lengths)->Unit(benchmark::kMicrosecond);

void PeerRealExecute(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  double* in = fftw_alloc_real(n);
  fftw_complex* out = fftw_alloc_complex(n / 2 + 1);
  const fftw_plan plan = fftw_plan_dft_r2c_1d(static_cast<int>(n), in, out, FFTW_ESTIMATE | FFTW_PRESERVE_INPUT);
  const Signal x(n);
  std::copy(x.re.begin(), x.re.end(), in);
  for (auto _ : state) {
    fftw_execute(plan);
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
  }
  fftw_destroy_plan(plan);
  fftw_free(in);
  fftw_free(out);
}
BENCHMARK(PeerRealExecute)->Apply(RealLengths)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace
}  // namespace texturon
