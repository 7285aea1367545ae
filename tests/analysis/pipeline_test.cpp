// SPDX-License-Identifier: Apache-2.0

#include "analysis/pipeline.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "analysis/compute_range.h"
#include "support/near.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 0.5;

class Pipeline : public ::testing::Test {
protected:
  Pipeline() {
    document_ = MakeDocument();
    environment_.traceFile = folder_ / "Xc.csv";
    document_.writesTraceFile = false;
  }

  void Load(std::size_t n) {
    std::mt19937_64 random(n);
    std::normal_distribution<double> noise;
    std::vector<double> z(n);
    for (std::size_t i = 0; i < n; ++i) z[i] = noise(random) + 0.01 * static_cast<double>(i) + 3.0;
    SetProfile(document_, MakeProfileSet(std::move(z), kSpacingUM));
  }
  ComputeOutcome Run() { return Compute(document_, prompts_, environment_); }
  AnalysisSettings& Settings() { return document_.settings.analysis; }

  ScratchFolder folder_;
  ScriptedPrompts prompts_;
  Environment environment_;
  Document document_;
};

TEST_F(Pipeline, DoesNothingWithoutAProfile) {
  EXPECT_EQ(Run(), ComputeOutcome::kNoProfile);
  EXPECT_TRUE(prompts_.messages.empty());
}

TEST_F(Pipeline, ResolvesRegionsAsTheirModeSays) {
  Load(1000);
  struct Case {
    RegionChoice region;
    std::optional<std::pair<int, int>> ends;  // none: refused
  };
  const Case cases[] = {
      {{kFromStart, 0.1, 9.0, 9.0}, {{200, 999}}},
      {{kStartAndLength, 0.1, 9.0, 0.025}, {{200, 250}}},
      {{kStartAndLength, 0.1, 0.0, 0.0245}, std::nullopt},
      {{kStartAndLength, 0.4, 0.0, 0.4}, {{800, 999}}},
      {{kUpToEndOffset, 0.1, 0.1, 9.0}, {{0, 800}}},
      {{kLengthUpToEndOffset, 0.1, 0.1, 0.1}, {{600, 800}}},
      {{kLengthUpToEndOffset, 0.1, 0.1, 9.0}, {{0, 800}}},
      {{kBetweenOffsets, 0.1, 0.1, 9.0}, {{200, 800}}},
      {{-7, 0.1, 0.0, 0.0}, {{200, 999}}},
      {{kFromStart, -5.0, 0.0, 0.0}, {{0, 999}}},
      {{kFromStart, 50.0, 0.0, 0.0}, std::nullopt},
      {{kUpToEndOffset, 0.0, 50.0, 0.0}, std::nullopt},
      {{kStartAndLength, 1e300, 1e300, 1e300}, std::nullopt},
      {{kFromStart, 0.4745, 0.0, 0.0}, {{949, 999}}},
      {{kFromStart, 0.475, 0.0, 0.0}, std::nullopt},
  };
  for (const Case& c : cases) {
    prompts_.messages.clear();
    document_.scope.region = c.region;
    const ComputeOutcome outcome = Run();
    if (c.ends) {
      ASSERT_EQ(outcome, ComputeOutcome::kDone) << c.region.mode << " from " << c.region.startMM;
      EXPECT_EQ(document_.profiles.computeRange, IndexRange::FromEnds(c.ends->first, c.ends->second)) << c.region.mode;
    } else {
      EXPECT_EQ(outcome, ComputeOutcome::kRefused) << c.region.mode << " from " << c.region.startMM;
      EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Insufficient data for region calculation."});
    }
  }
}

TEST_F(Pipeline, KeepsTheFormerResultsWhenARegionIsRefused) {
  Load(1000);
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  const std::vector<double> roughness = document_.profiles.roughness;
  const double ra = document_.catalogue.rows[45].value;
  const std::optional<AnalysisRequest> request = document_.results.request;
  EXPECT_EQ(request, document_.Request());
  document_.scope.region = RegionChoice{.mode = kStartAndLength};
  EXPECT_EQ(Run(), ComputeOutcome::kRefused);
  EXPECT_EQ(document_.results.request, request) << "the results know what they came from";
  EXPECT_EQ(document_.profiles.roughness, roughness);
  EXPECT_EQ(document_.profiles.computeRange->count, 1000);
  EXPECT_TRUE(document_.catalogue.rows[45].valid);
  EXPECT_EQ(document_.catalogue.rows[45].value, ra);
}

