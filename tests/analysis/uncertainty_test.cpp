// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <string>
#include <vector>

#include "analysis/decision.h"
#include "analysis/ratio_row_list.h"
#include "analysis/record_trial.h"
#include "analysis/uncertainty_trials.h"
#include "analysis/verdict_trials.h"
#include "signal/envelope/tip_trace.h"
#include "signal/normal_distribution.h"
#include "support/loaded_document.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

constexpr double kPi = std::numbers::pi;

UncertaintyBudget Budget(const BudgetEntries& entries) {
  const BudgetRead read = MakeBudget(entries);
  EXPECT_TRUE(read.budget) << read.reason;
  return read.budget.value_or(UncertaintyBudget{});
}

/// An analysed record with these rows, without form and short-wave filter.
Document Analysed(
    std::vector<double> heights, double spacingUM, const std::vector<std::string>& names,
    const std::function<void(AnalysisSettings&)>& change = [](AnalysisSettings&) {}) {
  Document document = Loaded(std::move(heights), spacingUM, [&](Settings& settings) {
    settings.analysis.FormRemovalType = kFormNone;
    settings.analysis.LsCutoffMM = 0.0;
    settings.analysis.parameters.clear();
    for (const std::string& name : names) settings.analysis.parameters.push_back({.name = name});
    change(settings.analysis);
  });
  Analyse(document);
  return document;
}

std::vector<double> Wave(std::size_t points, double points_per_wave, double height = 1.0) {
  std::vector<double> heights(points);
  for (std::size_t i = 0; i < points; ++i)
    heights[i] = height * std::sin(2.0 * kPi * (0.25 + static_cast<double>(i)) / points_per_wave);
  return heights;
}

// Factors act on values as on heights and lengths, by any distribution: what is proportional has their deviation.
TEST(Uncertainty, ScaleFactorsAreExact) {
  const Document document = Analysed(Wave(8000, 100), 0.5, {"Ra", "Rq", "Pt", "Rsk", "Psm", "Rsm"});
  for (const char* distribution : {"normal", "uniform", "triangular", "arcsine"}) {
    const TrialOutcome gain = RunTrials(
        document, Budget({{"AmplificationPercent", "0.5"}, {"AmplificationPercent.Distribution", distribution}}), {});
    const double share = gain.rows[0]->standard / document.catalogue.rows[0].value;
    EXPECT_NEAR(share, 0.005, 4.0 * 0.005 / std::sqrt(2000.0)) << distribution;
    for (const std::size_t row : {std::size_t{1}, std::size_t{2}}) {
      EXPECT_NEAR(gain.rows[row]->standard / document.catalogue.rows[row].value, share, 1e-9 * share) << distribution;
    }
    EXPECT_NEAR(gain.rows[3]->standard, 0.0, 1e-9);
    EXPECT_NEAR(gain.rows[4]->standard, 0.0, 1e-12);
  }
  const TrialOutcome length = RunTrials(document, Budget({{"SpacingPercent", "0.2"}}), {});
  const double share = length.rows[4]->standard / document.catalogue.rows[4].value;
  EXPECT_NEAR(share, 0.002, 4.0 * 0.002 / std::sqrt(2000.0));
  EXPECT_NEAR(length.rows[5]->standard / document.catalogue.rows[5].value, share, 1e-3 * share);
  EXPECT_EQ(length.rows[2]->standard, 0.0);
  // Arcsine and uniform numbers end where their distributions do.
  const CounterRandom stream(1, 2, 3);
  for (std::uint64_t i = 0; i < 1000; ++i) {
    EXPECT_LE(std::abs(Drawn(stream, i, Distribution::kUniform)), std::sqrt(3.0));
    EXPECT_LE(std::abs(Drawn(stream, i, Distribution::kArcsine)), std::sqrt(2.0));
    EXPECT_LE(std::abs(Drawn(stream, i, Distribution::kTriangular)), std::sqrt(6.0));
  }
}

// A wave at the cut-off of which the filter leaves one half; a tenth longer it is off by less.
TEST(Uncertainty, LengthsThatAreOffLeaveTheFiltersWhereTheyAre) {
  const Document document = Analysed(Wave(16000, 800), 1.0, {"Rq"}, [](AnalysisSettings& settings) {
    settings.FilterType = kFilterGaussian;
    settings.LcCutoffMM = 0.8;
  });
  const UncertaintyBudget budget = Budget({{"SpacingPercent", "1"}});
  const double longer = RecordTrial(document, budget).Values({.spacing = 1.1}).front();
  EXPECT_NEAR(longer / ValuesOf(document).front(), (1.0 - std::exp2(-1.0 / 1.21)) / 0.5, 1e-3);
}

