// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "signal/form/form_input.h"

namespace texturon {

/// Least-squares line through fit points, in a form from which heights above it come out with full relative accuracy
/// however steep or high it lies: a coarse line whose heights at all indices are exact in a double, plus a fine one for
/// the rest. The difference between a height and the coarse line is then rounded only to its own last digit. Indices
/// are counted from `origin`.
struct LevelLine {
  double origin = 0.0;        // a whole index near the middle of all heights
  double coarseHeight = 0.0;  // at the origin, um
  double coarseSlope = 0.0;   // um per index
  double fineHeight = 0.0;
  double fineSlope = 0.0;

  // Of the indices of the fit points, from the origin: mean, and sums of the powers of the distance from it.
  double meanIndex = 0.0;
  double sumSquares = 0.0;
  double sumCubes = 0.0;

  double Slope() const { return coarseSlope + fineSlope; }
  double Coarse(double index) const { return coarseHeight + coarseSlope * (index - origin); }
  double Fine(double index) const { return fineHeight + fineSlope * (index - origin); }
  double Height(double index) const { return Coarse(index) + Fine(index); }
  double Above(double height, double index) const { return (height - Coarse(index)) - Fine(index); }
};

/// The line over the fit points out of `total` heights. Nothing for fewer than 2 points or when it is not finite.
std::optional<LevelLine> FindLevelLine(const FitPoints& points, std::size_t total);

}  // namespace texturon
