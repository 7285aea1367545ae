// SPDX-License-Identifier: Apache-2.0

#include "parameters/probability.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "parameters/curves.h"
#include "signal/normal_distribution.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

/// A profile in random order whose probability plot is two straight lines that cross at a ratio; blunted by `bend` as a
/// hyperbola of that half-width (um) where it is not 0.
RowCase TwoLines(std::size_t n, double plateau, double valley, double crossingPercent, double bend = 0.0) {
  const double corner = NormalQuantile(crossingPercent / 100.0);
  RowCase row;
  for (std::size_t i = 0; i < n; ++i) {
    const double x = NormalQuantile((static_cast<double>(i) + 0.5) / static_cast<double>(n)) - corner;
    const double mean = -0.5 * (plateau + valley) * x;
    const double half = 0.5 * (valley - plateau) * x;
    row.heights.push_back(mean - std::sqrt(half * half + bend * bend));
  }
  std::shuffle(row.heights.begin(), row.heights.end(), std::mt19937_64(1));
  return row;
}

TEST(ProbabilityRows, GiveBackTwoStraightLines) {
  struct Case {
    std::size_t n;
    double plateau, valley, crossing;
    int method;
  };
  const Case cases[] = {{20'000, 0.2, 1.5, 80.0, 0},
                        {50'000, 0.5, 2.0, 50.0, 1},
                        {5'000, 0.3, 4.0, 25.0, 1},
                        {750'000, 0.1, 1.0, 70.0, 1}};
  for (const Case& c : cases) {
    RowCase row = TwoLines(c.n, c.plateau, c.valley, c.crossing);
    row.settings.RqFittingMethod = c.method;
    row.settings.RxqValleyCountHeightUm = -0.5;
    const auto pq = RowValue("pq", row);
    const auto vq = RowValue("vq", row);
    const auto mq = RowValue("mq", row);
    ASSERT_TRUE(pq && vq && mq) << c.crossing << " method " << c.method;
    EXPECT_TRUE(Near(*pq / c.plateau, 1.0, 5e-3)) << c.crossing << " method " << c.method;
    EXPECT_TRUE(Near(*vq / c.valley, 1.0, 5e-3)) << c.crossing << " method " << c.method;
    EXPECT_TRUE(Near(*mq / c.crossing, 1.0, 5e-3)) << c.crossing << " method " << c.method;
  }
}

TEST(ProbabilityRows, FindTheAsymptotesOfABluntCorner) {
  // A hyperbola is the conic itself: its centre is found, and the straight regions end on both sides of it.
  RowCase row = TwoLines(20'000, 0.2, 1.5, 75.0, 0.05);
  std::sort(row.heights.begin(), row.heights.end(), std::greater<>());
  const auto limits = FindProbabilityLimits(row.heights, {.upl = 0.0, .lvl = 99.9}, 20.0, 90.0);
  ASSERT_TRUE(limits.has_value());
  EXPECT_LT(limits->lpl, 74.0);
  EXPECT_GT(limits->uvl, 76.0);
  row.settings.RqFittingMethod = 1;
  row.settings.RxqValleyCountHeightUm = -0.5;
  row.settings.RxqMinimumValleyCount = 1;
  EXPECT_TRUE(Near(*RowValue("mq", row), 75.0, 0.02));
  EXPECT_TRUE(Near(*RowValue("pq", row), 0.2, 0.02));
  EXPECT_TRUE(Near(*RowValue("vq", row), 1.5, 0.02));
  EXPECT_FALSE(FindProbabilityLimits(row.heights, {.upl = 0.0, .lvl = 99.9}, 20.0, 60.0)) << "outside the two percents";
}

TEST(ProbabilityRows, NeedValleysForTheValleyLine) {
  RowCase row = TwoLines(20'000, 0.2, 1.5, 80.0);
  row.settings.RxqValleyCountHeightUm = -100.0;
  EXPECT_TRUE(RowValue("pq", row).has_value());
  EXPECT_FALSE(RowValue("vq", row).has_value());
  EXPECT_FALSE(RowValue("mq", row).has_value());
  row.settings.RxqMinimumValleyCount = 0;
  EXPECT_TRUE(RowValue("mq", row).has_value());
  // Without two lines there is a slope but no crossing, and nothing to be found by itself.
  RowCase flat{.heights = std::vector<double>(500, 1.0)};
  flat.settings.RxqMinimumValleyCount = 0;
  EXPECT_EQ(RowValue("pq", flat), 0.0);
  EXPECT_FALSE(RowValue("mq", flat).has_value());
  flat.settings.RqFittingMethod = 1;
  EXPECT_FALSE(RowValue("pq", flat).has_value());
  EXPECT_FALSE(RowValue("pq", {}).has_value());
  row.settings.LPLPercent = std::nan("");
  EXPECT_FALSE(RowValue("pq", row).has_value());
}

TEST(ProbabilityRows, FitThroughTheVeryPointsOfTheirLimits) {
  // Ratios 0.5 / 85 and 59.5 / 85 are the limits themselves: dropping one of the outer points bends the line.
  std::vector<double> sorted(85, 0.0);
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = i < 59 ? 0.0 : -1.0;
  const auto withLast = FitProbabilityLine(sorted, 0.0, 70.0);
  const auto withoutLast = FitProbabilityLine(sorted, 0.0, 69.9);
  ASSERT_TRUE(withLast && withoutLast);
  EXPECT_EQ(withoutLast->slopeUM, 0.0);
  EXPECT_LT(withLast->slopeUM, 0.0);
  std::reverse(sorted.begin(), sorted.end());
  EXPECT_NE(FitProbabilityLine(sorted, 30.0, 100.0)->slopeUM, 0.0) << "25.5 / 85 belongs to it";
}

TEST(Curves, CountClassesAndPlacePoints) {
  // Nine heights from 0 to 100 um: classes are 1 um wide.
  const std::vector<double> sorted = {100.0, 99.5, 99.0, 50.0, 10.9, 10.0, 10.0, 0.5, 0.0};
  const auto classes = AmplitudeDistribution(sorted);
  ASSERT_EQ(classes.size(), 100u);
  for (std::size_t k = 0; k < 100; ++k) {
    const double expected = k == 99 || k == 10 ? 100.0 : k == 0 ? 200.0 / 3.0 : k == 50 ? 100.0 / 3.0 : 0.0;
    EXPECT_TRUE(Near(classes[k].scaledCount, expected, 1e-12)) << k;
    EXPECT_TRUE(Near(classes[k].heightUM, static_cast<double>(k) + 0.5, 1e-12)) << k;
  }
  EXPECT_EQ(AmplitudeDistribution(std::vector<double>(7, 2.0)).size(), 1u);
  EXPECT_TRUE(AmplitudeDistribution({}).empty());
  EXPECT_EQ(AmplitudeDistribution(std::vector<double>{1.7e308, 0.0, -1.7e308}).size(), 100u);
  EXPECT_EQ(BearingRatioCurve(sorted)[3].ratioPercent, 300.0 / 9.0);
  const auto points = ProbabilityCurve(sorted);
  EXPECT_EQ(points[4].deviations, 0.0);
  EXPECT_EQ(points[0].deviations, -points[8].deviations);
  EXPECT_TRUE(Near(NormalProbability(points[1].deviations) * 100.0, points[1].ratioPercent, 1e-12));
  EXPECT_EQ(points[8].heightUM, 0.0);
}

}  // namespace
}  // namespace texturon
