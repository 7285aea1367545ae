// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_free.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "signal/form/profile_extreme.h"
#include "support/form_outputs.h"
#include "support/measured_asphere.h"
#include "support/near.h"

namespace texturon {
namespace {

// A shape without symmetry, smooth, in mm.
long double Shape(long double x) {
  return 0.3L * std::sin(0.7L * x) + 0.02L * x * x - 0.001L * x * x * x + 0.1L * std::cos(1.3L * x + 0.5L);
}

NominalCurve Nominal(double first, double last, std::size_t n) {
  std::vector<double> x(n), z(n);
  for (std::size_t i = 0; i < n; ++i) {
    x[i] = first + (last - first) * static_cast<double>(i) / static_cast<double>(n - 1);
    z[i] = static_cast<double>(Shape(x[i]));
  }
  return *NominalCurve::Through(x, z);
}

// The shape turned about its origin, then shifted; heights in um at x = i spacing.
std::vector<double> Measured(double shiftX, double shiftY, double degrees, std::size_t n, double spacingUM) {
  const long double angle = degrees * std::acos(-1.0L) / 180.0L;
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    const long double x = 0.001L * spacingUM * static_cast<long double>(i);
    long double low = x - shiftX - 3.0L, high = x - shiftX + 3.0L;
    for (int round = 0; round < 66; ++round) {
      const long double middle = 0.5L * (low + high);
      const bool isLeft = shiftX + std::cos(angle) * middle - std::sin(angle) * Shape(middle) < x;
      (isLeft ? low : high) = middle;
    }
    z[i] = static_cast<double>(1000.0L * (shiftY + std::sin(angle) * low + std::cos(angle) * Shape(low)));
  }
  return z;
}

TEST(FormFree, FindsTheShiftAndTheTurnAgain) {
  struct Case {
    double first, last, shiftX, shiftY, degrees;
    bool allowsTilt;
  };
  const Case cases[] = {
      {0.0, 12.0, -1.5, 0.2, 0.0, false},  // the trace within the nominal
      {0.0, 12.0, -1.5, 0.2, 2.0, true},  {-3.0, 9.0, 1.0, -4.0, -5.0, true},
      {2.0, 10.0, -4.0, 0.0, 1.0, true},  // the trace runs beyond the nominal's end
      {2.0, 6.0, -1.0, 0.0, 0.5, true},   // the nominal is shorter than the trace
  };
  constexpr std::size_t kPoints = 2001;
  for (const Case& c : cases) {
    const NominalCurve nominal = Nominal(c.first, c.last, 1201);
    const std::vector<double> z = Measured(c.shiftX, c.shiftY, c.degrees, kPoints, 4.0);
    for (const ShapeMerit merit : {ShapeMerit::kLeastSquares, ShapeMerit::kLeastAbsolute}) {
      FormArrays out(kPoints);
      const FormInput input{.heights = z, .spacingUM = 4.0};
      const auto result = FitFreeForm(input, nominal, {.allowsTilt = c.allowsTilt, .merit = merit}, out.Spans());
      ASSERT_TRUE(result.fit) << c.first << ' ' << c.shiftX;
      EXPECT_TRUE(Near(result.fit->shiftXMM, c.shiftX, 1e-6)) << c.first;
      EXPECT_TRUE(Near(result.fit->shiftYMM, c.shiftY, 1e-6)) << c.first;
      EXPECT_TRUE(Near(result.fit->thetaDegrees, c.degrees, 1e-5)) << c.first;
      for (std::size_t i = 0; i < kPoints; ++i) {
        const double onNominal = 0.004 * static_cast<double>(i) - c.shiftX;
        if (onNominal > c.first + 0.5 && onNominal < c.last - 0.5) {
          ASSERT_TRUE(Near(out.residual[i], 0.0, 1e-4)) << c.first << " at " << i;
        }
      }
    }
  }
}

TEST(FormFree, HoldsItsStart) {
  const NominalCurve nominal = Nominal(0.0, 12.0, 1201);
  const std::vector<double> z = Measured(-1.5, 0.2, 0.0, 2001, 4.0);
  FormArrays out(2001);
  for (const double start : {1.5, 1.6}) {
    const auto fit = FitFreeForm({.heights = z, .spacingUM = 4.0}, nominal, {.firstPointXMM = start}, out.Spans()).fit;
    ASSERT_TRUE(fit);
    EXPECT_TRUE(Near(fit->shiftXMM, -start, start == 1.5 ? 1e-9 : 0.05));
    EXPECT_EQ(*std::max_element(out.residual.begin(), out.residual.end()) > 1.0, start != 1.5);
  }
}

TEST(FormFree, IsNotPulledByABurrWithAbsoluteDeviations) {
  const NominalCurve nominal = Nominal(-2.0, 12.0, 1401);
  std::vector<double> z = Measured(0.3, 0.0, 0.0, 2001, 4.0);
  std::mt19937_64 random(4);
  double atTruth = 0.0;  // sum of what is added
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double added = Uniform(random, -0.1, 0.1) + (i >= 1900 ? 50.0 : 0.0);
    z[i] += added;
    atTruth += 0.001 * std::abs(added);
  }
  FormArrays out(2001);
  const FormInput input{.heights = z, .spacingUM = 4.0};
  const FreeFormOptions absolute{.merit = ShapeMerit::kLeastAbsolute};
  const auto squares = FitFreeForm(input, nominal, {}, out.Spans()).fit;
  const auto robust = FitFreeForm(input, nominal, absolute, out.Spans()).fit;
  ASSERT_TRUE(squares && robust);
  EXPECT_GT(std::abs(squares->shiftXMM - 0.3), 1e-2);
  EXPECT_TRUE(Near(robust->shiftXMM, 0.3, 5e-4)) << "what noise of 0.1 um leaves";
  EXPECT_LT(robust->merit, atTruth);
  EXPECT_GT(robust->merit, 0.99 * atTruth);
}