TEST_F(Pipeline, NeedsFiftyStepsOfData) {
  Settings().LcCutoffMM = 0.008;
  Load(51);
  EXPECT_EQ(Run(), ComputeOutcome::kDone);
  Load(50);
  EXPECT_EQ(Run(), ComputeOutcome::kRefused);
  EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Insufficient data for calculation."});
}

TEST_F(Pipeline, MakesTheEvaluationAWholeNumberOfCutoffs) {
  Load(8999);  // 4.4995 mm: with 0.4 mm at each end 4 cutoffs of 0.8 mm are left
  SetWholeCutoffs(document_, true);
  Settings().FilterType = kFilterGaussian;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.computeRange, IndexRange::FromEnds(0, 8000));
  EXPECT_EQ(Settings().UserDiscardType, kDiscardHalfCutoff);
  EXPECT_EQ(Settings().UserDiscardLengthMM, 0.4);
  EXPECT_EQ(document_.profiles.evaluationRange->first, 800);
  Settings().FilterType = kFilterRobustGaussian;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.computeRange, IndexRange::FromEnds(0, 8000));  // 5 cutoffs and no discard
  EXPECT_EQ(Settings().UserDiscardType, kDiscardNone);
  Settings().LcCutoffMM = 0.0;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.computeRange->count, 8999);
}

TEST_F(Pipeline, DiscardsEndsOnlyWhereThatLeavesEnough) {
  struct Case {
    std::size_t points;
    std::int32_t filter, discardType;
    double lengthMM;
    int first, last;
  };
  const Case cases[] = {
      {8000, kFilterSplineGaussian, 0, 9.0, 0, 7999},    {8000, kFilterSplineGaussian, 1, 9.0, 800, 7199},
      {8000, kFilterSplineGaussian, 2, 9.0, 1600, 6399}, {8000, kFilterSplineGaussian, 3, 0.1, 200, 7799},
      {8000, kFilterSplineGaussian, 17, 0.1, 200, 7799}, {8000, kFilterSplineGaussian, -1, 0.1, 0, 7999},
      {3200, kFilterSplineGaussian, 2, 0.0, 0, 3199},    {3203, kFilterSplineGaussian, 2, 0.0, 1600, 1602},
      {8000, kFilterIso13565, 1, 0.0, 1600, 6399},       {8009, kFilterGaussian, 3, 0.001, 2, 8006},
      {8000, kFilterIso13565, 3, 1.0, 2000, 5999},
  };
  for (const Case& c : cases) {
    Load(c.points);
    Settings().FilterType = c.filter;
    Settings().UserDiscardType = c.discardType;
    Settings().UserDiscardLengthMM = c.lengthMM;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.profiles.evaluationRange, IndexRange::FromEnds(c.first, c.last))
        << c.points << " points, discard " << c.discardType << ", filter " << c.filter;
  }
}

TEST_F(Pipeline, ShortensToALengthThatCanBeTransformed) {
  Load(503);
  Settings().FilterType = kFilterGaussian;
  Settings().LcCutoffMM = 0.05;
  Settings().ResidualType = kResidualVertical;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.primaryRange, IndexRange::FromEnds(0, 502));
  EXPECT_EQ(document_.profiles.evaluationRange, IndexRange::FromEnds(0, 501));
  EXPECT_EQ(document_.profiles.spectrum.amplitudeUM.size(), 252u);
  EXPECT_EQ(document_.profiles.spectrum.wavelengthMM[0], 2.0 * 252 * 0.5 * 0.001);
}

TEST_F(Pipeline, UsesThePrimaryAsWavinessWhenTheFilterFails) {
  for (const bool quiet : {false, true}) {
    Load(1000);
    prompts_ = {};
    document_.quietMode = quiet;
    Settings().LcCutoffMM = 0.001;  // the spacing is half of it, more than a third
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.profiles.waviness, document_.profiles.primary);
    EXPECT_EQ(document_.profiles.roughness, std::vector<double>(1000, 0.0));
    EXPECT_EQ(document_.profiles.evaluationRange, document_.profiles.primaryRange);
    EXPECT_TRUE(document_.profiles.Has(ProfileKind::kWaviness));
    const std::vector<std::string> message = {"Waviness Not Computed - using Primary as Waviness"};
    EXPECT_EQ(prompts_.messages, quiet ? std::vector<std::string>() : message);
    EXPECT_EQ(prompts_.busyChanges, quiet ? 0 : 2);
  }
}