// Ten waves further on along a slope the texture is the same.
TEST(Uncertainty, AnotherPlaceHasAnotherTextureOnTheSameForm) {
  std::vector<double> heights = Wave(4000, 100);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] += 0.01 * static_cast<double>(i);
  const Document document =
      Analysed(heights, 1.0, {"Pa"}, [](AnalysisSettings& settings) { settings.FormRemovalType = kFormLine; });
  const UncertaintyBudget budget = Budget({{"StartPositionMM", "1"}});
  const double moved = RecordTrial(document, budget).Values({.startMM = 1.0}).front();
  EXPECT_NEAR(moved / ValuesOf(document).front(), 1.0, 0.01);
  // Mirrored twice, or any number of times, it is back.
  RecordTrial trial(document, budget);
  EXPECT_EQ(trial.Values({.startMM = 8001.0}).front(), trial.Values({.startMM = 1.0}).front());
  EXPECT_TRUE(std::isnan(trial.Values({.spacing = 0.0}).front())) << "there is no such record";
  EXPECT_TRUE(std::isnan(trial.Values({.longCutoff = -0.1}).front()));
}

// Lengths across the lay are the cosine of the angle, whose square scatters by more or less as its distribution is.
TEST(Uncertainty, AnglesCountByTheDeviationOfTheirSquare) {
  const Document document = Analysed(Wave(8000, 100), 0.5, {"Psm"});
  for (const char* distribution : {"normal", "uniform", "triangular", "arcsine"}) {
    const UncertaintyBudget budget =
        Budget({{"OrientationDegrees", "3"}, {"OrientationDegrees.Distribution", distribution}});
    const double trials = RunTrials(document, budget, {.trials = 4000}).rows[0]->standard;
    const double firstOrder = FindSensitivities(document, budget, {}).rows[0][0].contribution;
    EXPECT_NEAR(firstOrder / trials, 1.0, 0.08) << distribution;
  }
}

// White noise of rms s through the Gaussian filter: the waviness keeps s^2 dx / (sqrt(2) alpha Lc) of its variance, the
// integral of the transmission's square, and the roughness has 1 - 2 dx / (alpha Lc) + dx / (sqrt(2) alpha Lc) of it.
TEST(Uncertainty, WhiteNoiseKeepsWhatTheFilterLeavesOfIt) {
  const double alpha = std::sqrt(std::log(2.0) / kPi);
  const Document document = Analysed(std::vector<double>(8000), 0.5, {"Ra", "Rq", "Wq", "Pq"},
                                     [](AnalysisSettings& settings) { settings.FilterType = kFilterGaussian; });
  const TrialOutcome outcome = RunTrials(document, Budget({{"HeightNoiseUM", "0.1"}}), {.trials = 400});
  const double ratio = 0.5 / (alpha * 800.0);
  constexpr double kScatter = 4.0 * 0.0079 / 20.0;  // of 8000 heights, over 400 trials
  const double rq = 0.1 * std::sqrt(1.0 - 2.0 * ratio + ratio / std::numbers::sqrt2);
  EXPECT_NEAR(outcome.rows[1]->bias, rq, kScatter * rq);
  EXPECT_NEAR(outcome.rows[0]->bias, rq * std::sqrt(2.0 / kPi), kScatter * rq);
  // Few independent values of the waviness: its root mean square scatters.
  EXPECT_NEAR(outcome.rows[2]->bias, 0.1 * std::sqrt(ratio / std::numbers::sqrt2), 0.1 * outcome.rows[2]->bias);
  EXPECT_NEAR(outcome.rows[3]->bias, 0.1, kScatter * 0.1);
}

