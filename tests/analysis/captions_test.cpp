// SPDX-License-Identifier: Apache-2.0

#include "analysis/captions.h"

#include <gtest/gtest.h>
#include <string>

#include "analysis/document_export.h"
#include "analysis/region_choice.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "settings/setting_choices.h"
#include "support/golden.h"

namespace texturon {
namespace {

TEST(Captions, NameTheGeometryInTheUnitsInForce) {
  Document document = MakeDocument();
  EXPECT_EQ(FormCaption(document), "");
  document.profiles.computeRange = IndexRange{};
  document.profiles.shortCutoffMM = 0.0254;
  const FormGeometry geometries[] = {MeanFit{.meanUM = 0.1234},
                                     LineFit{.slope = -0.5, .interceptUM = 2.0},
                                     ArcFit{.radiusUM = 25'400.0},
                                     PolynomialFit{.coefficients = {7.0}},
                                     PolynomialFit{.coefficients = {2.0, -0.5}},
                                     PolynomialFit{.coefficients = {1, 2, 3}},
                                     PolynomialFit{.coefficients = {1, 2, 3, 4}},
                                     FilterFormFit{},
                                     AsphereFit{.slope = 1.0, .curvaturePerMM = -0.02},
                                     AsphereFit{.curvaturePerMM = 1e-101},
                                     FreeFormFit{.shiftXMM = 2.54, .shiftYMM = -0.5, .thetaDegrees = 1.25},
                                     FreeFormFit{.shiftYMM = 25.4, .hasFixedStart = true, .allowsTilt = false}};
  std::string text;
  for (const bool metric : {true, false}) {
    document.settings.display.Metric = metric;
    for (const FormGeometry& geometry : geometries) {
      document.results.formGeometry = geometry;
      text += FormCaption(document) + "\n";
    }
    text += FilterDescription(document) + "\n";
  }
  EXPECT_TRUE(MatchesGolden("analysis/captions.txt", Utf8FromWindows1252(text)));
}

TEST(FormTable, HoldsTheFormsThatTheSettingsOffer) {
  const std::vector<SettingChoice> offered = ChoicesOf(*FindSetting("ANALYSIS", "FormRemovalType")->key);
  EXPECT_EQ(offered.size(), FormTable().size());
  for (const SettingChoice& choice : offered) EXPECT_NE(FindForm(choice.value), nullptr) << choice.name;
}

// As the captions have them: who looks for a filter looks for one name.
TEST(SettingChoices, NameFiltersAndDiscardsAsTheSystemDoes) {
  AnalysisSettings settings;
  for (const SettingChoice& choice : ChoicesOf(*FindSetting("ANALYSIS", "FilterType")->key)) {
    settings.FilterType = choice.value;
    EXPECT_EQ(choice.name, FilterLabel(settings));
  }
  std::string discards;
  for (const SettingChoice& choice : ChoicesOf(*FindSetting("ANALYSIS", "UserDiscardType")->key)) {
    discards += IntegerText(choice.value) + " " + choice.name + "; ";
  }
  EXPECT_EQ(discards, "0 Default; 1 1/2 Cutoff; 2 1 Cutoff; 3 Other Discard Length; ");
}

// How regions resolve is in the tests of the pipeline.
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

TEST(ParameterFile, TitlesMaterialRatiosAsTheDisplayDoes) {
  Document document = MakeDocument();
  AnalysisSettings& analysis = document.settings.analysis;
  analysis.primaryMaterialRatios[0].selected = analysis.roughnessMaterialRatios[1].selected = true;
  for (const char* const titles : {"\"Pmr\", \"Rmr\"", "\"Tpa\", \"Rmr\"", "\"Tpa\", \"Tpi\""}) {
    EXPECT_NE(ParameterFileTextOf(document, "").header.find(titles), std::string::npos) << titles;
    document.settings.display.RoughnessAsTpi = document.settings.display.PrimaryAsTpa;
    document.settings.display.PrimaryAsTpa = true;
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
