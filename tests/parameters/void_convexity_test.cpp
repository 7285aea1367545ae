// SPDX-License-Identifier: Apache-2.0

#include "parameters/void_convexity.h"

#include <gtest/gtest.h>
#include <vector>

#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

/// Gaps below an envelope at 0, as a profile.
std::vector<double> Below(std::vector<double> gaps) {
  for (double& gap : gaps) gap = -gap;
  return gaps;
}

TEST(VoidWalk, CountsEveryStartButAddsUpCompleteVoidsOnly) {
  const std::vector<double> z = Below({0, 0, 1, 3, 2, 0, 0, 4, 0, 0, 5, 5});
  const VoidWalk walk = WalkVoids(z, std::vector<double>(z.size(), 0.0), 2.0);
  // From 1 to 5; from 6 to 8 it is too short; from 9 on it stays open.
  EXPECT_EQ(walk.starts, 3u);
  EXPECT_EQ(walk.sumOfDepths, 3.0);
  EXPECT_EQ(walk.sumOfLengths, 5.0 * 2.0);
  EXPECT_TRUE(Near(walk.sumOfAspects, 0.3, 1e-12));
  EXPECT_TRUE(Near(walk.sumOfAreas, 6.0 / 7.0 * 6.0 * 2.0, 1e-12));
  EXPECT_EQ(walk.deepestGap, 5.0);
  EXPECT_EQ(walk.deepestAt, 10u) << "the first of two";
  EXPECT_TRUE(Near(walk.meanGap, 20.0 / 12.0, 1e-12));
}

TEST(VoidWalk, NeverCompletesAVoidFromTheFirstPointAndGrowsWithPlace) {
  const std::vector<double> atStart = Below({0, 1, 1, 1, 0, 0, 0});
  const VoidWalk first = WalkVoids(atStart, std::vector<double>(7, 0.0), 1.0);
  EXPECT_EQ(first.starts, 1u);
  EXPECT_EQ(first.sumOfDepths, 0.0);
  const VoidWalk near = WalkVoids(Below({0, 0, 1, 1, 1, 0, 0, 0}), std::vector<double>(8, 0.0), 1.0);
  const VoidWalk far = WalkVoids(Below({0, 0, 0, 0, 1, 1, 1, 0}), std::vector<double>(8, 0.0), 1.0);
  EXPECT_GT(far.sumOfAreas, near.sumOfAreas);
  EXPECT_EQ(far.sumOfDepths, near.sumOfDepths);
}

TEST(BumpWalk, CountsCompleteBumpsWhereverTheyStart) {
  const std::vector<double> z = {0, 1, 4, 0, 0, 3, 0, 2, 7};
  const BumpWalk walk = WalkBumps(z, std::vector<double>(z.size(), 0.0));
  EXPECT_EQ(walk.complete, 1u) << "0 to 3; 4 to 6 is too short, 6 on stays open";
  EXPECT_EQ(walk.sumOfHeights, 4.0);
  EXPECT_EQ(walk.highest, 7.0);
  EXPECT_EQ(walk.highestAt, 8u);
}

TEST(VoidRows, MeasureAGrooveUnderTheBall) {
  // A groove from point 100 to 120 in a plane: the ball of 1 mm sinks r - sqrt(r^2 - 10^2) in the middle of 20 um.
  RowCase row{.heights = std::vector<double>(1000, 0.0), .letter = 'W', .spacingMM = 0.001};
  for (std::size_t i = 101; i < 120; ++i) row.heights[i] = -2.0;
  row.settings.ClosingRadiusForWvoid = 1.0;
  const double sag = 1000.0 - std::sqrt(1e6 - 100.0);
  EXPECT_TRUE(Near(*RowValue("vdm", row), *RowValue("vdd", row), 1e-15));
  const double nextToRim = 2.0 - (sag - (1000.0 - std::sqrt(1e6 - 81.0)));
  EXPECT_TRUE(Near(*RowValue("vdd", row), nextToRim, 1e-9)) << "deepest beside the rim, where the arc is highest";
  EXPECT_TRUE(Near(*RowValue("vddl", row), 0.101, 1e-12));
  EXPECT_TRUE(Near(*RowValue("vdc", row), 10.0, 1e-12)) << "one on a millimetre";
  EXPECT_TRUE(Near(*RowValue("vdmp", row), 0.021, 1e-12));
  EXPECT_TRUE(Near(*RowValue("vdas", row), nextToRim / 21.0, 1e-9));
  double gaps = 0.0;
  for (int u = -9; u <= 9; ++u) gaps += 2.0 - (sag - (1000.0 - std::sqrt(1e6 - u * u)));
  EXPECT_TRUE(Near(*RowValue("void", row), gaps / 1000.0, 1e-9));
  EXPECT_TRUE(Near(*RowValue("vda", row), gaps / 221.0 * 220.0 * 1e-6, 1e-9, 1e-6));
  // From below, the ball of 1 m rests on the groove's floor and on the plane's last point.
  EXPECT_TRUE(Near(*RowValue("cvx", row), 2.0 - (2.0 / 880.0 + 879.0 / 2e6), 1e-8));
  EXPECT_TRUE(Near(*RowValue("cvxl", row), 0.12, 1e-12));
}

TEST(VoidRows, FailOnlyWhereNoVoidStarts) {
  const RowCase flat{.heights = std::vector<double>(60, 1.0), .letter = 'W'};
  for (const char* suffix : {"void", "vdd", "vddl", "vdc", "cvx", "cvxl"}) EXPECT_EQ(RowValue(suffix, flat), 0.0);
  for (const char* suffix : {"vdm", "vdmp", "vda", "vdas", "cvxm"}) EXPECT_FALSE(RowValue(suffix, flat).has_value());
  const RowCase one{.heights = {3.0}, .letter = 'W'};
  EXPECT_EQ(RowValue("vdd", one), 0.0);
  EXPECT_FALSE(RowValue("vdd", {.letter = 'W'}).has_value());
}

}  // namespace
}  // namespace texturon