// Rt of n independent normal heights: twice the mean of their greatest, the integral of 1 - Phi^n - (1 - Phi)^n.
TEST(Uncertainty, ExtremesOfNoiseHaveTheirMean) {
  constexpr std::size_t kPoints = 1000;
  const Document document = Analysed(std::vector<double>(kPoints), 1.0, {"Pt"});
  const TrialOutcome outcome = RunTrials(document, Budget({{"HeightNoiseUM", "1"}}), {.trials = 2000});
  double range = 0.0;
  constexpr double kStep = 0.001;
  for (double x = -9.0; x < 9.0; x += kStep) {
    const double phi = NormalProbability(x);
    range += kStep * (1.0 - std::pow(phi, 1.0 * kPoints) - std::pow(1.0 - phi, 1.0 * kPoints));
  }
  EXPECT_NEAR(outcome.rows[0]->bias, range, 4.0 * outcome.rows[0]->standard / std::sqrt(2000.0));
}

// The first order law and the trials agree where lines are small and parameters smooth.
TEST(Uncertainty, SensitivitiesAddUpToTheTrials) {
  std::vector<double> heights = Wave(8000, 200, 2.0);
  const std::vector<double> fine = Wave(8000, 37, 0.3);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] += fine[i];
  Document document = Analysed(heights, 1.0, {"Ra", "Rq", "Pt", "Rsm", "Rdq"},
                               [](AnalysisSettings& settings) { settings.LsCutoffMM = 0.008; });
  document.profiles.tipRadiusMM = 0.002;
  const UncertaintyBudget budget = Budget({{"HeightNoiseUM", "0.002"},
                                           {"AmplificationPercent", "0.3"},
                                           {"SpacingPercent", "0.2"},
                                           {"LcTolerancePercent", "3"},
                                           {"LsTolerancePercent", "2"},
                                           {"OrientationDegrees", "3"},
                                           {"TipRadiusUncertaintyUM", "0.2"},
                                           {"StraightnessUM", "0.01"},
                                           {"RepeatabilityPercent.Ra", "0.5"}});
  const TrialOptions options{.trials = 2000, .jobs = 2};
  const TrialOutcome trials = RunTrials(document, budget, options);
  const SensitivityOutcome lines = FindSensitivities(document, budget, options);
  ASSERT_EQ(lines.rows.size(), trials.rows.size());
  for (std::size_t row = 0; row < lines.rows.size(); ++row) {
    const std::string& name = document.catalogue.rows[row].name;
    EXPECT_EQ(lines.rows[row].size(), 9u);
    EXPECT_NEAR(CombinedOf(lines.rows[row]) / trials.rows[row]->standard, 1.0, 0.08) << name;
  }
  EXPECT_NEAR(lines.rows[0][8].contribution, 0.005 * document.catalogue.rows[0].value,
              0.001 * document.catalogue.rows[0].value);
  EXPECT_EQ(lines.rows[1][8].contribution, 0.0);
}

// The same numbers for any number of threads; another seed gives others; who gives up gets none.
TEST(Uncertainty, DoesNotDependOnThreads) {
  const Document document = Analysed(Wave(2000, 40), 1.0, {"Ra", "Rt", "Rsm"});
  const UncertaintyBudget budget = Budget({{"HeightNoiseUM", "0.05"}, {"StartPositionMM", "0.1"}});
  const TrialOutcome one = RunTrials(document, budget, {.trials = 101, .jobs = 1});
  const TrialOutcome four = RunTrials(document, budget, {.trials = 101, .jobs = 4});
  for (std::size_t row = 0; row < 3; ++row) {
    EXPECT_EQ(one.rows[row]->standard, four.rows[row]->standard);
    EXPECT_EQ(one.rows[row]->low, four.rows[row]->low);
  }
  EXPECT_NE(one.rows[0]->standard, RunTrials(document, budget, {.trials = 101, .seed = 2}).rows[0]->standard);
  EXPECT_EQ(RunTrials(document, budget, {.advances = [](int) { return false; }}).reason, "the trials were stopped");
}

// Workers take trials as they come.
TEST(Uncertainty, ATrialDoesNotDependOnTheOneBefore) {
  const Document document = Analysed(Wave(2000, 40), 1.0, {"Ra", "Pt"});
  const UncertaintyBudget budget = Budget({{"StraightnessUM", "0.1"}, {"SpacingPercent", "3"}});
  const MeasurementDeviation deviation{.spacing = 1.02, .straightnessUM = 0.1};
  const std::vector<double> alone = RecordTrial(document, budget).Values(deviation);
  RecordTrial trial(document, budget);
  trial.Values({.spacing = 0.9});
  EXPECT_EQ(trial.Values(deviation), alone);
}

