// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/material_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "parameters/core_roughness.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

/// Number of points at or above a height.
std::size_t PointsFrom(std::span<const double> sorted, double height) {
  const auto end = std::partition_point(sorted.begin(), sorted.end(), [height](double h) { return h >= height; });
  return static_cast<std::size_t>(end - sorted.begin());
}

RowResult HeightAt(const EditionInput& row, double percent) {
  return HeightAtMaterialRatio(row.profile.SortedHeights(), percent);
}

/// Mean over all points of what lies above the height at a ratio, or is missing below it.
RowResult Volume(const EditionInput& row, double percent, bool isVoid) {
  const RowResult height = HeightAt(row, percent);
  if (!height) return height.Reason();
  const std::span<const double> sorted = row.profile.SortedHeights();
  const std::size_t above = PointsFrom(sorted, *height);
  const std::span<const double> part = isVoid ? sorted.subspan(above) : sorted.first(above);
  const double sum = LaneSums(part.size(), [&](std::size_t i) { return std::array{std::abs(part[i] - *height)}; })[0];
  return sum / static_cast<double>(sorted.size());
}

/// One volume less another.
RowResult Less(const RowResult& whole, const RowResult& part) {
  if (!whole) return whole.Reason();
  if (!part) return part.Reason();
  return *whole - *part;
}

double UpperPercent(const EditionInput& row) {
  return row.Argument(0, row.Standard().VolumeUpperPercent);
}
double LowerPercent(const EditionInput& row, std::size_t argument) {
  return row.Argument(argument, row.Standard().VolumeLowerPercent);
}

/// What one volume has between the two ratios, of which the first is the smaller.
RowResult CoreVolume(const EditionInput& row, bool isVoid) {
  const double p = UpperPercent(row);
  const double q = LowerPercent(row, 1);
  const RowResult upper = Volume(row, p, isVoid);
  const RowResult lower = Volume(row, q, isVoid);
  if (upper && lower && !(p < q)) return NoValue{Why::kRatiosReversed, {p, q}};
  return isVoid ? Less(upper, lower) : Less(lower, upper);
}

/// Number of points above a height, and the ratio (%) at which the curve passes it behind the last of them.
struct Passing {
  std::size_t above = 0;
  double ratio = 0.0;
};
Passing PassOf(std::span<const double> sorted, double height) {
  const auto end = std::partition_point(sorted.begin(), sorted.end(), [height](double h) { return h > height; });
  const auto above = static_cast<std::size_t>(end - sorted.begin());
  const double step = 100.0 / static_cast<double>(sorted.size());
  if (above == 0) return {};
  if (above == sorted.size()) return {above, 100.0};
  const double part = (sorted[above - 1] - height) / (sorted[above - 1] - sorted[above]);
  return {above, (static_cast<double>(above) + part) * step};
}

/// Trapezoids of |h - level| over points with the ratios one step apart, um %.
double AreaBetween(std::span<const double> h, double level, double step) {
  if (h.empty()) return 0.0;
  const double sum = LaneSums(h.size(), [&](std::size_t i) { return std::array{std::abs(h[i] - level)}; })[0];
  return (sum - 0.5 * (std::abs(h.front() - level) + std::abs(h.back() - level))) * step;
}

struct SharedCore {
  Defined<CoreCurve> curve;
};

template <typename Value>
RowResult OfCore(const EditionInput& row, const Value& value) {
  const auto make = [&row]() -> SharedCore { return {ComputeCoreCurve(row.profile.SortedHeights())}; };
  const Defined<CoreCurve>& curve = row.profile.Cached<SharedCore>(make).curve;
  if (!curve) return curve.Reason();
  return value(*curve);
}

}  // namespace

Defined<double> HeightAtMaterialRatio(std::span<const double> sorted, double percent) {
  if (sorted.empty()) return NoValue{Why::kFewPoints, {1.0, 0.0}};
  if (!(percent >= 0.0 && percent <= 100.0)) return NoValue{Why::kRatioOutside, {percent}};
  constexpr double kSlack = 1e-9;
  const auto n = static_cast<double>(sorted.size());
  const double k = std::clamp(std::ceil(percent * n / 100.0 - kSlack), 1.0, n);
  return sorted[static_cast<std::size_t>(k) - 1];
}

RowResult MaterialRatio(const EditionInput& row) {
  const std::span<const double> sorted = row.profile.SortedHeights();
  if (sorted.empty()) return NoValue{Why::kFewPoints, {1.0, 0.0}};
  double height = row.Argument(0, 0.0);
  if (row.arguments.size() > 1) {
    const RowResult reference = HeightAt(row, row.arguments[0]);
    if (!reference) return reference.Reason();
    height = *reference - row.arguments[1];
  }
  return 100.0 * static_cast<double>(PointsFrom(sorted, height)) / static_cast<double>(sorted.size());
}

