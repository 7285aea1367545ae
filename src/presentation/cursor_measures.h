// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <string>
#include <utility>

#include "analysis/document.h"

namespace texturon {

/// What two upright cursors measure of a profile: the stretch between them and those on either side.
struct CursorMeasures {
  /// The stretch between by its own least-squares line: its angle to X, and the height of that line at either cursor.
  double angleDegrees = 0.0;
  std::pair<double, double> lineUM;
  /// Least-squares circle of the stretch between, by distances at right angles; negative where it is hollow. Nothing
  /// where its bend does not stand out of the roughness, or where a circle does not describe it.
  std::optional<double> radiusMM;
  /// Where it is bent but no circle: how much of its shape a circle is, 0 to 1 (GeometricCircle::share).
  std::optional<double> shareOfCircle;
  /// Height of the stretch between above the sides: two parallel least-squares lines, one through it and one through
  /// both sides. Nothing without sides, nor where they have less than a twentieth of the samples between.
  std::optional<double> stepUM;
  /// The distance at right angles of these two lines.
  std::optional<double> distanceUM;
};

/// `heightsUM` at equal steps; indices of the first and last sample between the cursors. Nothing for fewer than three
/// samples between.
std::optional<CursorMeasures> MeasureBetween(std::span<const double> heightsUM, double spacingUM, std::size_t first,
                                             std::size_t last);

/// One line for people, in the units shown (Windows-1252): "Between the cursors: step 1.2000 um  distance ...". Empty
/// where there is nothing to measure.
std::string MeasureText(const Document& document, ProfileKind kind, const std::pair<double, double>& xMM);

}  // namespace texturon
