// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

#include "parameters/local_slopes.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;

TEST(SlopeRows, HaveTheMomentsOfASine) {
  const double h = 2.0 * std::numbers::pi / 50.0;
  RowCase row{.spacingMM = 0.0005};
  for (int i = -1; i < 2001; ++i) row.heights.push_back(0.8 * std::sin(h * (i + 0.3)));
  EXPECT_TRUE(Near(*RowValue("m2", row), std::pow(0.8 * std::sin(h) / 0.5, 2) / 2.0, 1e-12));
  EXPECT_TRUE(Near(*RowValue("m4", row), std::pow(0.8 * (2.0 - 2.0 * std::cos(h)) / 0.25, 2) / 2.0, 1e-12));
  EXPECT_TRUE(Near(*RowValue("m0", {.heights = {1, -3}}), 5.0, 1e-12));
}

TEST(SteepPart, HoldsTheHeightsOfTheSteepPointsOnly) {
  // Level, then a ramp of 45 degrees up to a plateau, and a steeper one down.
  std::vector<double> z(100, 0.0);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const auto x = static_cast<double>(i);
    z[i] = i < 70 ? std::clamp(x - 30.0, 0.0, 20.0) : std::max(20.0 - 2.0 * (x - 70.0), 0.0);
  }
  const SteepPart down = FindSteepPart(z, 1.0, 50.0);
  const SteepPart both = FindSteepPart(z, 1.0, 40.0);
  for (const std::size_t i : {10U, 40U, 60U, 68U, 75U, 90U}) {
    EXPECT_EQ(std::isnan(down.heightsUM[i]), i != 75) << i;
    EXPECT_EQ(std::isnan(both.heightsUM[i]), i != 75 && i != 40) << i;
  }
  EXPECT_EQ(both.heightsUM[40], 10.0);
  EXPECT_NEAR(down.percent, 10.0, 2.0);
  EXPECT_EQ(FindSteepPart(std::vector<double>(6, 1.0), 0.5, 40.0).percent, 0.0) << "too few points for a slope";
}

TEST(SlopeRows, AgreeWithLongDoubleSumsOverSortedAngles) {
  for (const std::size_t n : {7u, 8u, 500u, 5000u, 5001u}) {
    RowCase row{.heights = RandomSurface(n, 17), .spacingMM = 0.001};
    if (n == 5000) row.heights[77] = 1e6;  // all other slopes are next to nothing beside it
    for (std::size_t i = 0; i < n; ++i) row.heights[i] += 0.002 * static_cast<double>(i);
    const std::vector<double>& z = row.heights;
    std::vector<long double> slopes;
    for (std::size_t i = 3; i + 3 < n; ++i) {
      slopes.push_back((static_cast<long double>(z[i + 3]) - 9.0L * z[i + 2] + 45.0L * z[i + 1] - 45.0L * z[i - 1] +
                        9.0L * z[i - 2] - z[i - 3]) /
                       60.0L);
    }
    const auto count = static_cast<long double>(slopes.size());
    std::vector<long double> angles;
    long double sum = 0, squares = 0, angleSum = 0, m2 = 0, m3 = 0;
    for (const long double s : slopes) {
      sum += s;
      squares += s * s;
      angles.push_back(std::atan(std::abs(s)));
      angleSum += angles.back();
    }
    for (const long double s : slopes) {
      m2 += std::pow(s - sum / count, 2.0L);
      m3 += std::pow(s - sum / count, 3.0L);
    }
    std::sort(angles.begin(), angles.end());
    const std::size_t half = angles.size() / 2;
    const long double median = angles.size() % 2 == 1 ? angles[half] : (angles[half - 1] + angles[half]) / 2;
    EXPECT_TRUE(
        Near(*RowValue("dq", row), static_cast<double>(std::atan(std::sqrt(squares / count))) * kDegrees, 1e-12));
    EXPECT_TRUE(Near(*RowValue("dmn", row), static_cast<double>(angleSum / count) * kDegrees, 1e-12)) << n;
    EXPECT_TRUE(Near(*RowValue("dmd", row), static_cast<double>(median) * kDegrees, 1e-12)) << n;
    if (n > 8) {
      EXPECT_TRUE(Near(*RowValue("dsk", row), static_cast<double>(m3 / count / std::pow(m2 / count, 1.5L)), 1e-9)) << n;
    }
  }
}

