// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>

namespace texturon {

inline constexpr std::size_t kRegressionMoments = 5;  ///< sums of d s u^j, j = 0 .. 4
inline constexpr std::size_t kRegressionHeights = 3;  ///< sums of d z s u^j, j = 0 .. 2
inline constexpr std::size_t kRegressionSums = kRegressionMoments + kRegressionHeights;
/// Where they stand: d s u^j at j up to 3, then d z s u^j from kFirstHeight on, then d s u^4.
inline constexpr std::size_t kFirstHeight = 4;
inline constexpr std::size_t kFourthMoment = 7;

using RegressionPoint = std::array<double, kRegressionSums>;

/// The value of the fitted parabola at the point itself is the quotient of two determinants.
struct RegressionSolution {
  double pivot = 0.0;  ///< the least one, the last by what it makes of an error in the sums
  double determinant = 0.0;
  double numerator = 0.0;

  double Value() const { return numerator / determinant; }
};

RegressionSolution SolveRegression(const RegressionPoint& sums);

/// The two determinants at `count` places; sums[i] are the sums i of all of them.
void SolveRegressions(const std::array<const double*, kRegressionSums>& sums, std::size_t count, double* numerators,
                      double* determinants);

/// The same where the first four sums of a place stand side by side in `low`, the other four in `high`. May read and
/// write up to three places more.
void SolveRegressionFours(const double* low, const double* high, std::size_t count, double* numerators,
                          double* determinants);

}  // namespace texturon
