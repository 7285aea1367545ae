// SPDX-License-Identifier: Apache-2.0

// Regions as they are entered; how they resolve is in the tests of the pipeline.

#include "analysis/region_choice.h"

#include <gtest/gtest.h>
#include <string>

#include "base/number_text.h"
#include "support/golden.h"

namespace texturon {
namespace {

TEST(RegionChoice, ReadsTheLengthsThatMoveIt) {
  constexpr RegionChoice kBase{.startMM = 1.0, .endOffsetMM = 2.0, .lengthMM = 3.0};
  const auto resolved = [](const RegionChoice& region) { return ResolveRegion(region, 10'001, 1.0).value(); };
  for (std::int32_t mode = 0; mode <= 4; ++mode) {
    RegionChoice region = kBase;
    region.mode = mode;
    const IndexRange before = resolved(region);
    const std::pair<double RegionChoice::*, bool> lengths[] = {{&RegionChoice::startMM, region.ReadsStart()},
                                                               {&RegionChoice::endOffsetMM, region.ReadsEndOffset()},
                                                               {&RegionChoice::lengthMM, region.ReadsLength()}};
    for (const auto& [length, isRead] : lengths) {
      RegionChoice moved = region;
      moved.*length += 0.5;
      EXPECT_EQ(resolved(moved) != before, isRead) << mode;
    }
  }
}

TEST(RegionChoice, IsSaidInTheUnitsShown) {
  const IndexRange range = IndexRange::FromEnds(2000, 4540);
  EXPECT_EQ(DescribeStretch(range, 0.5, 1.0, true), "2541 points = 2.5410 mm, from 1.0000 mm to 2.2700 mm");
  EXPECT_EQ(DescribeStretch(range, 5.0, 5.0, false), "2541 points = 0.50020 in, from 0.39370 in to 0.89370 in");
}

TEST(RegionChoice, LengthsAreReadWithinTheRecord) {
  std::string text;
  for (const bool metric : {true, false}) {
    for (const char* const entered : {" 2.5 ", "0.1", "0", "4.5", "-1", "", "2,5"}) {
      const LengthEntry entry = ReadRegionLength(entered, 4.0, metric);
      text += std::string(entered) + ": " + ShortestText(entry.lengthMM) + " " + entry.fault + "\n";
      if (!entry.ok()) continue;
      EXPECT_EQ(ReadRegionLength(RegionLengthText(entry.lengthMM, metric), 4.0, metric).lengthMM, entry.lengthMM);
    }
  }
  EXPECT_TRUE(MatchesGolden("analysis/region_lengths.txt", text));
}

}  // namespace
}  // namespace texturon