// A tip that is not off changes nothing; one that is larger leaves a smaller wave; without a radius nothing is tried.
TEST(Uncertainty, TheTipActsOnlyByItsDifference) {
  const std::vector<double> wave = Wave(2000, 20);
  std::vector<double> trace(wave.size()), under(wave.size()), back(wave.size());
  TraceOfTip(wave, trace, 1.0, 20.0);
  SurfaceUnderTip(trace, under, 1.0, 20.0);
  TraceOfTip(under, back, 1.0, 20.0);
  for (std::size_t i = 0; i < wave.size(); ++i) {
    EXPECT_GE(trace[i], wave[i]);
    EXPECT_LE(wave[i], under[i] + 1e-12);
    EXPECT_NEAR(back[i], trace[i], 1e-12);
  }
  Document document = Analysed(trace, 1.0, {"Pt"});
  const UncertaintyBudget budget = Budget({{"TipRadiusUncertaintyUM", "1"}, {"TipRadiusUM", "20"}});
  RecordTrial trial(document, budget);
  EXPECT_EQ(trial.Values({}).front(), document.catalogue.rows[0].value);
  EXPECT_LT(trial.Values({.tipRadiusUM = 4.0}).front(), document.catalogue.rows[0].value);
  // What the tip did not reach nobody knows.
  EXPECT_NEAR(trial.Values({.tipRadiusUM = -4.0}).front(), document.catalogue.rows[0].value, 1e-12);
  EXPECT_NE(RunTrials(document, Budget({{"TipRadiusUncertaintyUM", "1"}}), {}).reason, "");
}

TEST(Uncertainty, IntervalsHoldTheirShare) {
  std::vector<double> trials;
  for (int i = 1; i <= 1000; ++i) trials.push_back(std::pow(i / 1000.0, 4.0));
  trials.push_back(NAN);
  const auto symmetric = UncertaintyOf(trials, 0.2, CoverageInterval::kSymmetric);
  const auto shortest = UncertaintyOf(trials, 0.2, CoverageInterval::kShortest);
  // Places 25.025 and 975.975 of 1000, from 1.
  EXPECT_NEAR(symmetric->low, trials[24] + 0.025 * (trials[25] - trials[24]), 1e-12);
  EXPECT_NEAR(symmetric->high, trials[974] + 0.975 * (trials[975] - trials[974]), 1e-12);
  EXPECT_EQ(shortest->low, trials[0]);
  EXPECT_EQ(shortest->high, trials[951]);
  EXPECT_NEAR(symmetric->undefined, 1.0 / 1001.0, 1e-12);
  EXPECT_FALSE(UncertaintyOf(std::vector<double>{1.0, NAN}, 1.0, CoverageInterval::kShortest));
}

