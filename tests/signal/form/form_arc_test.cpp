// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_arc.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "support/dense_solve.h"
#include "support/form_outputs.h"
#include "support/near.h"
#include "support/refit_scatter.h"

namespace texturon {
namespace {

constexpr double kSpacingUM = 2.0;

// Heights of a circle whose nearest point to y = 0 lies over the middle; sign +1 is concave, centre above.
std::vector<double> Arc(std::size_t n, double radius, double sign, double tilt = 0.0, double noise = 0.0) {
  std::mt19937 random(9);
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double x = kSpacingUM * (static_cast<double>(i) - 0.5 * static_cast<double>(n - 1));
    z[i] = sign * x * x / (radius + std::sqrt(radius * radius - x * x)) + tilt * x +
           noise * (static_cast<double>(random() % 2001) - 1000.0);
  }
  return z;
}

// The normal equations in x and y as they come, with 32 digits, and residuals as differences of radii and heights.
struct Twin {
  DoubleDouble A, B, R;
  double meanHeight = 0.0;

  Twin(const std::vector<double>& z, std::int32_t step, const std::optional<IndexRange>& exclusion) {
    std::vector<std::vector<DoubleDouble>> matrix(3, std::vector<DoubleDouble>(3));
    std::vector<DoubleDouble> rhs(3);
    for (std::size_t i = 0; i < z.size(); i += static_cast<std::size_t>(step)) {
      if (exclusion && static_cast<int>(i) >= exclusion->first && static_cast<int>(i) <= exclusion->last) continue;
      const DoubleDouble v[3] = {kSpacingUM * static_cast<double>(i), z[i], 1.0};
      for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) matrix[row][column] += v[row] * v[column];
        rhs[row] += v[row] * (v[0] * v[0] + v[1] * v[1]) * 0.5;
      }
    }
    meanHeight = (matrix[1][2] / matrix[2][2]).hi;
    const auto solution = SolveDense(matrix, rhs);
    A = solution[0];
    B = solution[1];
    R = SquareRoot(A * A + B * B + solution[2] * 2.0);
  }
  double Perpendicular(std::size_t i, double height) const {
    const DoubleDouble x = DoubleDouble(kSpacingUM * static_cast<double>(i)) - A;
    const DoubleDouble y = DoubleDouble(height) - B;
    const double outside = (SquareRoot(x * x + y * y) - R).hi;
    return y.hi >= 0.0 ? outside : -outside;
  }
  double Vertical(std::size_t i, double height) const {
    const DoubleDouble x = DoubleDouble(kSpacingUM * static_cast<double>(i)) - A;
    const DoubleDouble root = SquareRoot(R * R - x * x);
    return (DoubleDouble(height) - (B.hi > meanHeight ? B - root : B + root)).hi;
  }
};

TEST(FormArc, MatchesTheNormalEquationsWith32Digits) {
  const std::vector<std::optional<IndexRange>> exclusions = {std::nullopt, IndexRange::FromEnds(300, 1100)};
  for (const double radius : {2.0e3, 1.0e4, 1.0e6, 1.0e9}) {
    for (const double sign : {1.0, -1.0}) {
      for (const double tilt : {0.0, 0.1}) {
        for (const double noise : {0.0, 1e-5}) {
          const std::vector<double> z = Arc(1601, radius, sign, tilt, noise);
          for (const auto& exclusion : exclusions) {
            const std::int32_t step = exclusion ? 3 : 1;
            const Twin twin(z, step, exclusion);
            FormArrays vertical(z.size()), upright(z.size());
            const auto fit = FitArc({z, kSpacingUM, step, exclusion, ResidualKind::kVertical}, vertical.Spans());
            ASSERT_TRUE(fit) << radius;
            const auto across = FitArc({z, kSpacingUM, step, exclusion, ResidualKind::kPerpendicular}, upright.Spans());
            ASSERT_TRUE(across);
            EXPECT_TRUE(Near(fit->radiusUM, twin.R.hi, 1e-11));
            EXPECT_TRUE(Near(fit->centreXUM, twin.A.hi, 1e-11, 1e3));
            EXPECT_TRUE(Near(fit->centreYUM, twin.B.hi, 1e-11));
            EXPECT_EQ(fit->residualSpacingUM, kSpacingUM);
            double path = 0.0;
            for (std::size_t i = 1; i < z.size(); ++i) path += std::hypot(kSpacingUM, z[i] - z[i - 1]);
            EXPECT_TRUE(Near(across->residualSpacingUM, path / static_cast<double>(z.size() - 1), 1e-12));
            EXPECT_EQ(upright.form, vertical.form);
            for (std::size_t i = 0; i < z.size(); ++i) {
              ASSERT_TRUE(Near(vertical.residual[i], twin.Vertical(i, z[i]), 1e-10))
                  << radius << ' ' << tilt << " at " << i;
              ASSERT_TRUE(Near(upright.residual[i], twin.Perpendicular(i, z[i]), 1e-10)) << radius << " at " << i;
              ASSERT_TRUE(Near(vertical.form[i] + vertical.residual[i], z[i], 1e-12));
            }
          }
        }
      }
    }
  }
}

