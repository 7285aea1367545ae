// SPDX-License-Identifier: Apache-2.0

#include "presentation/profile_marks.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "analysis/pipeline.h"
#include "presentation/shown_profiles.h"

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
  document.settings.analysis.FormRemovalType = kFormLine;
  document.settings.analysis.ResidualType = kResidualVertical;
  document.scope.region = RegionChoice{.mode = kStartAndLength, .startMM = 2.0, .lengthMM = 6.0};
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
  // A form that takes every sample leaves none out.
  const auto excludes = [&] {
    Compute(document, nobody, {});
    const std::vector<MarkedStretch> stretches = MarksOf(document).stretches;
    return std::any_of(stretches.begin(), stretches.end(),
                       [](const MarkedStretch& stretch) { return stretch.kind == Kind::kExcluded; });
  };
  EXPECT_TRUE(excludes());
  document.scope.allDataForForm = true;
  EXPECT_FALSE(excludes());
  document.scope.allDataForForm = false;
  for (const std::int32_t form : {kFormFilter, kFormNone}) {
    document.settings.analysis.FormRemovalType = form;
    EXPECT_FALSE(excludes()) << form;
  }
}

TEST(RemovedForm, AndWhatIsLeftMakeTheRecord) {
  SilentPrompts nobody;
  for (const std::int32_t residual : {kResidualPerpendicular, kResidualVertical}) {
    Document document = Ramp();
    EXPECT_EQ(RemovedForm(document).range.count, 0) << "nothing is computed yet";
    Settings settings = document.settings;
    settings.analysis.FormRemovalType = kFormLine;
    settings.analysis.ResidualType = residual;
    ApplySettings(document, settings);
    // Steep, so that perpendicular residuals stretch the spacing.
    for (std::size_t i = 0; i < document.profiles.raw.size(); ++i) {
      document.profiles.raw[i] = 0.75 * static_cast<double>(i) + (i % 2 == 0 ? 0.4 : -0.4);
    }
    document.scope.region = RegionChoice{.mode = kFromStart, .startMM = 1.0};
    Compute(document, nobody, {});
    const Profile form = RemovedForm(document);
    ASSERT_EQ(form.range, IndexRange::FromEnds(1000, 10'000));
    EXPECT_EQ(form.spacingUM, 1.0) << "it lies in the record, not in the residual";
    for (const std::size_t i : {1000U, 5000U, 10'000U}) {
      EXPECT_NEAR(form.samples[i], 0.75 * static_cast<double>(i), 0.01);
      // A slope of 3 in 4 makes a distance 4 / 5 of the height.
      const double height = document.profiles.formSuppressed[i] * (residual == kResidualVertical ? 1.0 : 1.25);
      EXPECT_NEAR(form.samples[i] + height, document.profiles.raw[i], 1e-9);
    }
    document.scope.allDataForForm = true;
    Compute(document, nobody, {});
    EXPECT_EQ(RemovedForm(document).range.count, 10'001);
  }
}

TEST(CursorReadout, TellsDifferencesAndSlope) {
  SilentPrompts nobody;
  Document document = Ramp();
  Compute(document, nobody, {});
  const CursorPlaces both{.xMM = {1.0, 3.0}, .yUM = {-1.0, 0.5}, .hasX = true, .hasY = true};
  EXPECT_EQ(CursorReadout(document, ProfileKind::kRaw, both),
            "X1 1.0000 mm  X2 3.0000 mm  dX 2.0000 mm    Z1 1.0000 \xB5m  Z2 3.0000 \xB5m  dZ 2.0000 \xB5m    "
            "slope 0.0573\xB0 (Raw Data)    Y1 -1.0000 \xB5m  Y2 0.5000 \xB5m  dY 1.5000 \xB5m");
  EXPECT_EQ(CursorLabels(document, ProfileKind::kRaw, both),
            (std::array<std::string, 4>{"X1 1.0000 mm\nZ1 1.0000 \xB5m", "X2 3.0000 mm\nZ2 3.0000 \xB5m",
                                        "Y1 -1.0000 \xB5m", "Y2 0.5000 \xB5m"}));
  const CursorPlaces outside{.xMM = {-1.0, 3.0}, .hasX = true};
  EXPECT_EQ(CursorReadout(document, ProfileKind::kRaw, outside), "X1 -1.0000 mm  X2 3.0000 mm  dX 4.0000 mm");
  document.settings.display.Metric = false;
  const CursorPlaces level{.yUM = {0.0, 0.0254}, .hasY = true};
  EXPECT_EQ(CursorReadout(document, ProfileKind::kRaw, level), "Y1 0.00 \xB5in  Y2 1.00 \xB5in  dY 1.00 \xB5in");
}

}  // namespace
}  // namespace texturon