TEST(UncertaintyBudgets, AreUnderstoodOrRefused) {
  const ScratchFolder folder;
  folder.Write("noise.txt", "# mm um\n0.5 0.003\n0.1, 0.004\n");
  const std::string start = "[UNCERTAINTY_BUDGET]\n";
  const auto read = [&](const std::string& lines) { return ReadBudget(folder.Write("b.ini", start + lines)); };
  const BudgetRead whole = read(
      "HeightNoiseSpectrumFile=noise.txt\nspacingpercent=0.1\nStraightnessWavelengthMM=3\n"
      "RepeatabilityPercent.ra=1.2\nRepeatabilityPercent.Ra.Distribution=uniform\nRepeatabilityPercent.Rz=1\n"
      "RepeatabilityPercent.Rz/2021=2\nRepeatabilityPercent.Rzx=3\n");
  ASSERT_TRUE(whole.budget) << whole.reason;
  EXPECT_NEAR(whole.budget->Of(BudgetItem::kNoiseSpectrum).standard, 0.005, 1e-15);
  using enum Edition;
  EXPECT_EQ(whole.budget->RepeatabilityOf("Ra", k1997).distribution, Distribution::kUniform);
  EXPECT_EQ(whole.budget->RepeatabilityOf("Ra", k2021).standard, 1.2) << "one line for both editions";
  EXPECT_EQ(whole.budget->RepeatabilityOf("Rq", k1997).standard, 0.0);
  EXPECT_EQ(whole.budget->RepeatabilityOf("RzDIN", k1997).standard, 1.0) << "by its name on drawings";
  EXPECT_EQ(whole.budget->RepeatabilityOf("Rz", k2021).standard, 2.0);
  EXPECT_EQ(whole.budget->RepeatabilityOf("Rzx", k2021).standard, 3.0);
  EXPECT_EQ(FilesOfBudget(folder.Write("b.ini", start + "HeightNoiseSpectrumFile=noise.txt\n")).at(1).filename(),
            "noise.txt");
  EXPECT_EQ(EntriesOf(Budget(EntriesOf(*whole.budget))), EntriesOf(*whole.budget));
  const std::pair<const char*, const char*> refused[] = {
      {"HeightNoise=1\n", "HeightNoise: is no key of a budget"},
      {"RepeatabilityPercent.Rnone=1\n", "RepeatabilityPercent.Rnone: is no key of a budget"},
      {"HeightNoiseUM=-1\n", "is no number from 0 on"},
      {"HeightNoiseUM=1 um\n", "is no number from 0 on"},
      {"HeightNoiseUM=1\nHeightNoiseUM.Distribution=flat\n", "is none of normal"},
      {"RepeatabilityPercent.R3z/2021=1\n", "R3z/2021: is no key of a budget"},
      {"HeightNoiseUM=1\nheightnoiseum=2\n", "heightnoiseum: is given twice"},
      {"SpacingPercent=1e300\n", "is above 100, the most that is taken"},
      {"RepeatabilityPercent.Ra=101\n", "is above 100"},
      {"HeightNoiseSpectrum=0.1 1e300\n", "no list of wavelengths"},
      {"HeightNoiseSpectrum=0.1 1\nHeightNoiseSpectrum.Distribution=uniform\n", "no distribution"},
      {"HeightNoiseUM=0\n", "no uncertainty above 0"},
      {"HeightNoiseUM=1\nHeightNoiseSpectrumFile=noise.txt\n", "both"},
      {"HeightNoiseSpectrumFile=none.txt\n", "none.txt"},
      {"HeightNoiseSpectrumFile=b.ini\n", "no list of wavelengths"},
      {"", "has no section"},
  };
  for (const auto& [lines, reason] : refused) {
    const BudgetRead result = read(lines);
    EXPECT_FALSE(result.budget) << lines;
    EXPECT_NE(result.reason.find(reason), std::string::npos) << result.reason;
  }
}

// ISO 14253-1 with U = 2: limits 0 to 10, then an upper one alone.
TEST(Decisions, FollowTheRule) {
  const ParameterUncertainty known{.standard = 1.0};
  struct Case {
    double value;
    std::int32_t rule;
    bool hasUncertainty;
    Acceptance verdict;
  };
  using enum Acceptance;
  const Case cases[] = {{9.0, kDecideSimple, true, kPass},        {9.0, kDecideGuarded, true, kUndecided},
                        {9.0, kDecideGuardedFail, true, kFail},   {8.0, kDecideGuarded, true, kPass},
                        {2.0, kDecideGuarded, true, kPass},       {1.9, kDecideGuarded, true, kUndecided},
                        {-1.9, kDecideGuarded, true, kUndecided}, {12.0, kDecideGuarded, true, kFail},
                        {5.0, kDecideGuarded, false, kUndecided}, {5.0, kDecideSimple, false, kPass}};
  ParameterDef row{.valid = true, .tolerance = {.toleranced = true, .bilateral = true, .upperLimit = 10.0}};
  for (const Case& c : cases) {
    row.value = c.value;
    const auto decision = Decide(row, c.hasUncertainty ? std::optional(known) : std::nullopt, c.rule);
    EXPECT_EQ(decision->verdict, c.verdict) << c.value << " " << c.rule;
    EXPECT_EQ(decision->conformity.has_value(), c.hasUncertainty);
  }
  row.value = 10.0;
  EXPECT_NEAR(*Decide(row, known, kDecideSimple)->conformity, 0.5, 1e-12);
  row.value = 9.0;
  EXPECT_NEAR(*Decide(row, known, kDecideSimple)->conformity, 0.8413447460685429, 1e-12);
  row.value = 5.0;
  const ParameterUncertainty seldom{.standard = 1.0, .trials = 1000, .undefined = 0.06};
  EXPECT_EQ(Decide(row, seldom, kDecideGuarded)->verdict, kUndecided);
  EXPECT_EQ(Decide(row, seldom, kDecideGuardedFail)->verdict, kFail);
  EXPECT_EQ(Decide(row, seldom, kDecideSimple)->verdict, kPass);
  row.value = INFINITY;
  EXPECT_EQ(Decide(row, known, kDecideGuarded)->verdict, kFail);
  row.valid = false;
  EXPECT_FALSE(Decide(row, known, kDecideGuarded));
}

