// SPDX-License-Identifier: Apache-2.0

#include "parameters/local_slopes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numbers>

#include "base/elementary.h"
#include "base/multiversion.h"
#include "base/units.h"
#include "signal/all_finite.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

constexpr std::size_t kReach = 3;
constexpr double kDegrees = 180.0 / std::numbers::pi;

struct SharedSlopes {
  Samples values;
};

const Samples& SlopesOf(const RowInput& row) {
  const ParameterProfile& profile = row.profile;
  return profile
      .Cached<SharedSlopes>([&profile] { return SharedSlopes{LocalSlopes(profile.Heights(), profile.SpacingUM())}; })
      .values;
}

NoValue TooFewPoints(const RowInput& row) {
  return {Why::kFewPoints, {2.0 * kReach + 1.0, static_cast<double>(row.profile.Heights().size())}};
}

/// The absolute slopes of rank n / 2 - 1 and n / 2 from below.
struct Middle {
  double lower = 0.0;
  double upper = 0.0;
};

/// Counts them in equal cells up to the greatest and sorts out only those of the cells that the two ranks lie in. Empty
/// where a slope is not finite.
std::optional<Middle> MiddleSteepness(std::span<const double> slopes) {
  constexpr std::size_t kCells = 4096;
  if (!AllFinite(slopes)) return std::nullopt;
  const HeightExtremes extremes = FindExtremes(slopes);
  const double steepest = std::max(std::abs(extremes.highest), std::abs(extremes.lowest));
  const double perSlope = static_cast<double>(kCells - 1) / steepest;
  const bool hasCells = std::isfinite(perSlope);  // flat, or next to it: all in one
  const auto cellOf = [hasCells, perSlope](double slope) {
    return hasCells ? static_cast<std::size_t>(std::abs(slope) * perSlope) : std::size_t{0};
  };
  // Two tables by turns: a count that was raised just now makes the next one in its cell wait.
  std::array<std::uint32_t, kCells> counts{};
  std::array<std::uint32_t, kCells> others{};
  for (std::size_t i = 0; i + 1 < slopes.size(); i += 2) {
    ++counts[cellOf(slopes[i])];
    ++others[cellOf(slopes[i + 1])];
  }
  if (slopes.size() % 2 == 1) ++counts[cellOf(slopes.back())];
  for (std::size_t cell = 0; cell < kCells; ++cell) counts[cell] += others[cell];
  const std::size_t upperRank = slopes.size() / 2;
  const std::size_t lowerRank = upperRank - std::min<std::size_t>(upperRank, 1);
  std::size_t before = 0;
  std::size_t first = 0;
  while (before + counts[first] <= lowerRank) before += counts[first++];
  std::size_t last = first;
  for (std::size_t upTo = before + counts[first]; upTo <= upperRank;) upTo += counts[++last];
  const std::size_t cells = last - first + 1;
  std::vector<double> candidates;
  for (const double slope : slopes) {
    if (cellOf(slope) - first < cells) candidates.push_back(std::abs(slope));  // one branch, nearly always the same
  }
  const auto upper = candidates.begin() + static_cast<std::ptrdiff_t>(upperRank - before);
  std::nth_element(candidates.begin(), upper, candidates.end());
  const auto isLower = upperRank > lowerRank;
  return Middle{isLower ? *std::max_element(candidates.begin(), upper) : *upper, *upper};
}

}  // namespace

namespace {

TEXTURON_MULTIVERSION
void WriteSlopes(const double* z, double divisor, double* slopes, std::size_t count) {
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < count; ++i) {
    slopes[i] = ((z[i + 6] - z[i]) - 9.0 * (z[i + 5] - z[i + 1]) + 45.0 * (z[i + 4] - z[i + 2])) / divisor;
  }
}

}  // namespace

Samples LocalSlopes(std::span<const double> z, double spacingUM) {
  Samples slopes;
  if (z.size() < 2 * kReach + 1) return slopes;
  const double divisor = 60.0 * spacingUM;
  slopes.resize(z.size() - 2 * kReach);
  WriteSlopes(z.data(), divisor, slopes.data(), slopes.size());
  return slopes;
}

SteepPart FindSteepPart(std::span<const double> heights, double spacingUM, double degrees) {
  const Samples slopes = LocalSlopes(heights, spacingUM);
  SteepPart steep{std::vector<double>(heights.size(), std::numeric_limits<double>::quiet_NaN())};
  const double limit = Tan(degrees / kDegrees);
  std::size_t count = 0;
  for (std::size_t i = 0; i < slopes.size(); ++i) {
    if (!(std::abs(slopes[i]) > limit)) continue;
    ++count;
    for (const std::size_t at : {i + kReach, i + kReach + 1}) steep.heightsUM[at] = heights[at];
  }
  if (count > 0) steep.percent = 100.0 * static_cast<double>(count) / static_cast<double>(slopes.size());
  return steep;
}

RowResult RootMeanSquareSlope(const RowInput& row) {
  const Samples& slopes = SlopesOf(row);
  if (slopes.empty()) return TooFewPoints(row);
  const double sum = LaneSums(slopes.size(), [&](std::size_t i) { return std::array{slopes[i] * slopes[i]}; })[0];
  return Atan(std::sqrt(sum / static_cast<double>(slopes.size()))) * kDegrees;
}

RowResult MeanAbsoluteSlopeAngle(const RowInput& row) {
  const Samples& slopes = SlopesOf(row);
  if (slopes.empty()) return TooFewPoints(row);
  Samples angles(slopes.size());
  AtanOfEach(slopes, angles);
  const double sum = LaneSums(slopes.size(), [&](std::size_t i) { return std::array{std::abs(angles[i])}; })[0];
  return sum / static_cast<double>(slopes.size()) * kDegrees;
}

RowResult MedianAbsoluteSlopeAngle(const RowInput& row) {
  const Samples& slopes = SlopesOf(row);
  if (slopes.empty()) return TooFewPoints(row);
  const auto middle = MiddleSteepness(slopes);
  if (!middle) return NoValue{Why::kNotFinite};
  double angle = Atan(middle->upper);
  if (slopes.size() % 2 == 0) angle = 0.5 * (angle + Atan(middle->lower));
  return angle * kDegrees;
}

RowResult SlopeSkewness(const RowInput& row) {
  const Samples& slopes = SlopesOf(row);
  if (slopes.empty()) return TooFewPoints(row);
  const auto n = static_cast<double>(slopes.size());
  const double mean = LaneSums(slopes.size(), [&](std::size_t i) { return std::array{slopes[i]}; })[0] / n;
  const auto [squares, cubes] = LaneSums(slopes.size(), [&](std::size_t i) -> std::array<double, 2> {
    const double deviation = slopes[i] - mean;
    return {deviation * deviation, deviation * deviation * deviation};
  });
  const double deviation = std::sqrt(squares / n);
  const HeightExtremes& extremes = row.profile.Extremes();
  const double rounding = 4.0 * std::numeric_limits<double>::epsilon() *
                          std::max(std::abs(extremes.highest), std::abs(extremes.lowest)) / row.profile.SpacingUM();
  if (!(deviation > rounding)) return 0.0;
  return cubes / n / (deviation * deviation * deviation);
}

}  // namespace texturon
