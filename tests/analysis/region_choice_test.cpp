// SPDX-License-Identifier: Apache-2.0

// Regions as they are entered; how they resolve is in the tests of the pipeline.

#include "analysis/region_choice.h"

#include <gtest/gtest.h>

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
  struct Case {
    const char* text;
    bool metric;
    double lengthMM;
    const char* fault;
  };
  const Case cases[] = {{" 2.5 ", true, 2.5, ""},
                        {"0.1", false, 2.54, ""},
                        {"0", true, 0.0, ""},
                        {"4.5", true, 0.0, "Must be from 0 to 4"},
                        {"-1", true, 0.0, "Must be from 0 to 4"},
                        {"0.2", false, 0.0, "Must be from 0 to 0.15748"},
                        {"", true, 0.0, "\"\" is no number"},
                        {"2,5", true, 0.0, "\"2,5\" has a decimal comma, where numbers are written with a point"}};
  for (const Case& c : cases) {
    const LengthEntry entry = ReadRegionLength(c.text, 4.0, c.metric);
    EXPECT_EQ(entry.fault, c.fault) << c.text;
    EXPECT_DOUBLE_EQ(entry.lengthMM, c.lengthMM) << c.text;
    if (!entry.ok()) continue;
    EXPECT_EQ(ReadRegionLength(RegionLengthText(c.lengthMM, c.metric), 4.0, c.metric).lengthMM, c.lengthMM);
  }
}

}  // namespace
}  // namespace texturon
