// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

namespace texturon {

struct GeometricCircle {
  double radiusUM = 0.0;  ///< negative where the points are hollow
  /// Half the curvature, um of height a um^2 of length, and its standard uncertainty. Neighbouring deviations go
  /// together: there are counted as many of them as cross the circle.
  double bend = 0.0;
  double bendUncertainty = 0.0;
  /// Whether the bend stands out of its uncertainty; else the radius means nothing.
  bool isBent = false;
  /// How much of the shape is the circle's, 0 to 1: of the squares of the distances from the least-squares line, in the
  /// means of sixteen equal parts, so that roughness has little share in them.
  double share = 0.0;
  /// Whether that is 0.99, more than the corners of a step (0.85), a roof (0.94) or a trapezium (0.988) leave; or 0.95,
  /// where the rest is at most thrice what the roughness makes of such means, of which one in a thousand is more.
  bool isRound = false;
};

/// The circle from which the distances of the points, at right angles to it, have the least sum of squares. It goes
/// over into a straight line without a break, so that roughness does not draw flat points towards small radii as it
/// does the algebraic circle. Heights at equal steps in um, at most 20000 of them, evenly spread, go into the fit.
/// Nothing for fewer than four points or where the fit does not end.
std::optional<GeometricCircle> FitGeometricCircle(std::span<const double> heightsUM, double spacingUM);

}  // namespace texturon
