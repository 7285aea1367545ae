// SPDX-License-Identifier: Apache-2.0

#include "presentation/report_texts.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "analysis/pipeline.h"
#include "formats/import.h"
#include "presentation/shown_profiles.h"
#include "settings/setting_choices.h"

namespace texturon {
namespace {

Document AnalysedArc(const std::function<void(Settings&)>& change) {
  SilentPrompts nobody;
  Document document = MakeDocument();
  Settings settings = document.settings;
  change(settings);
  ApplySettings(document, settings);
  const std::filesystem::path file = std::filesystem::path(TEXTURON_SOURCE_DIR) / "samples" / "arc.lmt";
  SetProfile(document, MakeProfileSet(LoadProfileFile(file, {}, nobody).profile, "arc.lmt"));
  document.writesTraceFile = false;
  Compute(document, nobody, {});
  return document;
}

const ReportRow& RowOf(const ReportTexts& texts, std::string_view title) {
  return *std::find_if(texts.rows.begin(), texts.rows.end(), [&](const ReportRow& row) { return row.title == title; });
}

TEST(ReportTexts, LimitsAreThoseThatTheVerdictGoesBy) {
  const Document document = AnalysedArc([](Settings& settings) {
    settings.analysis.FormRemovalType = kFormArc;
    settings.display.Metric = false;
    for (ParameterSelection& row : settings.analysis.parameters) {
      if (row.name == "Ra") row.tolerance = {.toleranced = true, .upperLimit = 1.0, .lowerLimit = 0.5};
      if (row.name == "Rq")
        row.tolerance = {.toleranced = true, .bilateral = true, .upperLimit = 0.0254, .lowerLimit = 0.01};
      if (row.name == "Rt") row.tolerance = {.toleranced = true, .bilateral = true};
    }
  });
  const ReportTexts texts = MakeReportTexts(document, "now");
  EXPECT_EQ(RowOf(texts, "Ra").lower, "") << "one-sided";
  EXPECT_EQ(RowOf(texts, "Ra").upper, "39.37");
  EXPECT_EQ(RowOf(texts, "Rq").lower, "0.39");
  EXPECT_EQ(RowOf(texts, "Rq").upper, "1.00");
  EXPECT_EQ(RowOf(texts, "Rq").verdict, Verdict::kFail);
  EXPECT_EQ(RowOf(texts, "Rt").upper, "") << "two zeros are no limits";
  EXPECT_EQ(texts.summary, "1 of 3 toleranced parameters out of tolerance.");
  const ReportLine form{"form that is removed", "least squares arc"};
  EXPECT_NE(std::find(texts.changedSettings.begin(), texts.changedSettings.end(), form), texts.changedSettings.end());
  EXPECT_EQ(texts.changedSettings.size(), 1U);
  const ReportLine time{"Analysed", "now"};
  EXPECT_NE(std::find(texts.facts.begin(), texts.facts.end(), time), texts.facts.end());
}

TEST(SettingChoices, EveryNumberFallsUnderItsName) {
  struct Case {
    const char* key;
    std::int32_t value;
    const char* name;
  };
  for (const Case& c : {Case{"FormRemovalType", 2, "least squares arc"},
                        {"FormRemovalType", 9, "9"},
                        {"ResidualType", 0, "perpendicular to the form"},
                        {"ResidualType", -4, "vertical"},
                        {"UserDiscardType", 2, "one cut-off"},
                        {"UserDiscardType", 7, "the user's own length"},
                        {"AsphereResidualPadding", 0, "nothing"},
                        {"PolynomialOrder", 5, "5"}}) {
    EXPECT_EQ(DescribeValue(*FindSetting("ANALYSIS", c.key)->key, c.value), c.name) << c.key;
  }
  EXPECT_EQ(DescribeValue(*FindSetting("ANALYSIS", "LcCutoffMM")->key, 2.5), "2.5 mm");
}

TEST(ShownProfiles, AnyCombinationIsKept) {
  for (int bits = 0; bits < 256; ++bits) {
    ShownProfiles shown{};
    for (std::size_t i = 0; i < shown.size(); ++i) shown[i] = (bits >> i & 1) != 0;
    DisplaySettings display;
    SetShownProfiles(display, shown);
    EXPECT_EQ(ShownProfilesOf(display), shown) << bits;
  }
  DisplaySettings display;
  const ShownProfiles usual = ShownProfilesOf(display);
  for (const std::int32_t nothing : {-1, 6, 15, 80, 2'000'000'000}) {
    display.ProfileType = nothing;
    EXPECT_EQ(ShownProfilesOf(display), usual) << nothing;
  }
}

}  // namespace
}  // namespace texturon
