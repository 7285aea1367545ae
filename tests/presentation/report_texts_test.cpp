// SPDX-License-Identifier: Apache-2.0

#include "presentation/report_texts.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "base/charset.h"
#include "presentation/shown_profiles.h"
#include "support/golden.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

std::string Written(const ReportTexts& texts) {
  std::string text = texts.company + "|" + texts.identification + "|" + texts.summary + "\n";
  for (const auto* const lines : {&texts.facts, &texts.changedSettings}) {
    for (const auto& [title, fact] : *lines) text += title + ": " + fact + "\n";
  }
  for (const ReportRow& row : texts.rows) {
    text += row.title + "|" + row.value + "|" + row.unit + "|" + row.lower + "|" + row.upper + "|";
    text += !row.verdict ? "\n" : *row.verdict == Acceptance::kPass ? "pass\n" : "fail\n";
  }
  return text;
}

// A saw-tooth of 1 um, once with limits of every kind in inches, once with all settings by name.
TEST(ReportTexts, SayWhatWasAnalysedAndWhatTheVerdictsGoBy) {
  std::vector<double> heights(2000);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = 0.1 * static_cast<double>(i % 11) - 0.5;
  Document document = Loaded(heights, 1.0, [](Settings& settings) {
    settings.analysis.FormRemovalType = kFormNone;
    settings.analysis.LsCutoffMM = 0.0;
    settings.display.Metric = false;
    settings.display.CompanyName = "Works";
    settings.analysis.parameters = {
        {.name = "Pt", .tolerance = {.toleranced = true, .upperLimit = 1.1, .lowerLimit = 0.5}},
        {.name = "Pp", .tolerance = {.toleranced = true, .bilateral = true, .upperLimit = 0.0254, .lowerLimit = 0.01}},
        {.name = "Pv", .tolerance = {.toleranced = true, .bilateral = true}},
        {.name = "Pa"},
        {.name = "Rmq"}};
  });
  Analyse(document);
  std::string text = Written(MakeReportTexts(document, "now"));
  Settings settings = document.settings;
  settings.display.Metric = true;
  settings.analysis.ResidualType = -4;
  settings.analysis.UserDiscardType = 7;
  settings.analysis.UserDiscardLengthMM = 0.1;
  settings.analysis.PolynomialOrder = 5;
  settings.analysis.AsphereResidualPadding = 0;
  settings.analysis.FormRemovalType = 9;
  settings.analysis.FilterType = kFilterGaussian;
  ApplySettings(document, settings);
  Analyse(document);
  text += "\n" + Written(MakeReportTexts(document, "later"));
  EXPECT_TRUE(MatchesGolden("presentation/report.txt", Utf8FromWindows1252(text)));
}

// Three rows by a guarded rule: one beyond its limit by more than U, one by less, one without a limit.
TEST(ReportTexts, TellWhatIsUndecidedAndWhy) {
  Document document = MakeDocument();
  document.settings.decision.DecisionRule = kDecideGuarded;
  document.catalogue.rows.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    ParameterDef& row = document.catalogue.rows[i];
    row.valid = true;
    row.value = i == 0 ? 2.0 : 1.05;
    row.tolerance = {.toleranced = i < 2, .upperLimit = 1.0};
  }
  ReportTexts texts = MakeReportTexts(document, "now");
  EXPECT_EQ(texts.summary, "2 of 2 toleranced parameters undecided: no uncertainty is known.");
  EXPECT_EQ(texts.outcome, ReportOutcome::kOpen);
  document.results.uncertainties = {ParameterUncertainty{.standard = 0.05}, ParameterUncertainty{.standard = 0.05}, {}};
  texts = MakeReportTexts(document, "now");
  EXPECT_EQ(texts.summary,
            "1 of 2 toleranced parameters out of tolerance. 1 of 2 toleranced parameters undecided: the uncertainty "
            "reaches over a limit.");
  EXPECT_EQ(VerdictText(texts.rows[0]) + VerdictText(texts.rows[1]) + VerdictText(texts.rows[2]),
            "out of toleranceundecided");
  EXPECT_EQ(texts.outcome, ReportOutcome::kFail);
  // A rule that lets what is undecided fail says that it is.
  document.settings.decision.DecisionRule = kDecideGuardedFail;
  document.results.uncertainties.clear();
  EXPECT_EQ(MakeReportTexts(document, "now").summary,
            "2 of 2 toleranced parameters out of tolerance. 2 of them undecided: no uncertainty is known.");
  // Within tolerance, but on less than a sampling length.
  document.settings.decision.DecisionRule = kDecideSimple;
  document.profiles.evaluationRange = IndexRange::FromCount(0, 500);
  document.profiles.residualSpacingUM = 1.0;
  for (ParameterDef& row : document.catalogue.rows) row.value = 0.5;
  texts = MakeReportTexts(document, "now");
  EXPECT_EQ(texts.summary,
            "All 2 toleranced parameters are within tolerance. Less than one sampling length evaluated: 0.5000 mm of "
            "0.8000 mm.");
  EXPECT_EQ(texts.outcome, ReportOutcome::kOpen);
  // Or on a profile that still has its form.
  document.profiles.evaluationRange = IndexRange::FromCount(0, 2000);
  document.results.formRequested = kFormFree;
  texts = MakeReportTexts(document, "now");
  EXPECT_TRUE(
      texts.summary.ends_with("tolerance. The form asked for (free form) could not be fitted: the mean is taken "
                              "out in its place."))
      << texts.summary;
  EXPECT_EQ(texts.outcome, ReportOutcome::kOpen);
}

TEST(ReportTexts, NameTheEditionAndWhatDiffers) {
  std::vector<double> heights(2000);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = 0.1 * static_cast<double>(i % 11) - 0.5;
  Document document = Loaded(heights, 1.0, [](Settings& settings) {
    settings.analysis.parameters = {{.name = "Rp"}, {.name = "Ra"}, {.name = "Wp"}};
    settings.analysis.standard.Edition = "both";
  });
  Analyse(document);
  const ReportTexts texts = MakeReportTexts(document, "now");
  std::string names;
  for (const ReportRow& row : texts.rows) names += row.title + " ";
  EXPECT_EQ(names, "Rp/1997 Rp/2021 Ra/1997 Ra/2021 Wp/1997 Wp/2021 ");
  const std::vector<ReportLine> differences = {
      {"Rp", "now the mean of the sections' largest peak heights; the highest point of all is Rpt"},
      {"Wp", "now the mean of the sections' largest peak heights; the highest point of all is Wpt"}};
  EXPECT_EQ(texts.differences, differences);
  const ReportLine edition{"Edition", "1997 and 2021, 5 sections, core by Robust Gaussian Regression"};
  EXPECT_EQ(std::count(texts.facts.begin(), texts.facts.end(), edition), 1);
}

TEST(ShownProfiles, AnyCombinationIsKept) {
  const ShownProfiles usual = ShownProfilesOf({});
  DisplaySettings display;
  for (int bits = 0; bits < 256; ++bits) {
    ShownProfiles shown{};
    for (std::size_t i = 0; i < shown.size(); ++i) shown[i] = (bits >> i & 1) != 0;
    SetShownProfiles(display, shown);
    EXPECT_EQ(ShownProfilesOf(display), shown) << bits;
  }
  for (const std::int32_t nothing : {-1, 6, 15, 80, 2'000'000'000}) {
    EXPECT_EQ(ShownProfilesOf({.ProfileType = nothing}), usual) << nothing;
  }
}

}  // namespace
}  // namespace texturon
