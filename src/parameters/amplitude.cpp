// SPDX-License-Identifier: Apache-2.0

#include "parameters/amplitude.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace texturon {
namespace {

constexpr NoValue kNoPoints = {Why::kFewPoints, {1.0}};

/// mean / q^power, or 0 where the sum's denominator n q^power vanishes.
RowResult StandardisedMoment(const RowInput& row, double mean, int power) {
  const auto q = RootMeanSquareDeviation(row);
  if (!q) return q;
  double denominator = 1.0;
  for (int i = 0; i < power; ++i) denominator *= *q;
  const auto n = static_cast<double>(row.profile.Heights().size());
  if (std::abs(n * denominator) < std::numeric_limits<double>::epsilon()) return 0.0;
  return mean / denominator;
}

}  // namespace

RowResult TotalHeight(const RowInput& row) {
  if (row.profile.Heights().empty()) return kNoPoints;
  return row.profile.Extremes().highest - row.profile.Extremes().lowest;
}

RowResult MaximumPeakHeight(const RowInput& row) {
  if (row.profile.Heights().empty()) return kNoPoints;
  return row.profile.Extremes().highest;
}

RowResult MaximumValleyDepth(const RowInput& row) {
  if (row.profile.Heights().empty()) return kNoPoints;
  return -row.profile.Extremes().lowest;
}

RowResult ArithmeticMeanDeviation(const RowInput& row) {
  if (row.profile.Heights().empty()) return kNoPoints;
  return row.profile.Moments().absolute;
}

RowResult RootMeanSquareDeviation(const RowInput& row) {
  if (row.profile.Heights().empty()) return kNoPoints;
  return std::sqrt(row.profile.Moments().square);
}

RowResult Skewness(const RowInput& row) {
  return StandardisedMoment(row, row.profile.Moments().cube, 3);
}

RowResult Kurtosis(const RowInput& row) {
  return StandardisedMoment(row, row.profile.Moments().fourth, 4);
}

RowResult ShareWithinDeviation(const RowInput& row) {
  constexpr double kRoundingOfQ = 1e-12;
  const auto q = RootMeanSquareDeviation(row);
  if (!q) return q;
  if (!std::isfinite(*q)) return NoValue{Why::kNotFinite};
  const double limit = *q * (1.0 + kRoundingOfQ);
  const auto heights = row.profile.Heights();
  const auto within = std::count_if(heights.begin(), heights.end(), [limit](double z) { return std::abs(z) <= limit; });
  return static_cast<double>(within) * 100.0 / static_cast<double>(heights.size());
}

}  // namespace texturon
