// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <vector>

// The material-ratio curve of a profile: its heights (um) from the highest to the lowest. Point i of n has the material
// ratio i x 100 / n percent, so the last one stays below 100. Every function takes the sorted heights, which it does
// not check; those that return a height want at least one.
namespace texturon {

/// Material ratio (percent) of sorted point i of n.
inline double RatioPercent(std::size_t i, std::size_t n) {
  return static_cast<double>(i) * 100.0 / static_cast<double>(n);
}

/// Height of the sorted point whose ratio is nearest to `percent`, the higher one of two equally near. 0 and less (and
/// NaN) give the highest point, a ratio at or beyond the last one the lowest.
double HeightAtRatio(std::span<const double> sorted, double percent);

/// First sorted point at or below a height; the number of points when all lie above it.
std::size_t FirstAtOrBelow(std::span<const double> sorted, double heightUM);

/// Material ratio (percent) of the first point at or below a height; 100 when all lie above it.
double RatioAtHeight(std::span<const double> sorted, double heightUM);

}  // namespace texturon
