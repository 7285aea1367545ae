// SPDX-License-Identifier: Apache-2.0

#include "parameters/core_roughness.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "parameters/height_curve.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

constexpr double kSecantPercent = 40.0;
constexpr std::size_t kFewestPoints = 10;

struct Secant {
  std::size_t first = 0;
  std::size_t end = 0;  // the far end, which the fit leaves out
};

/// The secant with the smallest drop. The far end moves along with the near one, so that all of them cost one pass.
Secant FlattestSecant(std::span<const double> h) {
  const std::size_t n = h.size();
  const double last = RatioPercent(n - 1, n);
  Secant flattest;
  double smallestDrop = 0.0;
  std::size_t high = 0;
  double highRatio = 0.0;
  double lowRatio = 0.0;  // of the point before
  for (std::size_t i = 0; i < n; ++i) {
    const double target = RatioPercent(i, n) + kSecantPercent;
    if (target >= last) break;
    while (highRatio < target) {
      lowRatio = highRatio;
      highRatio = RatioPercent(++high, n);
    }
    const bool highIsNearer = highRatio - target < target - lowRatio;
    const std::size_t j = highIsNearer ? high : high - 1;
    const double drop = h[i] - h[j];
    if (i > 0 && !(drop < smallestDrop)) continue;
    smallestDrop = drop;
    flattest = {i, j};
  }
  return flattest;
}

/// Least squares through the sorted points [first, end), taken about their middle: the sums of ratios are then known in
/// closed form and nothing cancels.
CoreLine FitLine(std::span<const double> h, const Secant& secant) {
  const auto n = static_cast<double>(h.size());
  const auto count = static_cast<double>(secant.end - secant.first);
  const std::span<const double> part = h.subspan(secant.first, secant.end - secant.first);
  const double reference = part[part.size() / 2];
  const double middle = 0.5 * (count - 1.0);
  const auto [sum, moment] = LaneSums(part.size(), [&](std::size_t t) -> std::array<double, 2> {
    const double height = part[t] - reference;
    return {height, height * (static_cast<double>(t) - middle)};
  });
  const double fallPerPoint = moment / (count * (count * count - 1.0) / 12.0);
  const double slope = fallPerPoint * n / 100.0;  // um per percent
  const double meanRatio = (static_cast<double>(secant.first) + middle) * 100.0 / n;
  const double atZero = reference + sum / count - slope * meanRatio;
  return {.atZeroPercent = atZero, .atHundredPercent = slope * 100.0 + atZero};
}

/// Of the first point at or below a height and its predecessor the nearer one, the predecessor of equals.
std::optional<std::size_t> NearestPoint(std::span<const double> h, double height) {
  const std::size_t k = FirstAtOrBelow(h, height);
  if (k == h.size()) return std::nullopt;
  if (k == 0) return k;
  return std::abs(h[k - 1] - height) <= std::abs(h[k] - height) ? k - 1 : k;
}

/// Trapezoid sum of height minus level over the points [first, last], one wide each.
double AreaAbove(std::span<const double> h, std::size_t first, std::size_t last, double level) {
  const std::span<const double> part = h.subspan(first, last - first + 1);
  const double sum = LaneSums(part.size(), [&](std::size_t t) { return std::array{part[t] - level}; })[0];
  return sum - 0.5 * ((part.front() - level) + (part.back() - level));
}

template <typename Value>
RowResult FromResult(const RowInput& row, Value value) {
  const RkResult& result = CoreRoughnessOf(row.profile);
  if (!result.valid) return result.reason;
  return value(result);
}

}  // namespace

Defined<CoreLine> FitCoreLine(std::span<const double> h) {
  const std::size_t n = h.size();
  if (n < kFewestPoints) {
    return NoValue{Why::kFewPoints, {static_cast<double>(kFewestPoints), static_cast<double>(n)}};
  }
  const Secant secant = FlattestSecant(h);
  if (secant.end - secant.first < 2) return NoValue{Why::kNotFinite};
  return FitLine(h, secant);
}

RkResult ComputeCoreRoughness(std::span<const double> h) {
  RkResult result;
  const std::size_t n = h.size();
  const Defined<CoreLine> line = FitCoreLine(h);
  if (!line) {
    result.reason = line.Reason();
    return result;
  }
  result.reason = {Why::kNotFinite};
  result.upperLine = line->atZeroPercent;
  result.lowerLine = line->atHundredPercent;
  result.Rk = line->atZeroPercent - line->atHundredPercent;

  const auto upper = NearestPoint(h, result.upperLine);
  const auto lower = NearestPoint(h, result.lowerLine);
  if (!upper || !lower) {
    result.reason = {Why::kNoCore, {upper ? 100.0 : 0.0}};
    return result;
  }
  result.Mr1 = RatioPercent(*upper, n);
  result.Mr2 = RatioPercent(*lower, n);
  const double step = 100.0 / static_cast<double>(n);
  if (*upper >= 1) result.Rpk = 2.0 * AreaAbove(h, 0, *upper, result.upperLine) * step / result.Mr1;
  if (*lower + 1 < n) result.Rvk = 2.0 * -AreaAbove(h, *lower, n - 1, result.lowerLine) * step / (100.0 - result.Mr2);
  result.valid = std::isfinite(result.Rk) && std::isfinite(result.Rpk) && std::isfinite(result.Rvk);
  return result;
}

const RkResult& CoreRoughnessOf(const ParameterProfile& profile) {
  return profile.Cached<RkResult>([&profile] { return ComputeCoreRoughness(profile.SortedHeights()); });
}

RowResult CoreDepth(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rk; });
}

RowResult ReducedPeakHeight(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rpk; });
}

RowResult ReducedValleyDepth(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rvk; });
}

RowResult PeakAboveCore(const RowInput& row) {
  return FromResult(row, [&](const RkResult& r) { return row.profile.Extremes().highest - r.upperLine; });
}

RowResult ValleyBelowCore(const RowInput& row) {
  return FromResult(row, [&](const RkResult& r) { return r.lowerLine - row.profile.Extremes().lowest; });
}

RowResult PeakPlusCore(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rpk + r.Rk; });
}

RowResult CorePlusValley(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rk + r.Rvk; });
}

RowResult PeakToCoreRatio(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rpk / r.Rk; });
}

RowResult ValleyToCoreRatio(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Rvk / r.Rk; });
}

RowResult UpperCoreMaterialRatio(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Mr1; });
}

RowResult LowerCoreMaterialRatio(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return r.Mr2; });
}

RowResult ValleyArea(const RowInput& row) {
  return FromResult(row, [](const RkResult& r) { return (100.0 - r.Mr2) * r.Rvk * 0.005; });
}

}  // namespace texturon
