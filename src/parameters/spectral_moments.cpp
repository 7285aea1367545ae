// SPDX-License-Identifier: Apache-2.0

#include "parameters/spectral_moments.h"

#include <array>
#include <cstddef>

#include "base/units.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

/// Mean over the inner points of the square of `difference(i)`, i the index of the point before.
template <typename Difference>
RowResult MeanSquareOverInnerPoints(std::size_t pointCount, const Difference& difference) {
  if (pointCount < 3) return NoValue{Why::kFewPoints, {3.0, static_cast<double>(pointCount)}};
  const double sum = LaneSums(pointCount - 2, [&](std::size_t i) -> std::array<double, 1> {
    const double d = difference(i);
    return {d * d};
  })[0];
  return sum / static_cast<double>(pointCount - 2);
}

}  // namespace

RowResult ZerothMoment(const RowInput& row) {
  if (row.profile.Heights().empty()) return NoValue{Why::kFewPoints, {1.0}};
  return row.profile.Moments().square;
}

RowResult SecondMoment(const RowInput& row) {
  const std::span<const double> z = row.profile.Heights();
  const double reciprocal = 1.0 / (2.0 * row.profile.SpacingUM());
  return MeanSquareOverInnerPoints(z.size(), [&](std::size_t i) { return (z[i + 2] - z[i]) * reciprocal; });
}

RowResult FourthMoment(const RowInput& row) {
  const std::span<const double> z = row.profile.Heights();
  const double reciprocal = 1.0 / (row.profile.SpacingUM() * row.profile.SpacingUM());
  return MeanSquareOverInnerPoints(
      z.size(), [&](std::size_t i) { return ((z[i + 2] - z[i + 1]) - (z[i + 1] - z[i])) * reciprocal; });
}

RowResult MeanPeakSpacing(const RowInput& row) {
  const std::span<const double> z = row.profile.Heights();
  std::size_t count = 0;
  std::size_t first = 0;
  std::size_t last = 0;
  for (std::size_t i = 1; i + 1 < z.size(); ++i) {
    if (!(z[i] > z[i - 1] && z[i] > z[i + 1])) continue;
    if (count++ == 0) first = i;
    last = i;
  }
  if (count < 2) return NoValue{Why::kFewPeaks, {2.0, static_cast<double>(count)}};
  return static_cast<double>(last - first) / static_cast<double>(count - 1) * row.profile.SpacingMM();
}

}  // namespace texturon