TEST_F(Pipeline, FallsBackToTheMeanWhenAFormFails) {
  for (const std::int32_t type : {0, 8, -3, static_cast<int>(kFormPolynomial), static_cast<int>(kFormFilter)}) {
    Load(200);
    Settings().FormRemovalType = type;
    Settings().PolynomialOrder = -1;
    Settings().FormFilterCutoffMM = 0.0001;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.results.formApplied, kNoFormApplied) << type;
    EXPECT_TRUE(std::holds_alternative<MeanFit>(document_.results.formGeometry)) << type;
    EXPECT_TRUE(prompts_.messages.empty());
    double sum = 0.0;
    for (const double z : document_.profiles.formSuppressed) sum += z;
    EXPECT_TRUE(Near(sum, 0.0, 1e-9)) << type;
  }
}

TEST_F(Pipeline, RemarksOnAPolynomialThatLeadsAwayBesideItsPoints) {
  // Noise at 101 evenly spaced points: the polynomial through all of them swings wildly near the ends.
  Load(1010);
  Settings().FormRemovalType = kFormPolynomial;
  Settings().FormRemovalDataReductionMethod = kThinToPoints;
  Settings().FormRemovalNumberOfPoints = 101;
  for (const std::int32_t order : {4, 100}) {
    prompts_.notices.clear();
    Settings().PolynomialOrder = order;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.results.formApplied, kFormPolynomial);
    EXPECT_EQ(prompts_.notices.size(), order == 100 ? 1u : 0u);
    EXPECT_TRUE(prompts_.messages.empty());
  }
}

TEST_F(Pipeline, StretchesTheSpacingOfDerivedProfilesWithPerpendicularResiduals) {
  std::vector<double> line(1000);
  for (std::size_t i = 0; i < line.size(); ++i) line[i] = 0.75 * kSpacingUM * static_cast<double>(i) - 4.0;
  SetProfile(document_, MakeProfileSet(line, kSpacingUM));
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(Near(document_.profiles.residualSpacingUM, kSpacingUM * 1.25, 1e-14));
  EXPECT_TRUE(AllNear(document_.profiles.formSuppressed, std::vector<double>(1000, 0.0), 1e-12));
  Settings().ResidualType = kResidualVertical;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.residualSpacingUM, kSpacingUM);
}

TEST_F(Pipeline, LeavesAnExcludedStretchOutOfTheFit) {
  std::vector<double> z(1000);
  for (std::size_t i = 0; i < z.size(); ++i) {
    z[i] = 0.25 * kSpacingUM * static_cast<double>(i) + (i >= 300 && i <= 400 ? 50.0 : 0.0);
  }
  SetProfile(document_, MakeProfileSet(z, kSpacingUM));
  Settings().ResidualType = kResidualVertical;
  ExcludeFromForm(document_, 300, 400);
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(Near(std::get<LineFit>(document_.results.formGeometry).slope, 0.25, 1e-12));
  EXPECT_TRUE(Near(document_.profiles.formSuppressed[350], 50.0, 1e-9)) << "excluded points get a residual too";
  // Counted from the region's first point, the same samples are left out.
  document_.scope.region->startMM = 0.1;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(Near(std::get<LineFit>(document_.results.formGeometry).slope, 0.25, 1e-12));
  document_.scope.allDataForForm = true;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_FALSE(Near(std::get<LineFit>(document_.results.formGeometry).slope, 0.25, 1e-3)) << "a fit over all data";
  EXPECT_EQ(document_.profiles.computeRange->first, 200);
  document_.scope.region.reset();
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_FALSE(document_.scope.exclusion) << "the whole record forgets the exclusion";
}

TEST_F(Pipeline, SurvivesAnyExclusion) {
  Load(200);
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  struct Case {
    std::int32_t first, last, applied;
  };
  const Case cases[] = {{kLowest, kHighest, kNoFormApplied},
                        {-1000, 1000, kNoFormApplied},
                        {kHighest, kLowest, kFormLine},
                        {kLowest, 5, kFormLine},
                        {500, kHighest, kFormLine}};
  for (const Case& c : cases) {
    ExcludeFromForm(document_, c.first, c.last);
    document_.scope.region->startMM = 0.01;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.results.formApplied, c.applied) << c.first << " to " << c.last;
  }
}