TEST(FormArc, UncertaintiesAreThoseOfRefits) {
  for (const double sign : {1.0, -1.0}) {
    const std::vector<double> z = Arc(201, 2.0e3, sign, 0.1, 1e-5);
    const IndexRange exclusion = IndexRange::FromEnds(20, 70);
    FormArrays out(z.size());
    const auto refit = [&](const std::vector<double>& heights) {
      const auto fit = FitArc({heights, kSpacingUM, 1, exclusion}, out.Spans());
      return std::vector{fit->radiusUM, fit->centreXUM, fit->centreYUM};
    };
    const auto fit = FitArc({z, kSpacingUM, 1, exclusion}, out.Spans());
    ASSERT_TRUE(fit && fit->uncertainty);
    const std::vector<double> told{fit->uncertainty->radiusUM, fit->uncertainty->centreXUM,
                                   fit->uncertainty->centreYUM};
    const std::vector<double> found = RefitScatter(z, VarianceLeft(out.residual, 20, 70, 3), 1e-3, refit);
    // The circle's own equation weighs points by their distance from its centre: equal but for noise over radius.
    for (std::size_t k = 0; k < 3; ++k) EXPECT_TRUE(Near(told[k] / found[k], 1.0, 1e-4)) << sign << ' ' << k;
  }
  FormArrays three(3);
  EXPECT_FALSE(FitArc({std::vector{0.0, 1.0, 0.0}, kSpacingUM}, three.Spans())->uncertainty) << "nothing to judge by";
}

TEST(FormArc, TakesTheEndOfTheHalfCircleBeyondTheRadius) {
  // A half circle of 500 um with 25 points more at each side, which are held out of the fit by two fits in turn.
  std::vector<double> z(551, 0.0);
  for (std::size_t i = 25; i < 526; ++i) {
    const double x = kSpacingUM * (static_cast<double>(i) - 275.0);
    z[i] = 70.0 + std::sqrt(500.0 * 500.0 - x * x);
  }
  FormArrays out(526);
  const std::span<const double> leftOut = std::span<const double>(z).first(526);
  const auto fit = FitArc({leftOut, kSpacingUM, 1, IndexRange::FromEnds(0, 24)}, out.Spans());
  ASSERT_TRUE(fit);
  EXPECT_TRUE(Near(fit->radiusUM, 500.0, 1e-12));
  EXPECT_TRUE(Near(fit->centreYUM, 70.0, 1e-11));
  EXPECT_TRUE(Near(out.form[275], 570.0, 1e-12));
  for (std::size_t i = 0; i < 25; ++i) {
    EXPECT_TRUE(Near(out.form[i], 70.0, 1e-11)) << i;
    EXPECT_TRUE(Near(out.residual[i], -70.0, 1e-11)) << i;
  }
  // A left part leans; what lies below the centre's height still counts the other way.
  const std::span<const double> left = leftOut.first(300);
  FormArrays part(300);
  ASSERT_TRUE(FitArc({left, kSpacingUM, 1, IndexRange::FromEnds(0, 24), ResidualKind::kPerpendicular}, part.Spans()));
  EXPECT_TRUE(Near(part.residual[0], 500.0 - std::hypot(550.0, 70.0), 1e-9));
}

TEST(FormArc, FailsWithoutACircle) {
  FormArrays out(1000);
  std::vector<double> z = Arc(1000, 1e4, 1.0);
  EXPECT_FALSE(FitArc({z, kSpacingUM, 500}, out.Spans()));
  EXPECT_TRUE(FitArc({z, kSpacingUM, 499}, out.Spans()));
  EXPECT_FALSE(FitArc({z, kSpacingUM}, {}));
  for (const double slope : {0.0, 0.1, -3.0}) {  // straight to the last digit, or level
    for (std::size_t i = 0; i < z.size(); ++i) z[i] = 1234.5 + slope * static_cast<double>(i);
    EXPECT_FALSE(FitArc({z, kSpacingUM}, out.Spans())) << slope;
  }
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e200}) {
    z = Arc(1000, 1e4, 1.0);
    z[77] = bad;
    EXPECT_FALSE(FitArc({z, kSpacingUM}, out.Spans())) << bad;
  }
}

}  // namespace
}  // namespace texturon
