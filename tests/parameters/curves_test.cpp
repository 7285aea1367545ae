// SPDX-License-Identifier: Apache-2.0

#include "parameters/curves.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace texturon {
namespace {

/// Two hundred thousand heights, most of them alike, with a deep tail.
std::vector<double> Sorted() {
  std::mt19937_64 random(3);
  std::normal_distribution<double> normal;
  std::vector<double> heights(200'000);
  for (double& height : heights) height = normal(random);
  for (std::size_t i = 0; i < 40; ++i) heights[i] = -50.0 - static_cast<double>(i);
  std::sort(heights.begin(), heights.end(), std::greater<>());
  return heights;
}

/// Between two points of the thin curve the whole one stays within the rectangle that they span, which is narrower than
/// a column of the screen or has nothing in it: checked point by point.
template <typename Point>
void ExpectDense(const std::vector<Point>& thin, const std::vector<Point>& whole, double Point::*abscissa, double from,
                 double to, std::size_t most) {
  ASSERT_GE(thin.size(), 2U);
  EXPECT_LE(thin.size(), most + 2);
  const double column = (to - from) / static_cast<double>(most - 1);
  std::size_t i = 0;
  for (const Point& point : whole) {
    if (point.*abscissa < from || point.*abscissa > to) continue;
    while (i + 1 < thin.size() && thin[i + 1].*abscissa < point.*abscissa) ++i;
    ASSERT_LE(thin[i].*abscissa, point.*abscissa);
    ASSERT_LT(i + 1, thin.size());
    const bool isOwn = point.heightUM == thin[i].heightUM || point.heightUM == thin[i + 1].heightUM;
    ASSERT_TRUE(isOwn || thin[i + 1].*abscissa - thin[i].*abscissa <= 2.0 * column) << point.*abscissa;
    ASSERT_TRUE(point.heightUM <= thin[i].heightUM && point.heightUM >= thin[i + 1].heightUM);
  }
}

TEST(Curves, ThinnedForAScreenTheyLoseNothingThatCanBeSeen) {
  const std::vector<double> sorted = Sorted();
  const auto ratios = BearingRatioCurve(sorted);
  for (const auto& [from, to] : {std::pair(0.0, 100.0), std::pair(99.97, 100.0), std::pair(40.0, 41.0)}) {
    ExpectDense(BearingRatioCurve(sorted, from, to, 1000), ratios, &BearingPoint::ratioPercent, from, to, 1000);
  }
  const auto whole = BearingRatioCurve(sorted, 0.0, 100.0, 1000);
  EXPECT_EQ(whole.front().heightUM, sorted.front());
  EXPECT_EQ(whole.back().heightUM, sorted.back());
  const auto quantiles = ProbabilityCurve(sorted);
  for (const auto& [from, to] : {std::pair(-5.0, 5.0), std::pair(3.0, 4.5), std::pair(0.0, 0.1)}) {
    ExpectDense(ProbabilityCurve(sorted, from, to, 1000), quantiles, &ProbabilityPoint::deviations, from, to, 1000);
  }
  EXPECT_TRUE(BearingRatioCurve({}, 0.0, 100.0, 1000).empty());
  EXPECT_EQ(ProbabilityCurve(std::vector<double>{1.0}, -1.0, 1.0, 1000).size(), 1U);
}

}  // namespace
}  // namespace texturon