// Limits 0 to 10, U = 1 of every value: a rule over several is kept where the values moved towards the limit keep it.
TEST(Decisions, OverSeveralValuesGoByTheirUncertainties) {
  using enum Acceptance;
  Tolerance tolerance{.toleranced = true, .upperLimit = 10.0};
  const struct {
    ValueSeries values;
    AcceptanceRule acceptance;
    Acceptance guarded;
    Acceptance simple;
  } kCases[] = {{{5.0, 9.0}, AcceptanceRule::kMaximum, kPass, kPass},
                {{5.0, 9.5}, AcceptanceRule::kMaximum, kUndecided, kPass},
                {{5.0, 11.5}, AcceptanceRule::kMaximum, kFail, kFail},
                {{5.0, 0.5}, AcceptanceRule::kMaximum, kUndecided, kPass},
                {{5.0, 9.5, {}}, AcceptanceRule::kMaximum, kUndecided, kUndecided},
                {{9.5, 5.0, 8.0}, AcceptanceRule::kMedian, kPass, kPass},
                {{9.5, 9.2, 8.0}, AcceptanceRule::kMedian, kUndecided, kPass},
                {{6.5}, AcceptanceRule::k16Percent, kUndecided, kPass},
                {{9.5, 9.5, 8, 8, 8, 8}, AcceptanceRule::k16Percent, kUndecided, kPass},
                {{9.5, 8, 8, 8, 8, 8, 8}, AcceptanceRule::k16Percent, kPass, kPass}};
  for (const auto& c : kCases) {
    tolerance.bilateral = c.acceptance != AcceptanceRule::k16Percent;  // its 70 % are of an upper limit
    const ValueSeries expanded(c.values.size(), 1.0);
    const auto decided = [&](std::int32_t rule) {
      return Decide(c.values, expanded, tolerance, c.acceptance, rule)->verdict;
    };
    EXPECT_EQ(decided(kDecideGuarded), c.guarded) << &c - kCases;
    EXPECT_EQ(decided(kDecideSimple), c.simple) << &c - kCases;
    const bool isMissing = !c.values.back();
    EXPECT_EQ(decided(kDecideGuardedFail), c.guarded == kUndecided && !isMissing ? kFail : c.guarded) << &c - kCases;
  }
  const auto without = Decide(ValueSeries{5.0}, {}, tolerance, AcceptanceRule::kMaximum, kDecideGuarded);
  EXPECT_EQ(without->verdict, kUndecided);
  EXPECT_EQ(without->by, "no uncertainty is known");
}

// Trials are made where a verdict needs them and nowhere else; a configurable row finds its own place.
TEST(Decisions, AreTriedForWhereARuleNeedsThem) {
  Document document = Analysed(Wave(4000, 100), 1.0, {"Pq", "Pt"}, [](AnalysisSettings& settings) {
    settings.primaryHtps[3] = {.selected = true, .upperPercent = 90.0, .lowerPercent = 10.0};
    settings.primaryHtps[3].tolerance = {.toleranced = true, .upperLimit = 1.95};
  });
  const UncertaintyRequest request{.budget = Budget({{"AmplificationPercent", "1"}}), .trials = 50};
  EXPECT_EQ(TryForVerdicts(document, &request, 1), "");
  EXPECT_TRUE(document.results.uncertainties.empty()) << "the rule is simple";
  document.settings.decision.DecisionRule = kDecideGuarded;
  EXPECT_NE(TryForVerdicts(document, nullptr, 1), "");
  EXPECT_EQ(TryForVerdicts(document, &request, 1), "");
  ASSERT_EQ(document.results.uncertainties.size(), 3u);
  // 2 cos(18 degrees) = 1.902, U = 0.038.
  const ParameterDef row = SelectedHtps(document).front().row;
  EXPECT_NEAR(row.value, 1.902, 0.002);
  EXPECT_EQ(Decide(document, row, 2)->verdict, Acceptance::kPass);
  document.settings.analysis.primaryHtps[3].tolerance.upperLimit = 1.93;
  EXPECT_EQ(Decide(document, SelectedHtps(document).front().row, 2)->verdict, Acceptance::kUndecided);
}

}  // namespace
}  // namespace texturon
