// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_line.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "signal/form/form_mean.h"
#include "signal/mean.h"
#include "support/dense_solve.h"
#include "support/form_outputs.h"
#include "support/near.h"

namespace texturon {
namespace {

std::vector<double> NoisyLine(std::size_t n, double slope, double intercept, double noise) {
  std::mt19937 random(5);
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    z[i] = intercept + slope * 0.5 * static_cast<double>(i) + noise * (static_cast<double>(random() % 2001) - 1000.0);
  }
  return z;
}

TEST(FormMean, LevelsAllHeightsWhateverIsExcluded) {
  const std::vector<double> z = {1.0, 2.0, 9.0, 4.0};
  FormArrays out(4);
  const auto fit = RemoveMean({z, 0.5, 2, IndexRange::FromEnds(2, 2), ResidualKind::kPerpendicular}, out.Spans());
  ASSERT_TRUE(fit);
  EXPECT_EQ(fit->meanUM, 4.0);
  EXPECT_EQ(fit->residualSpacingUM, 0.5);
  EXPECT_EQ(out.form, std::vector(4, 4.0));
  EXPECT_EQ(out.residual, (std::vector{-3.0, -2.0, 5.0, 0.0}));
  EXPECT_TRUE(RemoveMean({}, {}));
  EXPECT_FALSE(RemoveMean({z}, {}));
}

TEST(FormLine, TellsHowSureItIs) {
  // Heights 0, 1, 0, 1 over x = 0, 2, 4, 6: slope 0.1, deviations -0.2, 0.6, -0.6, 0.2, their variance 0.8 / 2; Sxx =
  // 20 about the mean x 3. Perpendicular residuals change none of it.
  const std::vector<double> z = {0.0, 1.0, 0.0, 1.0};
  for (const ResidualKind kind : {ResidualKind::kVertical, ResidualKind::kPerpendicular}) {
    FormArrays out(4);
    const auto fit = FitLine({.heights = z, .spacingUM = 2.0, .residual = kind}, out.Spans());
    ASSERT_TRUE(fit && fit->slopeUncertainty);
    EXPECT_TRUE(Near(*fit->slopeUncertainty, std::sqrt(0.4 / 20.0), 1e-14));
    EXPECT_TRUE(Near(*fit->interceptUncertaintyUM, std::sqrt(0.4 * (0.25 + 9.0 / 20.0)), 1e-14));
  }
  FormArrays two(2);
  EXPECT_FALSE(FitLine({.heights = std::span(z).first(2)}, two.Spans())->slopeUncertainty) << "nothing to judge by";
}

TEST(FormLine, IsTheLeastSquaresLineOfItsFitPoints) {
  const std::vector<std::optional<IndexRange>> exclusions = {std::nullopt, IndexRange::FromEnds(100, 699)};
  for (const double offset : {0.0, 1e5}) {
    std::vector<double> z = NoisyLine(5000, 0.3, offset, 1e-3);
    for (std::size_t i = 100; i < 700; ++i) z[i] += 40.0;
    for (const auto& exclusion : exclusions) {
      for (const std::int32_t step : {0, 1, 2}) {
        DoubleDouble count, sx, sxx, sy, sxy;
        for (std::size_t i = 0; i < z.size(); i += static_cast<std::size_t>(std::max(step, 1))) {
          if (exclusion && i >= 100 && i < 700) continue;
          const double x = 0.5 * static_cast<double>(i);
          count += 1.0, sx += x, sxx += x * x, sy += z[i], sxy += DoubleDouble(x) * z[i];
        }
        const auto twin = SolveDense({{sxx, sx}, {sx, count}}, {sxy, sy});
        FormArrays out(z.size());
        const auto fit = FitLine({z, 0.5, step, exclusion, ResidualKind::kVertical}, out.Spans());
        ASSERT_TRUE(fit);
        EXPECT_TRUE(Near(fit->slope, twin[0].hi, 1e-14));
        EXPECT_TRUE(Near(fit->interceptUM, twin[1].hi, 1e-14));
        EXPECT_EQ(fit->residualSpacingUM, 0.5);
        std::vector<double> residual(z.size());
        for (std::size_t i = 0; i < z.size(); ++i) {
          residual[i] = (DoubleDouble(z[i]) - twin[1] - twin[0] * (0.5 * static_cast<double>(i))).hi;
        }
        EXPECT_TRUE(AllNear(out.residual, residual, 1e-14)) << step;

        // Perpendicular: shorter by the cosine, of the same sign, and without mean only for a step above 1.
        FormArrays upright(z.size());
        const auto across = FitLine({z, 0.5, step, exclusion, ResidualKind::kPerpendicular}, upright.Spans());
        ASSERT_TRUE(across);
        const double mean = step > 1 ? Mean(residual) : 0.0;
        const double cosine = 1.0 / std::sqrt(1.0 + fit->slope * fit->slope);
        for (double& value : residual) value = (value - mean) * cosine;
        EXPECT_TRUE(AllNear(upright.residual, residual, 1e-13)) << step;
        EXPECT_EQ(upright.form, out.form);
        EXPECT_TRUE(Near(across->residualSpacingUM, 0.5 / cosine, 1e-14));
      }
    }
  }
}

TEST(FormLine, NeedsTwoFiniteFitPoints) {
  FormArrays out(6);
  std::vector<double> z = {1.0, 5.0, 2.0, 8.0, 4.0, 0.0};
  EXPECT_FALSE(FitLine({z, 0.5, 6}, out.Spans()));
  EXPECT_TRUE(FitLine({z, 0.5, 5}, out.Spans()));
  EXPECT_FALSE(FitLine({z, 0.5, 1, IndexRange::FromEnds(0, 4)}, out.Spans()));
  EXPECT_FALSE(FitLine({{}, 0.5}, {}));
  EXPECT_FALSE(FitLine({z, 0.0, 1}, out.Spans()));
  EXPECT_FALSE(FitLine({z, 0.5, 1}, {}));
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    z[2] = bad;
    EXPECT_FALSE(FitLine({z, 0.5, 1}, out.Spans()));
    EXPECT_TRUE(FitLine({z, 0.5, 1, IndexRange::FromEnds(2, 2)}, out.Spans())) << "an excluded point does no harm";
  }
}

}  // namespace
}  // namespace texturon
