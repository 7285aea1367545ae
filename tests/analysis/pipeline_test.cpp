// SPDX-License-Identifier: Apache-2.0

#include "analysis/pipeline.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "analysis/analysis_run.h"
#include "analysis/compute_range.h"
#include "base/number_text.h"
#include "signal/mean.h"
#include "support/near.h"
#include "support/row_value.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"
#include "support/small_profiles.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 0.5;

class Pipeline : public ::testing::Test {
protected:
  Pipeline() {
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
  Document document_ = MakeDocument();
};

TEST_F(Pipeline, SaysWhereAnArcIsWorseThanALine) {
  Load(1000);
  Settings().FormRemovalType = kFormArc;
  Run();
  ASSERT_EQ(prompts_.notices.size(), 1u) << "a sloping line with noise";
  EXPECT_TRUE(prompts_.notices[0].ends_with("it is too flat for an arc.")) << prompts_.notices[0];
  prompts_.notices.clear();
  std::vector<double> arc(1000);
  for (std::size_t i = 0; i < arc.size(); ++i) {
    const double x = (static_cast<double>(i) - 499.5) * kSpacingUM;
    arc[i] = std::sqrt(1e8 - x * x) + 0.05 * std::sin(x);
  }
  SetProfile(document_, MakeProfileSet(std::move(arc), kSpacingUM));
  Run();
  EXPECT_TRUE(prompts_.notices.empty()) << prompts_.notices[0];
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
  EXPECT_EQ(Run(), ComputeOutcome::kNoProfile);
  Load(1000);
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  const auto [lowest, highest] = std::ranges::minmax(document_.profiles.raw);
  EXPECT_EQ(document_.results.rawPeak, highest);
  EXPECT_EQ(document_.results.rawValleyDepth, -lowest);
  const Document former = document_;
  EXPECT_EQ(former.results.request, document_.Request());
  document_.scope.region = RegionChoice{.mode = kStartAndLength};
  EXPECT_EQ(Run(), ComputeOutcome::kRefused);
  EXPECT_EQ(document_.results.request, former.results.request) << "the results know what they came from";
  EXPECT_EQ(document_.profiles.roughness, former.profiles.roughness);
  EXPECT_EQ(document_.profiles.computeRange->count, 1000);
  EXPECT_TRUE(document_.catalogue.rows[45].valid);
  EXPECT_EQ(document_.catalogue.rows[45].value, former.catalogue.rows[45].value);
}

TEST_F(Pipeline, NeedsFiftyStepsOfData) {
  Settings().LcCutoffMM = 0.008;
  Load(51);
  EXPECT_EQ(Run(), ComputeOutcome::kDone);
  Load(50);
  EXPECT_EQ(Run(), ComputeOutcome::kRefused);
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

TEST_F(Pipeline, LeavesZerosOutsideTheRangesOfItsFirstRun) {
  struct Case {
    std::int32_t filter;
    double longCutoffMM, shortCutoffMM;
  };
  for (const Case& c : {Case{kFilterGaussian, 0.08, 0.0}, Case{kFilterSplineGaussian, 0.08, 0.0025},
                        Case{kFilterIso13565, 0.08, 0.0025}, Case{kFilterRobustGaussian, 0.08, 0.0},
                        Case{99, 0.08, 0.0}, Case{kFilterGaussian, 0.001, 0.001}}) {
    Load(9001);
    Settings().FilterType = c.filter;
    Settings().LcCutoffMM = c.longCutoffMM;
    Settings().LsCutoffMM = c.shortCutoffMM;
    Settings().UserDiscardType = kDiscardHalfCutoff;
    document_.scope.region = RegionChoice{.mode = kFromStart, .startMM = 0.5};
    Document zeros = document_;
    FillEmpty(zeros.profiles);
    for (Document* document : {&document_, &zeros}) {
      ASSERT_EQ(Compute(*document, prompts_, environment_), ComputeOutcome::kDone) << c.filter;
    }
    const ProfileSet& p = document_.profiles;
    EXPECT_EQ(p.primary[static_cast<std::size_t>(p.primaryRange->first) - 1], 0.0);
    EXPECT_EQ(p.form, zeros.profiles.form) << c.filter;
    EXPECT_EQ(p.formSuppressed, zeros.profiles.formSuppressed) << c.filter;
    EXPECT_EQ(p.primary, zeros.profiles.primary) << c.filter;
    EXPECT_EQ(p.waviness, zeros.profiles.waviness) << c.filter;
    EXPECT_EQ(p.roughness, zeros.profiles.roughness) << c.filter;
  }
}

TEST_F(Pipeline, UsesThePrimaryAsWavinessWhenTheFilterFails) {
  Load(1000);
  Settings().LcCutoffMM = 0.001;  // the spacing is half of it, more than a third
  for (const bool quiet : {true, false}) {
    document_.quietMode = quiet;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.profiles.waviness, document_.profiles.primary);
    EXPECT_EQ(document_.profiles.roughness, Samples(1000, 0.0));
    EXPECT_EQ(document_.profiles.evaluationRange, document_.profiles.primaryRange);
    EXPECT_EQ(prompts_.messages.size(), quiet ? 0u : 1u);
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
    EXPECT_TRUE(Near(Mean(document_.profiles.formSuppressed), 0.0, 1e-12)) << type;
  }
}

TEST_F(Pipeline, LeavesAnExcludedStretchOutOfTheFit) {
  std::vector<double> z(1000);
  for (std::size_t i = 0; i < z.size(); ++i) {
    z[i] = 0.25 * kSpacingUM * static_cast<double>(i) + (i >= 300 && i <= 400 ? 50.0 : 0.0);
  }
  SetProfile(document_, MakeProfileSet(z, kSpacingUM));
  Settings().ResidualType = kResidualVertical;
  ExcludeFromForm(document_, 300, 400);
  const auto slope = [this] {
    EXPECT_EQ(Run(), ComputeOutcome::kDone);
    return std::get<LineFit>(document_.results.formGeometry).slope;
  };
  EXPECT_TRUE(Near(slope(), 0.25, 1e-12));
  EXPECT_TRUE(Near(document_.profiles.formSuppressed[350], 50.0, 1e-9)) << "excluded points get a residual too";
  document_.scope.region->startMM = 0.1;
  EXPECT_TRUE(Near(slope(), 0.25, 1e-12)) << "counted from the region's first point";
  document_.scope.allDataForForm = true;
  const double slopeOfAll = slope();
  EXPECT_FALSE(Near(slopeOfAll, 0.25, 1e-3)) << "a fit over all data";
  EXPECT_EQ(document_.profiles.computeRange->first, 200);
  EXPECT_TRUE(Near(Mean(document_.profiles.View(ProfileKind::kPrimary).Heights()), 0.0, 1e-12)) << "of the region";
  document_.scope.region.reset();
  EXPECT_EQ(slope(), slopeOfAll);
  EXPECT_FALSE(document_.scope.exclusion) << "the whole record forgets the exclusion";
}

// Of all data every 100th point counts where ten are wanted of a region of 1001: each second of them is raised.
TEST_F(Pipeline, ThinsAllDataByTheStepOfTheRegion) {
  std::vector<double> z(4001);
  for (std::size_t i = 0; i < z.size(); ++i) z[i] = i % 200 == 100 ? 1.0 : 0.0;
  SetProfile(document_, MakeProfileSet(z, kSpacingUM));
  document_.scope.region = RegionChoice{.mode = kStartAndLength, .startMM = 0.5, .lengthMM = 0.5};
  document_.scope.allDataForForm = true;
  Settings().FormRemovalDataReductionMethod = kThinToPoints;
  Settings().FormRemovalNumberOfPoints = 10;
  Settings().ResidualType = kResidualVertical;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(Near(document_.profiles.form[2000], 20.0 / 41.0, 1e-9)) << "20 of 41 points, symmetric about this one";
}

TEST_F(Pipeline, CutsTheWavinessIntoLengthsOfTheFormFilter) {
  Settings().parameters = {{.name = "Wc"}};
  ApplySettings(document_, document_.settings);
  Load(40'000);
  Settings().FormRemovalType = kFormFilter;
  Settings().FormFilterCutoffMM = 2.0;  // not a fifth of 20 mm
  Settings().WcSamplingLengthPercent = 40.0;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  const auto heights = document_.profiles.View(ProfileKind::kWaviness).Heights();
  const auto value = [&](double lengthMM) {
    return RowValue("c", {{heights.begin(), heights.end()}, 'W', kSpacingUM * 0.001, lengthMM, Settings()});
  };
  EXPECT_NE(value(4.0), value(2.0));
  EXPECT_EQ(document_.catalogue.rows[0].value, value(2.0));
}

TEST_F(Pipeline, SurvivesAnyExclusion) {
  Load(200);
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  const std::int32_t cases[][3] = {{kLowest, kHighest, kNoFormApplied},
                                   {-1000, 1000, kNoFormApplied},
                                   {kHighest, kLowest, kFormLine},
                                   {kLowest, 5, kFormLine},
                                   {500, kHighest, kFormLine}};
  for (const auto& [first, last, applied] : cases) {
    ExcludeFromForm(document_, first, last);
    document_.scope.region->startMM = 0.01;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.results.formApplied, applied) << first << " to " << last;
  }
}

TEST_F(Pipeline, ThinsByPointsOrSpacing) {
  const struct {
    std::int32_t method, points;
    double spacingUM;
    std::int32_t step;
  } cases[] = {{0, 10, 5.0, 0},  {1, 10, 5.0, 100}, {1, 3000, 5.0, 0}, {1, 0, 5.0, 0},  {1, -4, 5.0, 0},
               {2, 10, 5.4, 10}, {2, 10, 0.4, 0},   {2, 10, -3.0, 0},  {3, 10, 5.0, 0}, {2, 10, 1e300, 2147483647}};
  AnalysisSettings settings;
  for (const auto& c : cases) {
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
    EXPECT_TRUE(Near(Mean(p.View(ProfileKind::kPrimary).Heights()), 0.0, 1e-12));
    for (auto i = static_cast<std::size_t>(p.evaluationRange->first);
         i <= static_cast<std::size_t>(p.evaluationRange->last); i += 97) {
      EXPECT_TRUE(Near(p.waviness[i] + p.roughness[i], p.primary[i], 1e-14)) << filter;
    }
    const HeightCurve& curve = document_.results.roughnessCurve;
    EXPECT_TRUE(std::is_sorted(curve.heightsUM.rbegin(), curve.heightsUM.rend()));
    EXPECT_EQ(curve.heightsUM.size(), static_cast<std::size_t>(p.evaluationRange->count));
  }
  Settings().LcCutoffMM = 0.0799;
  Settings().LsCutoffMM = 0.0;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_FALSE(document_.profiles.shortCutoffMM);
  EXPECT_EQ(prompts_.progressTitles,
            (std::vector<std::string>{"0.800 mm Robust Filter ...", "79.900 \xB5m Robust Filter ..."}));
}

TEST_F(Pipeline, KeepsEnvelopesAndMotifsInPlaceWhenARowAsksForThem) {
  Load(9000);
  document_.scope.region = RegionChoice{.mode = kFromStart, .startMM = 0.5};  // sample 1000
  Settings().UserDiscardType = kDiscardHalfCutoff;
  Settings().MotifAMM = 0.02;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  const ProfileSet& p = document_.profiles;
  ASSERT_EQ(p.closing.size(), 9000u);
  ASSERT_EQ(p.evaluationRange->first, 1800);
  for (auto i = static_cast<std::size_t>(p.evaluationRange->first);
       i <= static_cast<std::size_t>(p.evaluationRange->last); ++i) {
    ASSERT_GE(p.closing[i], p.waviness[i]);
    ASSERT_LE(p.opening[i], p.waviness[i]);
  }
  EXPECT_EQ(p.closing[1799], 0.0);
  ASSERT_FALSE(p.roughnessMotifs.empty());
  ASSERT_GE(p.roughnessMotifs.front().firstPeak, 1000);
  for (const Motif& m : p.roughnessMotifs) {
    EXPECT_EQ(m.firstDepthUM,
              p.primary[static_cast<std::size_t>(m.firstPeak)] - p.primary[static_cast<std::size_t>(m.dale)]);
  }
}

TEST_F(Pipeline, LeavesOutWhatNobodyWantsAndChangesNothingElse) {
  Load(9000);
  for (const bool usesCurves : {false, true}) {
    Settings().primaryHtps[3].selected = Settings().roughnessMaterialRatios[7].selected = usesCurves;
    document_.wanted = {};
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    const Document whole = document_;
    document_.wanted = kNoCurves;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    const AnalysisResults& results = document_.results;
    EXPECT_EQ(results.primaryCurve.IsEmpty() && results.roughnessCurve.IsEmpty(), !usesCurves);
    EXPECT_EQ(results.primaryHtps[3].value == whole.results.primaryHtps[3].value, usesCurves);
    EXPECT_EQ(results.roughnessMaterialRatios[7].value == whole.results.roughnessMaterialRatios[7].value, usesCurves);
    for (std::size_t i = 0; i < whole.catalogue.rows.size(); ++i) {
      EXPECT_EQ(document_.catalogue.rows[i].value, whole.catalogue.rows[i].value) << whole.catalogue.rows[i].name;
    }
  }
  const Document with = document_;
  document_.wanted.form = document_.wanted.envelopes = false;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(document_.profiles.form.empty() && document_.profiles.closing.empty());
  EXPECT_EQ(document_.profiles.formSuppressed, with.profiles.formSuppressed);
  for (std::size_t i = 0; i < with.catalogue.rows.size(); ++i) {
    EXPECT_EQ(document_.catalogue.rows[i].value, with.catalogue.rows[i].value) << with.catalogue.rows[i].name;
  }
  for (ParameterDef& row : document_.catalogue.rows) row.selected = row.name == "Ra";
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_FALSE(document_.results.coreRoughness.valid) << "no row asks for it";
  EXPECT_TRUE(document_.profiles.closing.empty() && document_.profiles.roughnessMotifs.empty());
}

TEST_F(Pipeline, WritesTheHeightsThatTheElementFinderSawLast) {
  Load(60);
  Settings().LcCutoffMM = 0.01;
  document_.writesTraceFile = true;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  std::string expected;
  for (const double z : document_.profiles.View(ProfileKind::kRoughness).Heights())
    expected += FixedText(z, 6) + "\r\n";
  EXPECT_EQ(folder_.Read("Xc.csv"), expected);
  environment_.traceFile = folder_ / "no such folder" / "Xc.csv";
  EXPECT_EQ(Run(), ComputeOutcome::kDone) << "the computation goes on without the file";
}

TEST(ComputeRange, AWholeNumberOfCutoffsIsLongerByWhatIsDiscarded) {
  constexpr double kCutoffMM = 0.8;
  constexpr std::pair<std::int32_t, double> kTypes[] = {{-1, 2.4}, {0, 2.4}, {1, 3.2}, {2, 4.0}, {3, 2.6}};
  for (const auto& [type, lengthMM] : kTypes) {
    AnalysisSettings settings;
    settings.LcCutoffMM = kCutoffMM;
    settings.UserDiscardType = type;
    settings.UserDiscardLengthMM = 0.1;
    const RegionChoice region = RegionOfCutoffs(3.0, settings);
    EXPECT_EQ(region.mode, kStartAndLength);
    EXPECT_NEAR(region.lengthMM, lengthMM, 1e-12) << type;
  }
}

TEST(AnalysisRun, TellsWhyNotAndWhichFilesItTouches) {
  const ScratchFolder folder;
  std::string table;
  for (int i = 0; i < 60; ++i) table += IntegerText(i % 7) + "\t1\n";
  folder.Write("table.LMTd", table);
  const std::string header = "Lumetrace_Data 1.0\nIDENTIFICATION: t\nDATE: d\nSPACING_UM: 10\nNUMBER_OF_POINTS: 60\n\n";
  folder.Write("table.LMTH", header);
  folder.Write("empty.lmt", "");
  folder.Write("short.lmt", SmallProfile(20, 1.0));
  folder.Write("long.lmt", SmallProfile(60, 1.0));
  const struct {
    const char *name, *reason;
    std::size_t reads;
  } cases[] = {{"short.lmt", "is not analysed: there are too few points to compute over", 1},
               {"empty.lmt", "is empty", 1},
               {"table.LMTH", "", 2},
               {"long.lmt", "", 1}};
  Environment environment;
  environment.traceFile = folder / "Xc.csv";
  for (const auto& c : cases) {
    Document document = MakeDocument();
    SilentPrompts nobody;
    const RunStep run = RunAnalysis(document, {.path = folder / c.name, .invert = true}, nobody, environment);
    EXPECT_EQ(run.Reason(), c.reason);
    EXPECT_EQ(document.profiles.inverted, run.loaded);
    EXPECT_EQ(document.results.request.has_value(), run.ok());
    EXPECT_EQ(run.files.reads.size(), c.reads) << c.name;
    EXPECT_EQ(run.files.writes, std::vector{environment.traceFile});
  }
  EXPECT_TRUE(std::filesystem::exists(environment.traceFile));
}

// Where it cannot be analysed, the values of another would stand under its name.
TEST_F(Pipeline, ANewRecordHasNoValuesOfTheOneBefore) {
  Load(2000);
  Compute(document_, prompts_, environment_);
  const auto& rows = document_.catalogue.rows;
  const auto hasValue = [](const ParameterDef& row) { return row.valid; };
  ASSERT_TRUE(std::any_of(rows.begin(), rows.end(), hasValue));
  Load(2);
  EXPECT_TRUE(std::none_of(rows.begin(), rows.end(), hasValue));
}

}  // namespace
}  // namespace texturon
