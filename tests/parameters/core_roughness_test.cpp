// SPDX-License-Identifier: Apache-2.0

#include "parameters/core_roughness.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "parameters/suffix_table.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

constexpr double kTight = 1e-9;

/// The definition word for word in long double: every secant searched by bisection, sums as they stand.
RkResult Twin(const std::vector<double>& h) {
  using Real = long double;
  const std::size_t n = h.size();
  const auto mr = [n](std::size_t i) { return static_cast<double>(i) * 100.0 / static_cast<double>(n); };
  const auto search = [&](double target, std::size_t& found) {
    if (target <= mr(0) || target >= mr(n - 1)) return false;
    std::size_t low = 0;
    std::size_t high = n - 1;
    while (high - low > 1) (mr((low + high) / 2) < target ? low : high) = (low + high) / 2;
    found = std::abs(mr(high) - target) < std::abs(mr(low) - target) ? high : low;
    return true;
  };
  RkResult r;
  std::size_t first = 0;
  std::size_t end = 0;
  std::size_t j = 0;
  if (n < 10 || !search(40.0, j)) return r;
  double smallest = INFINITY;
  for (std::size_t i = 0; i < n && search(mr(i) + 40.0, j); ++i) {
    if (h[i] - h[j] < smallest) {
      smallest = h[i] - h[j];
      first = i;
      end = j;
    }
  }
  Real sx = 0, sh = 0, sxx = 0, sxh = 0;
  for (std::size_t t = first; t < end; ++t) {
    const Real x = static_cast<Real>(t) * 100 / static_cast<Real>(n);
    sx += x, sh += h[t], sxx += x * x, sxh += x * h[t];
  }
  const Real c = static_cast<Real>(end - first);
  const Real a = (sxh - sx * sh / c) / (sxx - sx * sx / c);
  const Real b = (sh - a * sx) / c;
  r.upperLine = static_cast<double>(b);
  r.lowerLine = static_cast<double>(a * 100 + b);
  r.Rk = static_cast<double>(-a * 100);
  const auto nearest = [&](double level) {
    std::size_t k = 0;
    while (k < n && h[k] > level) ++k;
    if (k == n) return n;
    return k > 0 && std::abs(h[k - 1] - level) <= std::abs(h[k] - level) ? k - 1 : k;
  };
  const std::size_t k1 = nearest(r.upperLine);
  const std::size_t k2 = nearest(r.lowerLine);
  if (k1 == n || k2 == n) return r;
  r.Mr1 = mr(k1);
  r.Mr2 = mr(k2);
  Real above = 0, below = 0;
  for (std::size_t t = 0; t < k1; ++t) above += ((Real(h[t]) + h[t + 1]) / 2 - r.upperLine) * (mr(t + 1) - mr(t));
  for (std::size_t t = k2; t + 1 < n; ++t) below += (r.lowerLine - (Real(h[t]) + h[t + 1]) / 2) * (mr(t + 1) - mr(t));
  if (k1 > 0) r.Rpk = static_cast<double>(2 * above / r.Mr1);
  if (k2 + 1 < n) r.Rvk = static_cast<double>(2 * below / (100 - r.Mr2));
  r.valid = true;
  return r;
}

void ExpectSame(const RkResult& actual, const RkResult& expected, std::size_t n) {
  ASSERT_EQ(actual.valid, expected.valid) << n;
  if (!expected.valid) return;
  EXPECT_TRUE(Near(actual.Rk, expected.Rk, kTight)) << n;
  EXPECT_TRUE(Near(actual.Rpk, expected.Rpk, kTight)) << n;
  EXPECT_TRUE(Near(actual.Rvk, expected.Rvk, kTight)) << n;
  EXPECT_EQ(actual.Mr1, expected.Mr1) << n;
  EXPECT_EQ(actual.Mr2, expected.Mr2) << n;
  EXPECT_TRUE(Near(actual.upperLine, expected.upperLine, kTight)) << n;
  EXPECT_TRUE(Near(actual.lowerLine, expected.lowerLine, kTight)) << n;
}

std::vector<double> Sorted(std::vector<double> heights) {
  std::sort(heights.begin(), heights.end(), std::greater<>());
  return heights;
}

TEST(CoreRoughness, AgreesWithTheDefinitionWordForWord) {
  std::mt19937_64 random(3);
  std::normal_distribution<double> noise;
  for (const std::size_t n : {9u, 10u, 11u, 12u, 15u, 25u, 64u, 99u, 250u, 1000u, 7001u}) {
    for (int shape = 0; shape < 4; ++shape) {
      std::vector<double> heights(n);
      for (double& z : heights) {
        z = noise(random);
        if (shape == 1) z = -z * z;                     // deep valleys
        if (shape == 2) z = std::floor(z);              // many equal heights
        if (shape == 3) z = 500.0 + std::exp(2.0 * z);  // high peaks
      }
      heights = Sorted(heights);
      ExpectSame(ComputeCoreRoughness(heights), Twin(heights), n);
    }
  }
}

TEST(CoreRoughness, TakesTheHigherOfTwoPointsThatAreEquallyNear) {
  // The core falls by 1 um in 10 %, so its line runs from 0 to -10 um; either end lies midway between two points.
  const RkResult core = ComputeCoreRoughness(std::vector<double>{1, -1, -2, -3, -4, -5, -6, -7, -8, -12});
  EXPECT_EQ(core.upperLine, 0.0);
  EXPECT_EQ(core.lowerLine, -10.0);
  EXPECT_EQ(core.Mr1, 0.0);
  EXPECT_EQ(core.Mr2, 80.0);
  const RowCase row{.heights = RandomSurface(1000, 8)};
  const double valley = 0.5 * (100.0 - *RowValue("mr2", row)) / 100.0 * *RowValue("vk", row);
  EXPECT_TRUE(Near(*RowValue("vo", row), valley, 1e-12)) << "a triangle";
}

TEST(CoreRoughness, LeavesRatiosUnguardedAndFailsWhereNoPointReachesTheCore) {
  const std::vector<double> flat(50, 2.0);
  const RkResult core = ComputeCoreRoughness(flat);
  EXPECT_TRUE(core.valid);
  EXPECT_EQ(core.Rk, 0.0);
  EXPECT_EQ(core.Rpk, 0.0);
  EXPECT_EQ(core.Mr2, 0.0) << "the first point lies at the lower line";
  const ParameterProfile profile('R', flat, {1.0, 0.8, 0.8});
  EXPECT_TRUE(std::isnan(*FindSuffix("pk/k")->routine({profile, AnalysisSettings{}})));
  std::vector<double> spike(50, 0.0);
  spike[20] = 3.0;
  const ParameterProfile spiked('R', spike, {1.0, 0.8, 0.8});
  EXPECT_EQ(*FindSuffix("pk/k")->routine({spiked, AnalysisSettings{}}), INFINITY);
  std::vector<double> ramp(64);
  for (std::size_t i = 0; i < ramp.size(); ++i) ramp[i] = -static_cast<double>(i);
  EXPECT_FALSE(ComputeCoreRoughness(ramp).valid);
  std::vector<double> huge = {1e308, 1e308, -1e308, -1e308, 0, 0, 1e300, 5, 5, 5, -1e308, 1e308};
  EXPECT_FALSE(ComputeCoreRoughness(Sorted(huge)).valid) << "beyond the range of a double";
}

}  // namespace
}  // namespace texturon
