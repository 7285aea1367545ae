// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/spline_filter.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "base/double_double.h"
#include "support/near.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 0.5;

double CutoffMM(double cutoffPerSpacing) {
  return cutoffPerSpacing * kSpacingUM * 0.001;
}

struct Case {
  double cutoffPerSpacing, tension;
};

// The filter's equations as they stand, set up from the difference operators and eliminated top down in
// double-double arithmetic: 32 digits, of which the matrix with alpha^4 = 2.6e16 costs 18.
std::vector<double> BandedTwin(std::span<const double> z, Case c, std::span<const double> weights) {
  const std::size_t n = z.size();
  const double alpha = 1.0 / (2.0 * std::sin(std::numbers::pi / c.cutoffPerSpacing));
  const DoubleDouble square = DoubleDouble(alpha) * alpha;
  const DoubleDouble stretch = square * c.tension;
  const DoubleDouble bend = square * square * (DoubleDouble(1.0) - c.tension);
  std::vector<DoubleDouble> main(n), first(n), second(n), x(n);
  for (std::size_t i = 0; i < n; ++i) {
    main[i] = weights.empty() ? 1.0 : weights[i];
    x[i] = main[i] * z[i];
  }
  for (std::size_t i = 0; i + 1 < n; ++i) {
    main[i] += stretch;
    main[i + 1] += stretch;
    first[i] -= stretch;
  }
  for (std::size_t i = 0; i + 2 < n; ++i) {
    main[i] += bend;
    main[i + 1] += bend * 4.0;
    main[i + 2] += bend;
    first[i] -= bend * 2.0;
    first[i + 1] -= bend * 2.0;
    second[i] += bend;
  }
  for (std::size_t i = 0; i + 1 < n; ++i) {
    const DoubleDouble near = first[i] / main[i];
    const DoubleDouble far = second[i] / main[i];
    main[i + 1] -= near * first[i];
    x[i + 1] -= near * x[i];
    if (i + 2 == n) continue;
    first[i + 1] -= near * second[i];
    main[i + 2] -= far * second[i];
    x[i + 2] -= far * x[i];
  }
  for (std::size_t i = n; i-- > 0;) {
    if (i + 1 < n) x[i] -= first[i] * x[i + 1];
    if (i + 2 < n) x[i] -= second[i] * x[i + 2];
    x[i] = x[i] / main[i];
  }
  std::vector<double> w(n);
  for (std::size_t i = 0; i < n; ++i) w[i] = x[i].hi;
  return w;
}

// 200 um of arc, a wave and noise; weights between 0 and 1 with single zeros and two long stretches of them.
std::vector<double> ArcWithNoise(std::size_t n) {
  std::mt19937 random(7);
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double t = 2.0 * static_cast<double>(i) / static_cast<double>(n) - 1.0;
    z[i] = 200.0 * t * t + 0.5 * std::sin(static_cast<double>(i) / 37.0) + static_cast<double>(random() % 1000) * 1e-3;
  }
  return z;
}

std::vector<double> Weights(std::size_t n) {
  std::mt19937 random(11);
  std::vector<double> weights(n);
  for (std::size_t i = 0; i < n; ++i) {
    const bool gap = i < n / 50 || (i > n / 3 && i < n / 3 + n / 10);
    weights[i] = gap ? 0.0 : static_cast<double>(random() % 5) / 4.0;
  }
  return weights;
}

TEST(SplineFilter, SolvesItsEquationsAtEveryCutoffAndTension) {
  constexpr std::size_t kSize = 12'001;
  const std::vector<double> z = ArcWithNoise(kSize);
  const std::vector<double> weights = Weights(kSize);
  for (const double ratio : {3.001, 5.0, 100.0, 1600.0, 8000.0, 16'000.0, 80'000.0}) {
    for (const double tension : {0.0, kGaussianLikeTension, 1.0}) {
      for (const bool weighted : {false, true}) {
        const std::span<const double> used = weighted ? std::span<const double>(weights) : std::span<const double>();
        std::vector<double> w(kSize);
        ASSERT_EQ(SplineFilter(z, w, kSpacingUM, CutoffMM(ratio), tension, used), IndexRange::FromCount(0, kSize));
        EXPECT_TRUE(AllNear(w, BandedTwin(z, {ratio, tension}, used), 1e-10)) << ratio << ' ' << tension << weighted;
      }
    }
  }
}

