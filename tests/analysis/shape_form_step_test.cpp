// SPDX-License-Identifier: Apache-2.0

#include "analysis/shape_form_step.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "analysis/pipeline.h"
#include "settings/nominal_settings.h"
#include "support/measured_asphere.h"
#include "support/near.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 2.0;
using Texts = std::vector<std::string>;

class ShapeForm : public ::testing::Test {
protected:
  ShapeForm() { Settings().ResidualType = kResidualVertical; }
  AnalysisSettings& Settings() { return document_.settings.analysis; }
  void Load(std::vector<double> z) { SetProfile(document_, MakeProfileSet(std::move(z), kSpacingUM)); }
  void LoadAsphere(double apexMM, double slope, std::size_t n) {
    Load(MeasuredAsphere(DescribeAsphere(Settings()), {apexMM, 0.1, slope}, n, kSpacingUM));
  }
  /// A paraboloid of 10 mm with a fourth power, concave or convex.
  void UseAsphere(double curvature) {
    Settings().FormRemovalType = kFormAsphere;
    Settings().C_CurvatureMM = curvature;
    Settings().E_ConicConstant = -1.0;
    Settings().asphereCoefficients = {0.0, 0.0, 1e-4};
  }
  ComputeOutcome Run() {
    for (Texts* const texts :
         {&prompts_.messages, &prompts_.questions, &prompts_.progressTitles, &prompts_.progressTexts}) {
      texts->clear();
    }
    return Compute(document_, prompts_, {});
  }
  /// Text of the optimisation's window.
  std::string OptimizationText() const {
    return prompts_.progressTitles.at(0) == "Optimization" ? prompts_.progressTexts.at(0) : "";
  }
  const AsphereFit& Asphere() const { return std::get<AsphereFit>(document_.results.formGeometry); }
  double LargestResidual() const {
    const auto [lowest, highest] = std::ranges::minmax(document_.profiles.formSuppressed);
    return std::max(-lowest, highest);
  }

  ScriptedPrompts prompts_;
  Document document_ = MakeDocument();
};

TEST_F(ShapeForm, ReadsCoefficientsByTheirPower) {
  AnalysisSettings settings;
  settings.asphereCoefficients = {7.0, 2.0, 4.0};
  EXPECT_EQ(DescribeAsphere(settings).coefficients, (std::vector<double>{0.0, 2.0, 0.0, 4.0}));
  EXPECT_EQ(DescribeAsphere(settings).conicFactor, 1.0 - 0.746886432);
  settings.EvenTermsOnly = false;
  EXPECT_EQ(DescribeAsphere(settings).coefficients, (std::vector<double>{7.0, 2.0, 4.0}));
  EXPECT_FALSE(HasUnusedConstant(settings));
  settings.SagTableLengthMM = 1.0;
  EXPECT_EQ(SagTableOf(settings).size(), 41u) << "both sides";
}

// How well it fits is in the tests of the fit itself.
TEST_F(ShapeForm, FitsTheAsphereAndNamesWhatItFrees) {
  const struct {
    std::int32_t radiusMethod, conicMethod;
    bool plainSphere;
    const char* text;
  } cases[] = {{1, 0, false, "Optimizing asphere..."},
               {0, 1, false, "Optimizing asphere && radius..."},
               {1, 1, true, "Optimizing radius..."},
               {0, 1, true, "Optimizing asphere && radius..."}};
  for (const auto& c : cases) {
    UseAsphere(-0.1);
    if (c.plainSphere) Settings().asphereCoefficients.clear();
    if (c.plainSphere) Settings().E_ConicConstant = 0.0;
    LoadAsphere(3.5, c.plainSphere ? 0.0 : 0.01, 3001);
    Settings().RadiusMethod = c.radiusMethod;
    Settings().ConicMethod = c.conicMethod;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(OptimizationText(), c.text);
    EXPECT_TRUE(Near(Asphere().apexXMM, 3.5, 1e-6)) << c.text;
    EXPECT_LT(LargestResidual(), 1e-5) << c.text;
  }
  EXPECT_EQ(prompts_.busyChanges, 4 * 4) << "the wait cursor goes down for the fit and comes back";
  Settings().asphereCoefficients = {1.0};
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(prompts_.notices.size(), 1u) << "A0 is not used";
}

TEST_F(ShapeForm, CountsTheApexFromTheFirstSample) {
  UseAsphere(0.1);
  LoadAsphere(3.5, 0.0, 3001);
  document_.scope.region = RegionChoice{.mode = kFromStart, .startMM = 2.0};
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(Near(Asphere().apexXMM, 3.5, 1e-6));
  // So does the place at which it is held; a wrong one leaves a residual.
  Settings().AsphereXFixed = true;
  Settings().AsphereXStartMM = 3.5;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_TRUE(Near(Asphere().apexXMM, 3.5, 1e-12));
  Settings().AsphereXStartMM = 3.0;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(Asphere().apexXMM, 3.0);
}