RowResult HeightAtRatioBelowTop(const EditionInput& row) {
  const RowResult height = HeightAt(row, row.Argument(0, 0.0));
  if (!height) return height.Reason();
  return *height - row.profile.SortedHeights().front();
}

RowResult HeightAtRatioOfMean(const EditionInput& row) {
  return HeightAt(row, row.Argument(0, 0.0));
}

RowResult HeightBetweenRatios(const EditionInput& row) {
  const double p = row.Argument(0, 0.0);
  const double q = row.Argument(1, 0.0);
  const RowResult upper = HeightAt(row, p);
  const RowResult lower = HeightAt(row, q);
  if (upper && lower && !(p < q)) return NoValue{Why::kRatiosReversed, {p, q}};
  return Less(upper, lower);
}

RowResult MaterialVolume(const EditionInput& row) {
  return Volume(row, row.Argument(0, 0.0), false);
}

RowResult VoidVolume(const EditionInput& row) {
  return Volume(row, row.Argument(0, 0.0), true);
}

RowResult PeakMaterialVolume(const EditionInput& row) {
  return Volume(row, UpperPercent(row), false);
}

RowResult CoreMaterialVolume(const EditionInput& row) {
  return CoreVolume(row, false);
}

RowResult CoreVoidVolume(const EditionInput& row) {
  return CoreVolume(row, true);
}

RowResult ValleyVoidVolume(const EditionInput& row) {
  return Volume(row, LowerPercent(row, 0), true);
}

Defined<CoreCurve> ComputeCoreCurve(std::span<const double> sorted) {
  const Defined<CoreLine> line = FitCoreLine(sorted);
  if (!line) return line.Reason();
  const double step = 100.0 / static_cast<double>(sorted.size());
  // The line's ratios begin with 0 at the first point; here that stands one step later.
  const double shift = (line->atZeroPercent - line->atHundredPercent) / static_cast<double>(sorted.size());
  CoreCurve curve{.upper = line->atZeroPercent + shift, .lower = line->atHundredPercent + shift};

  const Passing upper = PassOf(sorted, curve.upper);
  curve.upperRatio = upper.ratio;
  if (upper.above > 0) {
    const double lastWidth = upper.ratio - static_cast<double>(upper.above) * step;
    curve.upperArea = (sorted.front() - curve.upper) * step +
                      AreaBetween(sorted.first(upper.above), curve.upper, step) +
                      0.5 * (sorted[upper.above - 1] - curve.upper) * lastWidth;
  }
  const Passing lower = PassOf(sorted, curve.lower);
  curve.lowerRatio = lower.ratio;
  if (lower.above < sorted.size()) {
    const double firstWidth = static_cast<double>(lower.above + 1) * step - lower.ratio;
    const double triangle = lower.above > 0 ? 0.5 * (curve.lower - sorted[lower.above]) * firstWidth
                                            : (curve.lower - sorted.front()) * firstWidth;
    curve.lowerArea = triangle + AreaBetween(sorted.subspan(lower.above), curve.lower, step);
  }
  if (!std::isfinite(curve.upperArea) || !std::isfinite(curve.lowerArea)) return NoValue{Why::kNotFinite};
  return curve;
}

RowResult CoreHeight(const EditionInput& row) {
  return OfCore(row, [](const CoreCurve& core) { return core.upper - core.lower; });
}

RowResult UpperCoreRatio(const EditionInput& row) {
  return OfCore(row, [](const CoreCurve& core) { return core.upperRatio; });
}

RowResult LowerCoreRatio(const EditionInput& row) {
  return OfCore(row, [](const CoreCurve& core) { return core.lowerRatio; });
}

RowResult HillArea(const EditionInput& row) {
  return OfCore(row, [](const CoreCurve& core) { return core.upperArea; });
}

RowResult DaleArea(const EditionInput& row) {
  return OfCore(row, [](const CoreCurve& core) { return core.lowerArea; });
}

RowResult ReducedHillHeight(const EditionInput& row) {
  return OfCore(
      row, [](const CoreCurve& core) { return core.upperRatio > 0.0 ? 2.0 * core.upperArea / core.upperRatio : 0.0; });
}

RowResult ReducedDaleDepth(const EditionInput& row) {
  return OfCore(row, [](const CoreCurve& core) {
    return core.lowerRatio < 100.0 ? 2.0 * core.lowerArea / (100.0 - core.lowerRatio) : 0.0;
  });
}

RowResult GreatestHillAboveCore(const EditionInput& row) {
  return OfCore(row, [&row](const CoreCurve& core) { return row.profile.SortedHeights().front() - core.upper; });
}

RowResult GreatestDaleBelowCore(const EditionInput& row) {
  return OfCore(row, [&row](const CoreCurve& core) { return core.lower - row.profile.SortedHeights().back(); });
}

}  // namespace texturon
