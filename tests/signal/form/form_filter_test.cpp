// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_filter.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

#include "signal/filter/spline_filter.h"
#include "signal/form/form_line.h"
#include "signal/mean.h"
#include "support/near.h"

namespace texturon {
namespace {

TEST(FormFilter, TakesLineAndLongWavesAndLeavesTheRestWithoutMean) {
  constexpr std::size_t kSize = 4000;
  std::vector<double> z(kSize), line(kSize), form(kSize), residual(kSize), meanLine(kSize);
  for (std::size_t i = 0; i < kSize; ++i) {
    const double x = 0.5 * static_cast<double>(i);
    line[i] = 40.0 + 0.05 * x;
    z[i] = line[i] + 2.0 * std::cos(std::numbers::pi * x / 1000.0) + 0.3 * std::sin(x);
  }
  const FormInput input{z, 0.5, 5, IndexRange::FromEnds(0, 1000), ResidualKind::kPerpendicular};
  const auto fit = RemoveFormByFilter(input, 0.25, {form, residual});
  ASSERT_TRUE(fit);
  EXPECT_EQ(fit->residualSpacingUM, 0.5);
  EXPECT_TRUE(Near(Mean(residual), 0.0, 1e-14));

  // Tension 0 passes lines, so filtering the whole profile at once gives the same form.
  ASSERT_TRUE(SplineFilter(z, meanLine, 0.5, 0.25, 0.0));
  EXPECT_TRUE(AllNear(form, meanLine, 1e-12));
  const auto whole = FitLine({z, 0.5}, {meanLine, line});
  EXPECT_EQ(fit->slope, whole->slope);
  EXPECT_EQ(fit->interceptUM, whole->interceptUM);
}

TEST(FormFilter, FailsWithTheFilterAndWithTheLine) {
  std::vector<double> z(100, 1.0), form(100), residual(100);
  EXPECT_FALSE(RemoveFormByFilter({z, 0.5}, 0.0014, {form, residual}));
  EXPECT_FALSE(RemoveFormByFilter({z, 0.5}, 0.0, {form, residual}));
  EXPECT_FALSE(
      RemoveFormByFilter({std::span(z).first(1), 0.5}, 0.8, {std::span(form).first(1), std::span(residual).first(1)}));
  EXPECT_FALSE(RemoveFormByFilter({{}, 0.5}, 0.8, {}));
}

}  // namespace
}  // namespace texturon