TEST(SplineFilter, FollowsTheSameEquationsForAFewPointsAndForOddTensions) {
  for (const std::size_t n : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 60u, 61u}) {
    const std::vector<double> z = ArcWithNoise(n);
    std::vector<double> weights(n);
    for (std::size_t i = 0; i < n; ++i) weights[i] = 0.1 + 0.9 * std::abs(std::sin(static_cast<double>(i + 1)));
    for (const Case c : {Case{4.0, 0.0}, Case{4.0, kGaussianLikeTension}, Case{80'000.0, 0.0}, Case{80'000.0, 1.0},
                         Case{4.0, 1.7}, Case{50.0, 30.0}, Case{50.0, -0.5}}) {
      for (const std::span<const double> used : {std::span<const double>(), std::span<const double>(weights)}) {
        std::vector<double> w(n);
        ASSERT_TRUE(SplineFilter(z, w, kSpacingUM, CutoffMM(c.cutoffPerSpacing), c.tension, used)) << n;
        EXPECT_TRUE(AllNear(w, BandedTwin(z, c, used), 1e-12)) << n << ' ' << c.cutoffPerSpacing << ' ' << c.tension;
      }
    }
  }
}

/// Without weights the coefficients are shared by both ends and reused once they repeat; with weights of 1 they are
/// not.
TEST(SplineFilter, WeightsOfOneGiveTheSameBits) {
  std::mt19937_64 random(3);
  std::normal_distribution<double> noise;
  for (const double cutoffPerSpacing : {3.0, 5.0, 40.0, 1600.0, 20'000.0}) {
    for (const std::size_t n : std::initializer_list<std::size_t>{2, 3, 4, 5, 63, 64, 1000, 30'001}) {
      std::vector<double> z(n), even(n), weighted(n);
      for (double& height : z) height = noise(random);
      const std::vector<double> ones(n, 1.0);
      for (const double tension : {0.0, 0.62524}) {
        ASSERT_TRUE(SplineFilter(z, even, kSpacingUM, CutoffMM(cutoffPerSpacing), tension));
        ASSERT_TRUE(SplineFilter(z, weighted, kSpacingUM, CutoffMM(cutoffPerSpacing), tension, ones));
        ASSERT_EQ(even, weighted) << n << " points, cutoff of " << cutoffPerSpacing;
      }
    }
  }
}

TEST(SplineFilter, FailsWithoutASolution) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::vector<double> z = ArcWithNoise(50);
  std::vector<double> w(50), weights(50, 0.0);
  const auto filters = [&](double tension) { return SplineFilter(z, w, 0.5, 0.008, tension, weights).has_value(); };
  EXPECT_FALSE(filters(0.0));
  EXPECT_FALSE(filters(kGaussianLikeTension));
  weights[20] = 0.5;
  EXPECT_FALSE(filters(0.0)) << "one point carries no slope";
  EXPECT_TRUE(filters(1.0));
  EXPECT_TRUE(AllNear(w, std::vector(50, z[20]), 1e-12));
  weights[21] = 1.0;
  ASSERT_TRUE(filters(0.0));
  EXPECT_TRUE(Near(w[49], z[20] + 29.0 * (z[21] - z[20]), 1e-9)) << "the line through both points";

  EXPECT_FALSE(SplineFilter({}, {}, 0.5, 0.8, 0.0));
  EXPECT_TRUE(SplineFilter(z, w, 1000.0, 3.0, 0.0));
  const std::pair<double, double> unusable[] = {{1000.0, 2.999'999'9}, {0.0, 0.8},  {-0.5, 0.8},      {0.5, 0.0},
                                                {0.5, kNaN},           {kNaN, 0.8}, {0.5, kInfinity}, {-0.5, -0.1}};
  for (const auto& [spacing, cutoff] : unusable) {
    EXPECT_FALSE(SplineFilter(z, w, spacing, cutoff, 0.5)) << spacing << ' ' << cutoff;
  }
  EXPECT_FALSE(SplineFilter(z, w, 0.5, 0.8, kNaN));
  EXPECT_FALSE(SplineFilter(z, w, 0.5, 0.8, kInfinity));
  EXPECT_FALSE(SplineFilter(z, w, 0.5, 0.8, 0.5, std::span(weights).first(49)));
  for (const double bad : {kNaN, kInfinity}) {
    std::vector<double> broken = z;
    broken[30] = bad;
    EXPECT_FALSE(SplineFilter(broken, w, 0.5, 0.008, 0.0)) << bad;
  }
}

}  // namespace
}  // namespace texturon
