// SPDX-License-Identifier: Apache-2.0

#include "signal/form/level_line.h"

#include <array>
#include <cmath>

#include "base/multiversion.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

// Mean index and central moments in closed form, run by run: m points at distances s from each other have the sum of
// squares s^2 m (m^2 - 1) / 12 about their own mean and no third moment.
void FindIndexMoments(const FitPoints& points, LevelLine& line) {
  const auto runMean = [&](const FitRun& run) {
    return (run.Index(0) - line.origin) + 0.5 * static_cast<double>(run.step * (run.heights.size() - 1));
  };
  for (const FitRun& run : points.Runs()) line.meanIndex += static_cast<double>(run.heights.size()) * runMean(run);
  line.meanIndex /= static_cast<double>(points.Count());
  for (const FitRun& run : points.Runs()) {
    const double m = static_cast<double>(run.heights.size());
    const double s = static_cast<double>(run.step);
    const double own = s * s * m * (m * m - 1.0) / 12.0;
    const double distance = runMean(run) - line.meanIndex;
    line.sumSquares += own + m * distance * distance;
    line.sumCubes += distance * (3.0 * own + m * distance * distance);
  }
}

struct StraightPart {
  double height = 0.0;  // at the origin
  double slope = 0.0;
};

// Sums over the points of a run of what lies above the coarse line, and of that times the distance from the middle.
TEXTURON_MULTIVERSION
void SumAboveCoarse(const FitRun& run, const LevelLine& line, std::array<double, 2>& sums) {
  const FitRun own = run;  // copies that stay in registers
  const LevelLine level = line;
  sums = LaneSums(own.heights.size(), [&](std::size_t j) {
    const double index = own.Index(j);
    const double above = own.heights[j] - level.Coarse(index);
    return std::array{above, above * ((index - level.origin) - level.meanIndex)};
  });
}

// Least squares over what lies above the coarse line.
StraightPart FindStraightPart(const FitPoints& points, const LevelLine& line) {
  std::array<double, 2> sums{};
  for (const FitRun& run : points.Runs()) {
    std::array<double, 2> part;
    SumAboveCoarse(run, line, part);
    for (std::size_t s = 0; s < sums.size(); ++s) sums[s] += part[s];
  }
  const double slope = sums[1] / line.sumSquares;
  return {sums[0] / static_cast<double>(points.Count()) - slope * line.meanIndex, slope};
}

}  // namespace

std::optional<LevelLine> FindLevelLine(const FitPoints& points, std::size_t total) {
  if (points.Count() < 2) return {};
  LevelLine line;
  const std::size_t middle = total / 2;
  line.origin = static_cast<double>(middle);
  FindIndexMoments(points, line);
  const StraightPart rough = FindStraightPart(points, line);
  const double reach = std::abs(rough.height) + std::abs(rough.slope) * static_cast<double>(total);
  if (!std::isfinite(reach)) return {};
  constexpr double kSmallestReach = 1e-280;  // below it the grid would leave the normal numbers
  if (reach > kSmallestReach) {
    // Multiples of `grid` up to 2^52 of them: sums and whole multiples of such heights are exact.
    const double grid = std::ldexp(1.0, std::ilogb(reach) - 51);
    line.coarseHeight = std::nearbyint(rough.height / grid) * grid;
    line.coarseSlope = std::nearbyint(rough.slope / grid) * grid;
  }
  const StraightPart rest = FindStraightPart(points, line);
  line.fineHeight = rest.height;
  line.fineSlope = rest.slope;
  if (!std::isfinite(rest.height) || !std::isfinite(rest.slope)) return {};
  return line;
}

}  // namespace texturon
