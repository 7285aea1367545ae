// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_equations.h"

#include <algorithm>
#include <cmath>

#include "base/four_doubles.h"

namespace texturon {
namespace {

/// What is left of the equations of one place, or of several side by side, by elimination from the highest power down,
/// so that the last unknown is the one that is wanted. The matrix is symmetric and positive, and its entries are of the
/// order of 1.
template <typename Value>
struct Eliminated {
  Value q12, q02, q01;  ///< the multiples of rows that were subtracted
  Value p1, p0;         ///< pivots
  Value determinant, numerator;

  TEXTURON_INLINE Eliminated(const Value& m0, const Value& m1, const Value& m2, const Value& m3, const Value& f0,
                             const Value& f1, const Value& f2, const Value& m4) {
    q12 = m3 / m4;
    q02 = m2 / m4;
    p1 = m2 - q12 * m3;
    const Value e01 = m1 - q02 * m3;
    const Value g1 = f1 - q12 * f2;
    q01 = e01 / p1;
    p0 = m0 - q02 * m2 - q01 * e01;
    const Value g0 = f0 - q02 * f2 - q01 * g1;
    const Value others = m4 * p1;
    determinant = others * p0;
    numerator = others * g0;
  }
};

}  // namespace

RegressionSolution SolveRegression(const RegressionPoint& sums) {
  const auto [m0, m1, m2, m3, f0, f1, f2, m4] = sums;
  const Eliminated<double> e(m0, m1, m2, m3, f0, f1, f2, m4);
  const double last = e.p0 / (1.0 + std::abs(e.q01) + std::abs(e.q01 * e.q12 - e.q02));
  return {std::min(std::min(last, e.p1), m4), e.determinant, e.numerator};
}

TEXTURON_MULTIVERSION
void SolveRegressions(const std::array<const double*, kRegressionSums>& sums, std::size_t count, double* numerators,
                      double* determinants) {
  const auto [m0, m1, m2, m3, f0, f1, f2, m4] = sums;
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < count; ++i) {
    const Eliminated<double> e(m0[i], m1[i], m2[i], m3[i], f0[i], f1[i], f2[i], m4[i]);
    numerators[i] = e.numerator;
    determinants[i] = e.determinant;
  }
}

TEXTURON_MULTIVERSION
void SolveRegressionFours(const double* low, const double* high, std::size_t count, double* numerators,
                          double* determinants) {
  constexpr std::size_t kFour = 4;
  for (std::size_t first = 0; first < count; first += kFour, low += kFour * kFour, high += kFour * kFour) {
    FourDoubles m0, m1, m2, m3, f0, f1, f2, m4;
    LoadFour(low, m0);
    LoadFour(low + kFour, m1);
    LoadFour(low + 2 * kFour, m2);
    LoadFour(low + 3 * kFour, m3);
    TurnFours(m0, m1, m2, m3);
    LoadFour(high, f0);
    LoadFour(high + kFour, f1);
    LoadFour(high + 2 * kFour, f2);
    LoadFour(high + 3 * kFour, m4);
    TurnFours(f0, f1, f2, m4);
    const Eliminated<FourDoubles> e(m0, m1, m2, m3, f0, f1, f2, m4);
    StoreFour(numerators + first, e.numerator);
    StoreFour(determinants + first, e.determinant);
  }
}

}  // namespace texturon
