#include "core/profile_marks.h"

#include <gtest/gtest.h>

#include "core/pipeline.h"

namespace texturon {
namespace {

/// A ramp of 1 um a millimetre over 10 mm, its form left in but for the mean.
Document Ramp() {
  std::vector<double> heights(10'001);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = 0.001 * static_cast<double>(i);
  Document document = MakeDocument();
  Settings settings = document.settings;
  settings.analysis.FormRemovalType = kFormNone;
  settings.analysis.UserDiscardType = kDiscardHalfCutoff;
  ApplySettings(document, settings);
  SetProfile(document, MakeProfileSet(std::move(heights), 1.0));
  document.writesTraceFile = false;
  return document;
}

TEST(ProfileMarks, StandAtTheEndsOfTheRanges) {
  SilentPrompts nobody;
  Document document = Ramp();
  EXPECT_TRUE(MarksOf(document).stretches.empty()) << "nothing is computed yet";
  document.regionSet = true;
  document.regionMode = 1;
  document.regionStartMM = 2.0;
  document.regionLengthMM = 6.0;
  ExcludeFromForm(document, 4000, 4500);
  Compute(document, nobody, {});
  using Kind = MarkedStretch::Kind;
  const MarkedStretch wanted[] = {{Kind::kNotComputed, 0.0, 2.0},
                                  {Kind::kNotComputed, 8.0, 10.0},
                                  {Kind::kExcluded, 4.0, 4.5},
                                  {Kind::kDiscarded, 2.0, 2.4},
                                  {Kind::kDiscarded, 7.6, 8.0}};
  const ProfileMarks marks = MarksOf(document);
  ASSERT_EQ(marks.stretches.size(), std::size(wanted));
  for (std::size_t i = 0; i < std::size(wanted); ++i) {
    EXPECT_EQ(marks.stretches[i].kind, wanted[i].kind) << i;
    EXPECT_NEAR(marks.stretches[i].firstMM, wanted[i].firstMM, 0.0015) << i;
    EXPECT_NEAR(marks.stretches[i].lastMM, wanted[i].lastMM, 0.0015) << i;
  }
  ASSERT_EQ(marks.samplingLengthEndsMM.size(), 6U) << "5.2 mm hold six whole cut-offs of 0.8 mm";
  EXPECT_NEAR(marks.samplingLengthEndsMM.front(), 3.2, 0.0015);
}

TEST(CursorReadout, TellsDifferencesAndSlope) {
  SilentPrompts nobody;
  Document document = Ramp();
  Compute(document, nobody, {});
  const CursorPlaces both{.xMM = {1.0, 3.0}, .yUM = {-1.0, 0.5}, .hasX = true, .hasY = true};
  EXPECT_EQ(CursorReadout(document, ProfileKind::kRaw, both),
            "X 1.0000, 3.0000  dX 2.0000 mm    Z 1.0000, 3.0000  dZ 2.0000 \xB5m    slope 0.0573\xB0    "
            "Y -1.0000, 0.5000  dY 1.5000 \xB5m");
  const CursorPlaces outside{.xMM = {-1.0, 3.0}, .hasX = true};
  EXPECT_EQ(CursorReadout(document, ProfileKind::kRaw, outside), "X -1.0000, 3.0000  dX 4.0000 mm");
  document.settings.display.Metric = false;
  const CursorPlaces level{.yUM = {0.0, 0.0254}, .hasY = true};
  EXPECT_EQ(CursorReadout(document, ProfileKind::kRaw, level), "Y 0.00, 1.00  dY 1.00 \xB5in");
}

}  // namespace
}  // namespace texturon
