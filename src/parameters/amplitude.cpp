#include "parameters/amplitude.h"

#include <cmath>
#include <limits>

namespace texturon {
namespace {

/// mean / q^power, or 0 where the sum's denominator n q^power vanishes.
std::optional<double> StandardisedMoment(const RowInput& row, double mean, int power) {
  const auto q = RootMeanSquareDeviation(row);
  if (!q) return std::nullopt;
  double denominator = 1.0;
  for (int i = 0; i < power; ++i) denominator *= *q;
  const auto n = static_cast<double>(row.profile.Heights().size());
  if (std::abs(n * denominator) < std::numeric_limits<double>::epsilon()) return 0.0;
  return mean / denominator;
}

}  // namespace

std::optional<double> TotalHeight(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  return row.profile.Extremes().highest - row.profile.Extremes().lowest;
}

std::optional<double> MaximumPeakHeight(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  return row.profile.Extremes().highest;
}

std::optional<double> MaximumValleyDepth(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  return -row.profile.Extremes().lowest;
}

std::optional<double> ArithmeticMeanDeviation(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  return row.profile.Moments().absolute;
}

std::optional<double> RootMeanSquareDeviation(const RowInput& row) {
  if (row.profile.Heights().empty()) return std::nullopt;
  return std::sqrt(row.profile.Moments().square);
}

std::optional<double> Skewness(const RowInput& row) {
  return StandardisedMoment(row, row.profile.Moments().cube, 3);
}

std::optional<double> Kurtosis(const RowInput& row) {
  return StandardisedMoment(row, row.profile.Moments().fourth, 4);
}

}  // namespace texturon
