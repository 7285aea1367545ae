// SPDX-License-Identifier: Apache-2.0

#include "presentation/profile_marks.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "base/charset.h"
#include "presentation/shown_profiles.h"
#include "support/golden.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

/// A ramp of 1 um a millimetre over 10 mm, its form left in but for the mean.
Document Ramp() {
  std::vector<double> heights(10'001);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = 0.001 * static_cast<double>(i);
  return Loaded(std::move(heights), 1.0, [](Settings& settings) {
    settings.analysis.FormRemovalType = kFormNone;
    settings.analysis.UserDiscardType = kDiscardHalfCutoff;
  });
}

TEST(ProfileMarks, StandAtTheEndsOfTheRanges) {
  Document document = Ramp();
  EXPECT_TRUE(MarksOf(document).stretches.empty()) << "nothing is computed yet";
  document.settings.analysis.FormRemovalType = kFormLine;
  document.settings.analysis.ResidualType = kResidualVertical;
  document.scope.region = RegionChoice{.mode = kStartAndLength, .startMM = 2.0, .lengthMM = 6.0};
  ExcludeFromForm(document, 4000, 4500);
  Analyse(document);
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
  for (const std::int32_t form : {kFormLine, kFormFilter, kFormNone}) {
    document.settings.analysis.FormRemovalType = form;
    document.scope.allDataForForm = form == kFormLine;
    Analyse(document);
    EXPECT_EQ(std::ranges::count(MarksOf(document).stretches, Kind::kExcluded, &MarkedStretch::kind), 0) << form;
  }
}

TEST(RemovedForm, AndWhatIsLeftMakeTheRecord) {
  for (const std::int32_t residual : {0, 1, -4}) {
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
    Analyse(document);
    const Profile form = RemovedForm(document);
    ASSERT_EQ(form.range, IndexRange::FromEnds(1000, 10'000));
    EXPECT_EQ(form.spacingUM, 1.0) << "it lies in the record, not in the residual";
    for (const std::size_t i : {1000U, 5000U, 10'000U}) {
      EXPECT_NEAR(form.samples[i], 0.75 * static_cast<double>(i), 0.01);
      // A slope of 3 in 4 makes a distance 4 / 5 of the height.
      const double height = document.profiles.formSuppressed[i] * (residual == kResidualPerpendicular ? 1.25 : 1.0);
      EXPECT_NEAR(form.samples[i] + height, document.profiles.raw[i], 1e-9);
    }
    document.scope.allDataForForm = true;
    Analyse(document);
    EXPECT_EQ(RemovedForm(document).range.count, 10'001);
  }
}

TEST(CursorReadout, TellsDifferencesAndSlope) {
  Document document = Ramp();
  Analyse(document);
  const CursorPlaces both{.xMM = {1.0, 3.0}, .yUM = {-1.0, 0.5}, .hasX = true, .hasY = true};
  std::string text = CursorReadout(document, ProfileKind::kRaw, both) + "\n";
  for (const std::string& label : CursorLabels(document, ProfileKind::kRaw, both)) text += label + "\n";
  text += CursorReadout(document, ProfileKind::kRaw, {.xMM = {-1.0, 3.0}, .hasX = true}) + "\n";
  document.settings.display.Metric = false;
  text += CursorReadout(document, ProfileKind::kRaw, {.yUM = {0.0, 0.0254}, .hasY = true}) + "\n";
  EXPECT_TRUE(MatchesGolden("presentation/cursors.txt", Utf8FromWindows1252(text)));
}

}  // namespace
}  // namespace texturon
