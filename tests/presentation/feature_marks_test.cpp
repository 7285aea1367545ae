// SPDX-License-Identifier: Apache-2.0

#include "presentation/feature_marks.h"

#include <gtest/gtest.h>

#include "analysis/feature_histogram.h"
#include "parameters/edition2021/edition_list.h"
#include "support/near.h"

namespace texturon {
namespace {

TEST(FeatureMarks, StandWhereTheRowsFindThem) {
  Document document = MakeDocument();
  ProfileSet& profiles = document.profiles;
  //                  0   1  2  3   4  5  6   7  8  9
  profiles.primary = {9, -3, 4, 1, 3.9, -4, 3, -1, 2, -2, 0, 0};
  profiles.raw.assign(profiles.primary.begin(), profiles.primary.end());
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

TEST(FeatureHistogram, CountsEveryAttributeOnce) {
  Document document = MakeDocument();
  ProfileSet& profiles = document.profiles;
  profiles.primary = {0, 5, 0, 5, 1, 5, 3, 5, 4, 5, 0};
  profiles.raw.assign(profiles.primary.begin(), profiles.primary.end());
  profiles.pointCount = 11;
  profiles.spacingUM = profiles.residualSpacingUM = 1.0;
  profiles.primaryRange = IndexRange::FromEnds(0, 10);
  const auto histogram = HistogramOf(document, MakeEditionRow("P: FC; D; None; All; HDh; Hist"));  // 5 4 2 1
  ASSERT_TRUE(histogram);
  EXPECT_EQ(histogram->counts, (std::vector<std::int32_t>{1, 0, 1, 0, 0, 0, 0, 1, 0, 1}));
  EXPECT_EQ(histogram->edges.front(), 1.0);
  EXPECT_EQ(histogram->edges.back(), 5.0);
  EXPECT_FALSE(HistogramOf(document, MakeEditionRow("P: FC; D; None; All; HDh; Mean")));
  EXPECT_FALSE(HistogramOf(document, MakeEditionRow("P: FC; D; None; Open -9; HDh; Hist"))) << "none is left";
}

}  // namespace
}  // namespace texturon
