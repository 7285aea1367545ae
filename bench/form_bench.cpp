// SPDX-License-Identifier: Apache-2.0

// Forms that are positioned by the minimiser, over 200 000 points. The counters are the merits evaluated in each stage.

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "signal/form/form_asphere.h"
#include "signal/form/form_fixed_radius.h"
#include "signal/form/form_free.h"

namespace texturon {
namespace {

constexpr std::size_t kSize = 200'000;
constexpr double kSpacingUM = 0.1;

// R = -47.6 mm, k = -0.75 and nine terms more, each of 10 um at the edge.
AsphereDescription TenTerms() {
  AsphereDescription asphere{-0.021, 0.25, std::vector<double>(20)};
  for (int power = 4; power <= 20; power += 2) {
    asphere.coefficients[static_cast<std::size_t>(power) - 1] = 0.01 / std::pow(12.0, power);
  }
  return asphere;
}

std::vector<double> Heights(const AsphereDescription& asphere, double apexMM, double slope) {
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 0.1);
  std::vector<double> z(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    const double x = 0.001 * kSpacingUM * static_cast<double>(i);
    z[i] = 1000.0 * (AsphereSag(x, {apexMM, 0.0, slope}, asphere)) + noise(random);
  }
  return z;
}

void FixedRadius(benchmark::State& state) {
  const std::vector<double> z = Heights({-0.05, 1.0, {}}, 9.0, 0.0);
  std::vector<double> form(kSize), residual(kSize);
  for (auto _ : state) {
    benchmark::DoNotOptimize(FitFixedRadius({.heights = z, .spacingUM = kSpacingUM}, -20.0, nullptr, {form, residual}));
  }
}
BENCHMARK(FixedRadius)->Unit(benchmark::kMillisecond);

void Asphere(benchmark::State& state) {
  const AsphereDescription asphere = TenTerms();
  const std::vector<double> z = Heights(asphere, 9.0, 0.01);
  std::vector<double> form(kSize), residual(kSize);
  FormInput input{.heights = z, .spacingUM = kSpacingUM};
  input.residual = state.range(0) == 0 ? ResidualKind::kPerpendicular : ResidualKind::kVertical;
  AsphereFitResult result;
  for (auto _ : state) {
    result = FitAsphere(input, asphere, {.free = {.curvature = state.range(1) != 0}}, {form, residual});
  }
  if (!result.fit) {
    state.SkipWithError("no fit");
    return;
  }
  state.counters["coarse"] = result.fit->coarseEvaluations;
  state.counters["minimiser"] = result.search.evaluations;
  state.counters["all points"] = result.fit->polishEvaluations;
}
BENCHMARK(Asphere)
    ->ArgNames({"vertical", "radius"})
    ->Args({1, 0})
    ->Args({0, 0})
    ->Args({1, 1})
    ->Unit(benchmark::kMillisecond);

void FreeForm(benchmark::State& state) {
  const AsphereDescription asphere = TenTerms();
  std::vector<double> x, nominal;
  for (int i = 0; i <= 3000; ++i) {
    x.push_back(0.01 * i - 15.0);
    nominal.push_back(AsphereSag(x.back(), {}, asphere) + 0.05 * std::sin(x.back()));
  }
  std::vector<double> z(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    const double at = 0.001 * kSpacingUM * static_cast<double>(i) - 9.0;
    z[i] = 1000.0 * (AsphereSag(at, {}, asphere) + 0.05 * std::sin(at));
  }
  const auto curve = *NominalCurve::Through(x, nominal);
  std::vector<double> form(kSize), residual(kSize);
  FreeFormOptions options;
  if (state.range(0) == 0) options.merit = ShapeMerit::kLeastAbsolute;
  for (auto _ : state) {
    benchmark::DoNotOptimize(FitFreeForm({.heights = z, .spacingUM = kSpacingUM}, curve, options, {form, residual}));
  }
}
BENCHMARK(FreeForm)->ArgName("squares")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace texturon
