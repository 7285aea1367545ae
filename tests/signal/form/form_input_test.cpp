// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_input.h"

#include <gtest/gtest.h>
#include <numeric>
#include <vector>

namespace texturon {
namespace {

TEST(FitPoints, AreTheMultiplesOfTheStepOutsideTheExclusion) {
  std::vector<double> heights(23);
  std::iota(heights.begin(), heights.end(), 0.0);  // every height is its own index
  const std::vector<std::optional<IndexRange>> exclusions = {
      std::nullopt,
      IndexRange::FromEnds(5, 11),
      IndexRange::FromEnds(0, 3),
      IndexRange::FromEnds(-4, 2),
      IndexRange::FromEnds(20, 100),
      IndexRange::FromEnds(0, 22),
      IndexRange::FromEnds(9, 4),    // upside down: nothing excluded
      IndexRange::FromEnds(-5, -1),  // before the first height
      IndexRange::FromEnds(40, 50),
  };
  for (const auto& exclusion : exclusions) {
    for (const std::int32_t step : {-3, 0, 1, 2, 5, 22, 23, 1000}) {
      std::vector<double> expected;
      for (int i = 0; i < 23; i += std::max(step, 1)) {
        if (!exclusion || i < exclusion->first || i > exclusion->last) expected.push_back(i);
      }
      const FormInput input{heights, 0.5, step, exclusion, ResidualKind::kVertical};
      const FitPoints points(input);
      std::vector<double> byHeight, byIndex;
      for (const FitRun& run : points.Runs()) {
        EXPECT_FALSE(run.heights.empty());
        for (std::size_t j = 0; j < run.heights.size(); ++j) {
          byHeight.push_back(run.heights[j]);
          byIndex.push_back(run.Index(j));
        }
      }
      EXPECT_EQ(byHeight, expected) << step;
      EXPECT_EQ(byIndex, expected) << step;
      EXPECT_EQ(points.Count(), expected.size());
    }
  }
}

}  // namespace
}  // namespace texturon
