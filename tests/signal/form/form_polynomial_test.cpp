// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_polynomial.h"

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

std::vector<double> Surface(std::size_t n) {
  std::mt19937 random(13);
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double t = static_cast<double>(i) / static_cast<double>(n);
    z[i] = 150.0 * t * t - 30.0 * std::sin(6.0 * t) + 100.0 + static_cast<double>(random() % 1000) * 1e-3;
  }
  return z;
}

// Normal equations in powers of the index over `scale`, with 32 digits.
std::vector<DoubleDouble> PowersTwin(const std::vector<double>& z, std::size_t order, const FormInput& input,
                                     double scale) {
  std::vector<DoubleDouble> sums(2 * order + 1), rhs(order + 1);
  for (std::size_t i = 0; i < z.size(); i += static_cast<std::size_t>(input.step)) {
    const int index = static_cast<int>(i);
    if (input.exclusion && index >= input.exclusion->first && index <= input.exclusion->last) continue;
    const DoubleDouble x = DoubleDouble(static_cast<double>(i)) / scale;
    DoubleDouble power = 1.0;
    for (std::size_t j = 0; j <= 2 * order; ++j, power *= x) {
      sums[j] += power;
      if (j <= order) rhs[j] += power * z[i];
    }
  }
  std::vector<std::vector<DoubleDouble>> matrix(order + 1, std::vector<DoubleDouble>(order + 1));
  for (std::size_t j = 0; j <= order; ++j) {
    for (std::size_t k = 0; k <= order; ++k) matrix[j][k] = sums[j + k];
  }
  return SolveDense(matrix, rhs);
}

TEST(FormPolynomial, MatchesThePowersWith32Digits) {
  const std::vector<std::optional<IndexRange>> exclusions = {std::nullopt, IndexRange::FromEnds(300, 500)};
  for (const std::size_t n : {51u, 3000u}) {  // few points in relation to the order, and many
    const std::vector<double> z = Surface(n);
    for (const std::size_t order : {0u, 1u, 2u, 4u, 10u}) {
      for (const auto& exclusion : exclusions) {
        const FormInput input{z, 0.25, exclusion ? 3 : 1, exclusion, ResidualKind::kPerpendicular};
        const double scale = static_cast<double>(n);
        const auto twin = PowersTwin(z, order, input, scale);
        FormArrays out(n);
        const auto fit = FitPolynomial(input, static_cast<int>(order), out.Spans());
        ASSERT_TRUE(fit);
        EXPECT_EQ(fit->residualSpacingUM, 0.25);
        ASSERT_EQ(fit->coefficients.size(), order + 1);
        for (std::size_t j = 0; j <= order; ++j) {
          const double expected = twin[j].hi / std::pow(scale * 0.25, static_cast<double>(j));
          EXPECT_TRUE(Near(fit->coefficients[j] / expected, 1.0, 1e-10)) << order << " c" << j;
        }
        for (std::size_t i = 0; i < n; ++i) {
          const DoubleDouble x = DoubleDouble(static_cast<double>(i)) / scale;
          DoubleDouble height;
          for (std::size_t j = order + 1; j-- > 0;) height = height * x + twin[j];
          ASSERT_TRUE(Near(out.form[i], height.hi, 1e-13)) << order << " at " << i;
          ASSERT_TRUE(Near(out.residual[i], (DoubleDouble(z[i]) - height).hi, 1e-12)) << order << " at " << i;
        }
      }
    }
  }
}

TEST(FormPolynomial, UncertaintiesAreThoseOfRefits) {
  const std::vector<double> z = Surface(90);
  const IndexRange exclusion = IndexRange::FromEnds(30, 44);
  for (const int order : {0, 1, 3, 6}) {
    FormArrays out(z.size());
    const auto refit = [&](const std::vector<double>& heights) {
      return FitPolynomial({heights, 0.25, 1, exclusion}, order, out.Spans())->coefficients;
    };
    refit(z);
    const double variance = VarianceLeft(out.residual, 30, 44, static_cast<std::size_t>(order) + 1);
    const auto fit = FitPolynomial({z, 0.25, 1, exclusion}, order, out.Spans());
    const std::vector<double> found = RefitScatter(z, variance, 1.0, refit);
    ASSERT_EQ(fit->uncertainties.size(), found.size());
    for (std::size_t k = 0; k < found.size(); ++k) {
      EXPECT_TRUE(Near(fit->uncertainties[k] / found[k], 1.0, 1e-7)) << order << " c" << k;
    }
  }
  FormArrays four(4);
  EXPECT_TRUE(FitPolynomial({std::span(z).first(4), 0.25}, 3, four.Spans())->uncertainties.empty());
}

TEST(FormPolynomial, LeavesNothingOfAChebyshevPolynomialOfHighOrder) {
  // cos(m arccos t) is a polynomial of order m: an order of m takes all of it, one of m - 1 does not.
  const auto chebyshev = [](std::size_t n, int m) {
    std::vector<double> z(n);
    for (std::size_t i = 0; i < n; ++i) {
      z[i] = 200.0 * std::cos(m * std::acos(2.0 * static_cast<double>(i) / static_cast<double>(n - 1) - 1.0));
    }
    return z;
  };
  struct Case {
    std::size_t n;
    int m;
  };
  for (const Case c : {Case{200'000, 20}, Case{51, 20}, Case{51, 50}, Case{5000, 35}, Case{5001, 36}, Case{900, 100}}) {
    const std::vector<double> z = chebyshev(c.n, c.m);
    FormArrays out(c.n);
    ASSERT_TRUE(FitPolynomial({z, 0.5}, c.m, out.Spans())) << c.n << ' ' << c.m;
    EXPECT_TRUE(AllNear(out.residual, std::vector(c.n, 0.0), 1e-9)) << c.n << ' ' << c.m;
    ASSERT_TRUE(FitPolynomial({z, 0.5}, c.m - 1, out.Spans()));
    EXPECT_GT(std::abs(out.residual[c.n / 2]) + std::abs(out.residual[0]), 1e-6) << c.n << ' ' << c.m;
  }
}

TEST(FormPolynomial, ClampsItsOrderAndFailsWithTooLittleToGoBy) {
  const std::vector<double> z = Surface(300);
  FormArrays hundred(300), more(300);
  const auto fit = FitPolynomial({z, 0.5}, 100, hundred.Spans());
  ASSERT_TRUE(fit);
  EXPECT_EQ(fit->coefficients.size(), 101u);
  ASSERT_TRUE(FitPolynomial({z, 0.5}, 150, more.Spans()));
  EXPECT_EQ(hundred.form, more.form);

  EXPECT_FALSE(FitPolynomial({z, 0.5}, -1, hundred.Spans()));
  EXPECT_TRUE(FitPolynomial({z, 0.5, 60}, 4, hundred.Spans()));
  EXPECT_FALSE(FitPolynomial({z, 0.5, 60}, 5, hundred.Spans()));
  EXPECT_FALSE(FitPolynomial({z, 0.5, 1, IndexRange::FromEnds(0, 299)}, 0, hundred.Spans()));
  EXPECT_FALSE(FitPolynomial({z, 0.5}, 2, {}));
  EXPECT_FALSE(FitPolynomial({{}, 0.5}, 0, {}));
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    std::vector<double> broken = z;
    broken[10] = bad;
    EXPECT_FALSE(FitPolynomial({broken, 0.5}, 3, hundred.Spans()));
  }
  std::vector<double> huge(300, 1.7e308);
  EXPECT_FALSE(FitPolynomial({huge, 0.5}, 3, hundred.Spans()));
}

}  // namespace
}  // namespace texturon