TEST_F(ShapeForm, NotesWhatIsDoubtful) {
  UseAsphere(-0.1);
  LoadAsphere(-0.5, 0.0, 3001);
  document_.scope.region = RegionChoice{.mode = kFromStart, .startMM = 1.0};
  Run();
  EXPECT_EQ(prompts_.notices,
            Texts{"The apex of the asphere, found at X = -0.500 mm, lies outside the data, which reach "
                  "from 1.000 to 6.000 mm."});
  Settings().AsphereXFixed = true;
  Settings().AsphereXStartMM = -0.5;
  Run();
  EXPECT_EQ(prompts_.notices.size(), 1u) << "who sets it knows";
  std::vector<double> z(1000);
  for (std::size_t i = 0; i < z.size(); ++i) z[i] = static_cast<double>(i) * 1e160;
  Load(z);
  document_.scope.region.reset();
  Settings().FormRemovalType = kFormLine;
  Run();
  EXPECT_EQ(document_.results.formApplied, kNoFormApplied);
  EXPECT_EQ(prompts_.notices.size(), 2u);
}

TEST_F(ShapeForm, HoldsTheApexAtThePeakOrValley) {
  Settings().AsphereXFixed = true;
  const struct {
    double curvature;
    std::int32_t method;
    bool isAtApex;
  } cases[] = {{0.1, 1, true}, {-0.1, 1, true}, {0.1, 3, true}, {-0.1, 2, true}, {0.1, 2, false}, {-0.1, 3, false}};
  for (const auto& c : cases) {
    UseAsphere(c.curvature);
    LoadAsphere(3.5, 0.0, 3001);
    Settings().AsphereXPositionMethod = c.method;
    Settings().LcCutoffMM = 0.25;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(c.isAtApex, std::abs(Asphere().apexXMM - 3.5) < 1e-3) << c.curvature << " " << c.method;
  }
  Settings().LcCutoffMM = 0.004;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(prompts_.messages.at(0), "Could not filter to find asphere peak/valley.");
  EXPECT_EQ(document_.results.formApplied, kNoFormApplied);
}

TEST_F(ShapeForm, BecomesTheMeanWhenCancelled) {
  prompts_.closesProgress = true;
  std::vector<double> z(2000);
  std::mt19937_64 random(1);
  for (double& height : z) height = Uniform(random, -5.0, 5.0);
  Load(z);
  UseAsphere(0.02);
  for (std::size_t i = 0; i < Settings().freeFormPoints.size(); ++i) {
    Settings().freeFormPoints[i] = {0.1 * static_cast<double>(i), 20.0 * std::sin(static_cast<double>(i))};
  }
  for (const std::int32_t type : {kFormFixedRadius, kFormAsphere, kFormFree}) {
    Settings().FormRemovalType = type;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.results.formApplied, kNoFormApplied) << type;
    EXPECT_TRUE(std::holds_alternative<MeanFit>(document_.results.formGeometry)) << type;
    EXPECT_TRUE(prompts_.messages.empty()) << type;
    EXPECT_EQ(OptimizationText().substr(0, 10), "Optimizing") << type;
  }
}

TEST_F(ShapeForm, AsksAboutARadiusThatBendsTheOtherWay) {
  constexpr const char* kConvex = "Concave geometry selected.  Switch to convex?";
  constexpr const char* kConcave = "Convex geometry selected.  Switch to concave?";
  const struct {
    double dataMM, setMM;
    bool yes, quiet;
    Texts questions;
    double usedMM;
  } cases[] = {{-10, 10, true, false, {kConvex}, -10},
               {-10, 10, false, false, {kConvex}, 10},
               {10, -10, true, false, {kConcave}, 10},
               {10, -10, true, true, {}, -10},
               {10, 10, true, false, {}, 10}};
  for (const auto& c : cases) {
    Settings().FormRemovalType = kFormFixedRadius;
    Settings().FixedRadiusMM = c.setMM;
    Load(MeasuredAsphere({1.0 / c.dataMM, 1.0, {}}, {2.0, 0.0, 0.0}, 2001, kSpacingUM));
    prompts_.yes = c.yes;
    document_.quietMode = c.quiet;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(prompts_.questions, c.questions);
    EXPECT_EQ(std::get<FixedRadiusFit>(document_.results.formGeometry).radiusUM, 1000.0 * c.usedMM);
    EXPECT_EQ(Settings().FixedRadiusMM, c.setMM) << "for this computation only";
    EXPECT_EQ(LargestResidual() < 1e-6, c.usedMM == c.dataMM);
  }
  Settings().FixedRadiusMM = 0.0;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.results.formApplied, kNoFormApplied);
}

