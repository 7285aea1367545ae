// SPDX-License-Identifier: Apache-2.0

#include "parameters/ratio_rows.h"

#include <gtest/gtest.h>
#include <vector>

#include "parameters/height_curve.h"
#include "support/near.h"

namespace texturon {
namespace {

// Ten points: ratios 0, 10 ... 90 percent.
const std::vector<double> kHeights = {5.0, 4.0, 3.0, 2.0, 1.0, 0.0, -1.0, -1.0, -1.0, -6.0};

TEST(HeightCurve, ReadsTheNearestRatioAndTheFirstPointAtOrBelow) {
  struct Case {
    double percent, height;
  };
  const Case byRatio[] = {{-3.0, 5.0}, {0.0, 5.0},   {4.9, 5.0},   {5.0, 5.0},   {5.1, 4.0},   {30.0, 2.0},
                          {44.0, 1.0}, {84.9, -1.0}, {85.1, -6.0}, {90.0, -6.0}, {400.0, -6.0}};
  for (const Case& c : byRatio) EXPECT_EQ(HeightAtRatio(kHeights, c.percent), c.height) << c.percent;
  const Case byHeight[] = {{0.0, 9.0}, {0.0, 5.0}, {10.0, 4.9}, {60.0, -1.0}, {90.0, -1.1}, {100.0, -7.0}};
  for (const Case& c : byHeight) EXPECT_EQ(RatioAtHeight(kHeights, c.height), c.percent) << c.height;
  EXPECT_EQ(HeightAtRatio(std::vector<double>{3.0}, 50.0), 3.0);
}

TEST(RatioRows, MeasureFromAReferenceRatioOrFromTheMeanLine) {
  MaterialRatioRows rows = PresetMaterialRatios();
  rows[0] = {.depthUM = 2.5, .offsetPercent = 12.0};  // from 4.0 um
  rows[1] = {.meanReferenced = true, .depthUM = 2.5, .offsetPercent = 12.0};
  rows[2] = {.meanReferenced = true, .depthUM = -1.0};
  rows[3] = {.depthUM = 100.0};
  const RatioRowResults ratios = ComputeMaterialRatios(kHeights, rows);
  const double expected[] = {40.0, 30.0, 60.0, 100.0};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_TRUE(ratios[i].valid);
    EXPECT_EQ(ratios[i].value, expected[i]) << i;
  }
  HtpRows heights = PresetHtps();
  heights[9] = {.upperPercent = 10.0, .lowerPercent = 90.0};
  const RatioRowResults htps = ComputeHtps(kHeights, heights);
  EXPECT_EQ(htps[0].value, 4.0 - 0.0);   // 10 to 50 %
  EXPECT_EQ(htps[4].value, 4.0 - -6.0);  // 10 to 90 %
  EXPECT_EQ(htps[6].value, 3.0 - -1.0);  // 20 to 60 %
  EXPECT_EQ(htps[9].value, -10.0) << "the percents are taken as they are named";
  EXPECT_FALSE(ComputeHtps({}, heights)[0].valid);
  EXPECT_FALSE(ComputeHtps(std::vector{1.7e308, 0.0, -1.7e308}, HtpRows{{{.upperPercent = 99.0}}})[0].valid);
  EXPECT_FALSE(ComputeMaterialRatios({}, rows)[0].valid);
}

}  // namespace
}  // namespace texturon