TEST(FormFree, FailsWithoutOverlapOrNominal) {
  const std::vector<double> x = {0, 0, 0, 1, 2}, z = {0, 1, 2, 3, 4};
  EXPECT_FALSE(NominalCurve::Through(x, z)) << "three different points";
  EXPECT_FALSE(NominalCurve::Through(std::vector<double>(100), std::vector<double>(100)));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(NominalCurve::Through(std::vector<double>{0, 1, 2, 3}, std::vector<double>{0, 1, nan, 3}));
  const NominalCurve nominal = Nominal(0.0, 4.0, 100);
  const std::vector<double> heights = Measured(0.0, 0.0, 0.0, 2001, 4.0);
  FormArrays out(2001);
  EXPECT_FALSE(FitFreeForm({.heights = heights, .spacingUM = 4.0}, nominal, {.firstPointXMM = 3.0}, out.Spans()).fit);
}

TEST(NominalCurve, PassesCubicsUnchangedInAnyOrder) {
  const auto cubic = [](double x) { return 1.0 - 2.0 * x + 0.5 * x * x + 0.25 * x * x * x; };
  for (const std::size_t n : {4u, 5u, 40u}) {
    std::vector<double> x, z;
    for (std::size_t i = 0; i < n; ++i) {
      x.push_back(static_cast<double>((i * 7) % n) * 0.3 + 0.02 * static_cast<double>(i % 3));
      z.push_back(cubic(x.back()));
    }
    x.push_back(x[0]);  // the first of two at one x counts
    z.push_back(99.0);
    const auto curve = NominalCurve::Through(x, z);
    ASSERT_TRUE(curve);
    std::size_t hint = 0;
    for (int i = 100; i >= 0; --i) {
      const double at = curve->First() + (curve->Last() - curve->First()) * 0.01 * i;
      EXPECT_TRUE(Near(curve->At(at, hint).height, cubic(at), 1e-11)) << n << ' ' << at;
      EXPECT_TRUE(Near(curve->At(at, hint).slope, -2.0 + at + 0.75 * at * at, 1e-10)) << n << ' ' << at;
    }
    const double last = curve->Last();
    const double slope = -2.0 + last + 0.75 * last * last;
    EXPECT_TRUE(Near(curve->At(last + 2.0, hint).height, cubic(last) + 2.0 * slope, 1e-9)) << "straight on";
  }
}

TEST(ProfileExtreme, LiesWhereTheMeanLineIsHighestOrLowest) {
  std::vector<double> z(4001);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double u = 0.002 * static_cast<double>(i) - 3.3334;
    z[i] = -50.0 * u * u + 0.05 * std::cos(900.0 * u);
  }
  z[100] = 500.0;  // a spike is no peak
  for (const double sign : {1.0, -1.0}) {
    for (double& height : z) height *= sign;
    const auto kind = sign > 0.0 ? ExtremeKind::kPeak : ExtremeKind::kValley;
    const auto x = FindExtremeX({.heights = z, .spacingUM = 2.0}, 0.25, kind);
    ASSERT_TRUE(x);
    EXPECT_TRUE(Near(*x, 3.3334, 2e-5)) << "between two points";
  }
  EXPECT_FALSE(FindExtremeX({.heights = z, .spacingUM = 2.0}, 0.004, ExtremeKind::kPeak));
}

}  // namespace
}  // namespace texturon
