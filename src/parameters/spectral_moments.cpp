// SPDX-License-Identifier: Apache-2.0

#include "parameters/spectral_moments.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/multiversion.h"
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

TEXTURON_INLINE std::int64_t IsPeak(const double* z, std::size_t i) {
  return static_cast<std::int64_t>(z[i] > z[i - 1]) & static_cast<std::int64_t>(z[i] > z[i + 1]);
}

TEXTURON_MULTIVERSION
std::int64_t CountPeaks(const double* z, std::size_t pointCount) {
  std::int64_t count = 0;
  for (std::size_t i = 1; i < pointCount - 1; ++i) count += IsPeak(z, i);
  return count;
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
  if (z.size() < 3) return NoValue{Why::kFewPeaks, {2.0, 0.0}};
  const std::int64_t count = CountPeaks(z.data(), z.size());
  if (count < 2) return NoValue{Why::kFewPeaks, {2.0, static_cast<double>(count)}};
  std::size_t first = 1;
  while (IsPeak(z.data(), first) == 0) ++first;
  std::size_t last = z.size() - 2;
  while (IsPeak(z.data(), last) == 0) --last;
  return static_cast<double>(last - first) / static_cast<double>(count - 1) * row.profile.SpacingMM();
}

}  // namespace texturon