TEST(SlopeRows, HaveTheirFallBacks) {
  const RowCase six{.heights = RandomSurface(6, 1)};
  for (const char* suffix : {"dq", "dmn", "dmd", "dsk"}) EXPECT_FALSE(RowValue(suffix, six).has_value()) << suffix;
  EXPECT_FALSE(RowValue("m2", {.heights = {1.0, 2.0}}).has_value());
  EXPECT_FALSE(RowValue("m4", {.heights = {1.0, 2.0}}).has_value());
  EXPECT_FALSE(RowValue("m0", {}).has_value());
  RowCase ramp;
  for (int i = 0; i < 4000; ++i) ramp.heights.push_back(0.1 * i);
  EXPECT_TRUE(Near(*RowValue("dq", ramp), std::atan(0.1) * kDegrees, 1e-12));
  EXPECT_EQ(*RowValue("dsk", ramp), 0.0) << "slopes that differ by rounding alone";
  EXPECT_EQ(*RowValue("dsk", {.heights = std::vector<double>(60)}), 0.0);
}

TEST(PeakSpacing, CountsStrictMaximaOnly) {
  EXPECT_TRUE(Near(*RowValue("s", {.heights = {0, 1, 0, 0, 2, 0, 3, 0}, .spacingMM = 2.0}), 5.0, 1e-12));
  EXPECT_FALSE(RowValue("s", {.heights = {5, 1, 2, 1, 5}}).has_value()) << "one peak; the ends are none";
  EXPECT_FALSE(RowValue("s", {.heights = {0, 1, 1, 0, 2, 2, 0}}).has_value()) << "plateaus";
  EXPECT_FALSE(RowValue("s", {}).has_value());
}

TEST(ShareWithinDeviation, CountsPointsUpToQ) {
  EXPECT_TRUE(Near(*RowValue("twi", {.heights = {1, -1, 1, 5}}), 75.0, 1e-12));  // q = sqrt(7)
  std::vector<double> twoValued(1000, 0.1);
  for (std::size_t i = 0; i < 500; ++i) twoValued[i] = -0.1;
  EXPECT_EQ(*RowValue("twi", {.heights = twoValued}), 100.0);
  EXPECT_EQ(*RowValue("twi", {.heights = {0, 0}}), 100.0);
  EXPECT_FALSE(RowValue("twi", {}).has_value());
}

TEST(ElementHeightOfLengths, AveragesOverSamplingLengthsThatHoldAnElement) {
  // Waves of 20 points, 10 high in the first sampling length of 100 points, 4 in the second, nothing in the third.
  RowCase row{.spacingMM = 0.001, .samplingLengthMM = 0.1};
  row.settings.RcRzPercent = 1.0;
  for (int i = 0; i < 300; ++i) {
    const double size = i < 100 ? 5.0 : i < 200 ? 2.0 : 0.0;
    row.heights.push_back(-size * std::sin(2.0 * std::numbers::pi * (i + 0.5) / 20.0));
  }
  const double crest = std::sin(2.0 * std::numbers::pi * 4.5 / 20.0);
  EXPECT_TRUE(Near(*RowValue("cl", row), (10.0 + 4.0) / 2.0 * crest, 1e-9));
  row.samplingLengthMM = 0.015;
  EXPECT_FALSE(RowValue("cl", row).has_value()) << "no element fits into a sampling length";
}

}  // namespace
}  // namespace texturon