TEST_F(Pipeline, TakesTheApertureAboutTheArcsCentre) {
  std::vector<double> z(4000);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double x = (static_cast<double>(i) - 2500.0) * kSpacingUM;
    z[i] = std::sqrt(10'000.0 * 10'000.0 - x * x) - 10'000.0;
  }
  SetProfile(document_, MakeProfileSet(z, kSpacingUM));
  Settings().FormRemovalType = kFormAsphere;
  Settings().AsphereUseClearAperture = true;
  Settings().AsphereClearApertureDiameterMM = 1.0;
  Settings().AsphereClearApertureCentralDiscardMM = 0.1;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.computeRange, IndexRange::FromEnds(1500, 3500));
  EXPECT_EQ(document_.scope.exclusion, IndexRange::FromEnds(2400, 2600));
  Settings().AsphereClearApertureDiameterMM = 0.02;
  EXPECT_EQ(Run(), ComputeOutcome::kRefused);
  EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Insufficient data for calculation."});
}

TEST_F(Pipeline, ThinsByPointsOrSpacing) {
  AnalysisSettings settings;
  struct Case {
    std::int32_t method, points;
    double spacingUM;
    std::int32_t step;
  };
  const Case cases[] = {{0, 10, 5.0, 0}, {1, 10, 5.0, 100},         {1, 3000, 5.0, 0}, {1, 0, 5.0, 0},
                        {1, -4, 5.0, 0}, {2, 10, 5.4, 10},          {2, 10, 0.4, 0},   {2, 10, -3.0, 0},
                        {3, 10, 5.0, 0}, {2, 10, 1e300, 2147483647}};
  for (const Case& c : cases) {
    settings.FormRemovalDataReductionMethod = c.method;
    settings.FormRemovalNumberOfPoints = c.points;
    settings.FormRemovalReductionSpacingUM = c.spacingUM;
    EXPECT_EQ(FormThinningStep(settings, 1000, kSpacingUM), c.step) << c.method << " " << c.points;
  }
}

TEST_F(Pipeline, DerivesProfilesThatAddUp) {
  Load(8000);
  for (const std::int32_t filter : {0, 1, 2, 3}) {
    Settings().FilterType = filter;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    const ProfileSet& p = document_.profiles;
    EXPECT_TRUE(p.shortCutoffMM);
    double sum = 0.0;
    for (const double z : p.View(ProfileKind::kPrimary).Heights()) sum += z;
    EXPECT_TRUE(Near(sum / 8000.0, 0.0, 1e-12));
    for (auto i = static_cast<std::size_t>(p.evaluationRange->first);
         i <= static_cast<std::size_t>(p.evaluationRange->last); i += 97) {
      EXPECT_TRUE(Near(p.waviness[i] + p.roughness[i], p.primary[i], 1e-14)) << filter;
    }
    const auto& curve = document_.results.roughnessCurve;
    EXPECT_TRUE(std::is_sorted(curve.heightsUM.rbegin(), curve.heightsUM.rend()));
    EXPECT_EQ(curve.heightsUM.size(), static_cast<std::size_t>(p.evaluationRange->count));
    EXPECT_EQ(curve.RatioPercent(1), 100.0 / static_cast<double>(p.evaluationRange->count));
  }
  const std::vector<std::string> titles = {"0.800 mm Robust Filter ..."};
  EXPECT_EQ(prompts_.progressTitles, titles);
  Settings().LcCutoffMM = 0.0799;
  Run();
  EXPECT_EQ(prompts_.progressTitles.back(), "79.900 \xB5m Robust Filter ...");
  Settings().LsCutoffMM = 0.0;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_FALSE(document_.profiles.shortCutoffMM);
}