TEST_F(ShapeForm, TakesTheApertureAboutTheFittedApex) {
  // Tilted, an asphere has its arc's centre beside its apex, and a weak one beside the record: the second pass moves
  // the range.
  Settings().AsphereUseClearAperture = true;
  Settings().AsphereClearApertureDiameterMM = 3.0;
  Settings().AsphereClearApertureCentralDiscardMM = 0.08;
  for (const double curvature : {-0.1, -0.001}) {
    UseAsphere(curvature);
    LoadAsphere(2.4, 0.05, 3001);
    // The weak one is looked for about the middle, to which a burr at its edge does not reach.
    for (std::size_t i = 0; i < 400 && curvature == -0.001; ++i) document_.profiles.raw[i] += 0.5;
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(document_.profiles.computeRange, IndexRange::FromEnds(450, 1950));
    EXPECT_EQ(document_.scope.exclusion, IndexRange::FromEnds(1180, 1220));
    EXPECT_EQ(prompts_.progressTitles, Texts(2, "Optimization"));
  }
  UseAsphere(-0.1);
  LoadAsphere(2.4, 0.05, 3001);
  Settings().AsphereClearApertureDiameterMM = 100.0;  // more than there is
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.profiles.computeRange->count, 3001);
  Settings().AsphereClearApertureDiameterMM = 0.05;
  EXPECT_EQ(Run(), ComputeOutcome::kRefused);
  EXPECT_EQ(prompts_.messages, Texts{"Insufficient data for calculation."});
  EXPECT_EQ(document_.scope.exclusion, IndexRange::FromEnds(1180, 1220)) << "stays where one is refused";
}

TEST_F(ShapeForm, FitsTheStoredFreeForm) {
  const auto shape = [](double x) { return 200.0 * std::sin(0.9 * x) + 15.0 * x * x; };
  std::vector<double> z(2001);
  for (std::size_t i = 0; i < z.size(); ++i) z[i] = 50.0 + shape(0.002 * static_cast<double>(i) + 1.0);
  Load(z);
  Settings().FormRemovalType = kFormFree;
  Settings().FreeFormFirstDataPointXMM = 1.0;
  Settings().FreeFormFilterCutoffMM = 0.25;
  const struct {
    bool fixedStart, tilt;
    std::int32_t filter;
    const char* text;
  } cases[] = {{false, false, 99, "Optimizing XY..."},
               {false, true, 99, "Optimizing XYT..."},
               {true, true, 99, "Optimizing YT..."},
               {true, false, kFilterSplineGaussian, "Optimizing Y..."}};
  for (const auto& c : cases) {
    Settings().FreeFormFixedStart = c.fixedStart;
    Settings().FreeFormAllowTilt = c.tilt;
    Settings().FreeFormFilterType = c.filter;
    Settings().freeFormPoints.clear();
    // Ripple of 20 points' length stands for the nominal's own roughness; the filter takes it out.
    const bool isExact = c.filter == 99;
    for (int i = 0; i <= 1400; ++i) {
      const double ripple = isExact ? 0.0 : 0.5 * std::sin(6.2831853 * i / 20.0);
      Settings().freeFormPoints.push_back({0.005 * i - 0.5, shape(0.005 * i - 0.5) + ripple});
    }
    ASSERT_EQ(Run(), ComputeOutcome::kDone);
    EXPECT_EQ(OptimizationText(), c.text);
    const auto& fit = std::get<FreeFormFit>(document_.results.formGeometry);
    EXPECT_TRUE(Near(fit.shiftXMM, -1.0, isExact ? 1e-6 : 1e-3)) << c.text;
    EXPECT_TRUE(Near(fit.shiftYMM, 0.05, isExact ? 1e-7 : 1e-3)) << c.text;
    EXPECT_LT(LargestResidual(), isExact ? 1e-4 : 0.3) << c.text;
  }
  const double usual = DescribeFreeForm(Settings())->Last();
  std::size_t hint = 0;
  const double height = DescribeFreeForm(Settings())->At(usual, hint).height;
  Settings().SplineTension = 0.0;
  EXPECT_NE(DescribeFreeForm(Settings())->At(usual, hint).height, height) << "as any spline filter";
  Settings().FreeFormFilterCutoffMM = 0.001;
  ASSERT_EQ(Run(), ComputeOutcome::kDone);
  EXPECT_EQ(document_.results.formApplied, kNoFormApplied) << "a nominal that cannot be filtered";
}

}  // namespace
}  // namespace texturon
