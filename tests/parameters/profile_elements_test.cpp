// SPDX-License-Identifier: Apache-2.0

#include "parameters/profile_elements.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

using Expected = std::vector<ProfileElement>;

void ExpectElements(const std::vector<double>& heights, const ElementThresholds& thresholds, const Expected& expected,
                    const char* what) {
  const auto elements = FindProfileElements(heights, thresholds);
  ASSERT_EQ(elements.size(), expected.size()) << what;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    EXPECT_TRUE(Near(elements[i].widthPoints, expected[i].widthPoints, 1e-12)) << what << ", element " << i;
    EXPECT_TRUE(Near(elements[i].heightUM, expected[i].heightUM, 1e-12)) << what << ", element " << i;
  }
}

TEST(ProfileElements, FollowHandDrawnCases) {
  ExpectElements({-1, 1, 1, -1, 3, -2, 1}, {}, {{3.25 - 0.5, 2.0}, {5.0 + 2.0 / 3.0 - 3.25, 5.0}},
                 "interpolated crossings");
  ExpectElements({0, 2, -2, 2}, {}, {{2.5, 4.0}}, "a record that starts at the mean line and rises");
  ExpectElements({0, -2, 2, -2, 2}, {}, {{2.0, 4.0}}, "one that starts there and falls");
  ExpectElements({-1, 3, -3, 0, 0, 2, -3, 1}, {}, {{3.0 - 0.25, 6.0}, {6.75 - 3.0, 5.0}},
                 "a crossing that lands on the mean line");
  ExpectElements({1, 2, -3}, {}, {}, "no upward crossing");
  ExpectElements({-1, 2, -3}, {}, {}, "an element left open");
  ExpectElements({}, {}, {}, "no points");
  ExpectElements(std::vector<double>(100, 0.0), {}, {}, "flat");
}

TEST(ProfileElements, LeaveOutExcursionsInsideTheBand) {
  ExpectElements({-2, 2, -0.5, 0.5, 3, -2, 2}, {2.0, 0.0}, {{5.5 - 0.5, 5.0}}, "small dale inside a hill");
  // The hill after the first dale is too small to begin anything: the dale behind it belongs to the first element's.
  ExpectElements({-2, 2, -2, 0.5, -4, 2, -2, 2}, {2.0, 0.0}, {{2.8 - 0.5, 6.0}, {6.5 - 2.8, 4.0}},
                 "dale that goes on across the element's end");
  ExpectElements({-2, 2, -1, 2, -2, 2}, {2.0, 0.0}, {{4.5 - 0.5, 4.0}}, "a dale exactly on the edge");
  ExpectElements({-2, 1, -2, 1, -2, 1}, {2.0, 0.0}, {}, "excursions exactly on the edge");
}

TEST(ProfileElements, GoOnUntilTheyAreWideEnough) {
  ExpectElements({-1, 1, -1, 4, -6, 1, -1, 2, -2, 1}, {0.0, 3.0},
                 {{4.0 + 6.0 / 7.0 - 0.5, 10.0}, {8.0 + 2.0 / 3.0 - 4.0 - 6.0 / 7.0, 4.0}},
                 "two waves each, highest hill and deepest dale");
  ExpectElements({-1, 1, -1, 1, -1, 1, -1, 1}, {0.0, 2.0}, {{2.0, 2.0}, {2.0, 2.0}, {2.0, 2.0}}, "as wide as asked");
}

TEST(ProfileElements, HaveADeviationWithOneLessThanTheirNumber) {
  const std::vector<ProfileElement> elements = {{2.0, 1.0}, {4.0, 3.0}, {9.0, 2.0}};
  const auto statistics = SummariseElements(elements);
  EXPECT_TRUE(Near(statistics->meanWidthPoints, 5.0, 1e-12));
  EXPECT_EQ(statistics->meanHeightUM, 2.0);
  EXPECT_EQ(statistics->greatestHeightUM, 3.0);
  EXPECT_TRUE(Near(statistics->widthDeviationPoints.value(), std::sqrt((9.0 + 1.0 + 16.0) / 2.0), 1e-12));
  EXPECT_FALSE(SummariseElements(std::span(elements).first(1))->widthDeviationPoints.has_value());
  EXPECT_FALSE(SummariseElements({}).has_value());
}

}  // namespace
}  // namespace texturon