TEST_F(Pipeline, KeepsEnvelopesAndMotifsInPlaceWhenARowAsksForThem) {
  Load(9000);
  document_.scope.region = RegionChoice{.mode = kFromStart, .startMM = 0.5};  // sample 1000
  Settings().UserDiscardType = kDiscardHalfCutoff;
  Settings().MotifAMM = 0.02;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  const ProfileSet& p = document_.profiles;
  ASSERT_EQ(p.closing.size(), 9000u);
  ASSERT_EQ(p.opening.size(), 9000u);
  ASSERT_EQ(p.evaluationRange->first, 1800);
  std::size_t contacts = 0;
  for (auto i = static_cast<std::size_t>(p.evaluationRange->first);
       i <= static_cast<std::size_t>(p.evaluationRange->last); ++i) {
    ASSERT_GE(p.closing[i], p.waviness[i]);
    ASSERT_LE(p.opening[i], p.waviness[i]);
    contacts += p.closing[i] == p.waviness[i] ? 1 : 0;
  }
  EXPECT_GT(contacts, 1u);
  EXPECT_EQ(p.closing[1799], 0.0);
  ASSERT_FALSE(p.roughnessMotifs.empty());
  ASSERT_GE(p.roughnessMotifs.front().firstPeak, 1000);
  for (const Motif& m : p.roughnessMotifs) {
    EXPECT_EQ(m.firstDepthUM,
              p.primary[static_cast<std::size_t>(m.firstPeak)] - p.primary[static_cast<std::size_t>(m.dale)]);
  }
  for (const Motif& m : p.wavinessMotifs) EXPECT_GE(m.firstPeak, p.roughnessMotifs.front().firstPeak);
  for (ParameterDef& row : document_.catalogue.rows) row.selected = row.name == "Ra";
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(p.closing.empty() && p.opening.empty() && p.roughnessMotifs.empty() && p.wavinessMotifs.empty());
  EXPECT_TRUE(document_.results.coreRoughness.valid);
}

TEST_F(Pipeline, LeavesOutWhatNobodyWantsAndChangesNothingElse) {
  Load(9000);
  for (const bool usesCurves : {false, true}) {
    Settings().primaryHtps[3].selected = Settings().roughnessMaterialRatios[7].selected = usesCurves;
    document_.wanted = {};
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    const Document whole = document_;
    document_.wanted = {.spectrum = false, .heightCurves = false, .coreRoughness = false};
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    const AnalysisResults& results = document_.results;
    EXPECT_TRUE(document_.profiles.spectrum.valid);
    EXPECT_TRUE(document_.profiles.spectrum.amplitudeUM.empty());
    EXPECT_EQ(results.primaryCurve.IsEmpty(), !usesCurves);
    EXPECT_EQ(results.roughnessCurve.IsEmpty(), !usesCurves);
    EXPECT_EQ(results.primaryHtps[3].valid, usesCurves);
    if (usesCurves) {
      EXPECT_EQ(results.primaryHtps[3].value, whole.results.primaryHtps[3].value);
      EXPECT_EQ(results.roughnessMaterialRatios[7].value, whole.results.roughnessMaterialRatios[7].value);
    }
    EXPECT_EQ(results.coreRoughness.Rk, whole.results.coreRoughness.Rk) << "rows asked for it";
    for (std::size_t i = 0; i < whole.catalogue.rows.size(); ++i) {
      EXPECT_EQ(document_.catalogue.rows[i].value, whole.catalogue.rows[i].value) << whole.catalogue.rows[i].name;
    }
  }
  for (ParameterDef& row : document_.catalogue.rows) row.selected = row.name == "Ra";
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_FALSE(document_.results.coreRoughness.valid) << "no row asks for it";
}

TEST_F(Pipeline, WritesTheHeightsThatTheElementFinderSawLast) {
  Load(60);
  Settings().LcCutoffMM = 0.01;
  document_.writesTraceFile = true;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  std::string expected;
  char line[64];
  for (const double z : document_.profiles.View(ProfileKind::kRoughness).Heights()) {
    // The process may run under a decimal comma: the digits come from an integer.
    const long long millionths = std::llround(std::abs(z) * 1e6);
    std::snprintf(line, sizeof line, "%s%lld.%06lld\r\n", std::signbit(z) ? "-" : "", millionths / 1'000'000,
                  millionths % 1'000'000);
    expected += line;
  }
  EXPECT_EQ(folder_.Read("Xc.csv"), expected);
  environment_.traceFile = folder_ / "no such folder" / "Xc.csv";
  EXPECT_EQ(Run(), ComputeOutcome::kDone) << "the computation goes on without the file";
}

}  // namespace
}  // namespace texturon
