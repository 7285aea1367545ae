// SPDX-License-Identifier: Apache-2.0

#include "presentation/feature_marks.h"

#include <gtest/gtest.h>

#include "support/near.h"

namespace texturon {
namespace {

TEST(FeatureMarks, StandWhereTheRowsFindThem) {
  Document document = MakeDocument();
  ProfileSet& profiles = document.profiles;
  //                  0   1  2  3   4  5  6   7  8  9
  profiles.primary = {9, -3, 4, 1, 3.9, -4, 3, -1, 2, -2, 0, 0};
  profiles.raw = profiles.primary;
  profiles.pointCount = 12;
  profiles.spacingUM = profiles.residualSpacingUM = 500.0;
  profiles.primaryRange = IndexRange::FromEnds(1, 9);  // from -3 to -2
  document.settings.analysis.standard.Sections = 1;    // Rz = 4 + 4
  document.settings.analysis.standard.PruningPercent = 40.0;
  const FeatureMarks dales = FeatureMarksOf(document, ProfileKind::kPrimary, false);
  // Pits at 3, 5 and 7 with depths of 2.9, 7 and 3: below 3.2 the outer two go.
  ASSERT_EQ(dales.extremes.size(), 3u);
  EXPECT_FALSE(dales.extremes[0].isKept);
  EXPECT_TRUE(dales.extremes[1].isKept);
  EXPECT_EQ(dales.extremes[1].xMM, 2.5);
  EXPECT_EQ(dales.extremes[1].heightUM, -4.0);
  ASSERT_EQ(dales.levels.size(), 1u);
  EXPECT_EQ(dales.levels[0].heightUM, 3.0) << "the lower peak, at 6";
  EXPECT_EQ(dales.levels[0].lastMM, 3.0);
  EXPECT_TRUE(Near(dales.levels[0].firstMM, 0.5 * (2.0 + 1.0 / 3.0), 1e-12)) << "beyond the pit that went";
  const FeatureMarks hills = FeatureMarksOf(document, ProfileKind::kPrimary, true);
  ASSERT_EQ(hills.extremes.size(), 2u);
  EXPECT_EQ(hills.extremes[0].xMM, 2.0) << "the ends of the record are no pits";
  EXPECT_EQ(hills.extremes[0].heightUM, 3.9);
  EXPECT_TRUE(FeatureMarksOf(document, ProfileKind::kRoughness, true).extremes.empty());
}

}  // namespace
}  // namespace texturon
