// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "signal/form/form_input.h"

namespace texturon {

struct ArcFit {
  double radiusUM = 0.0;   // always positive
  double centreXUM = 0.0;  // from the first point
  double centreYUM = 0.0;
  double residualSpacingUM = 0.0;
  /// Standard uncertainties, were the deviations of the heights independent of each other and of one size.
  struct Uncertainty {
    double radiusUM, centreXUM, centreYUM;
  };
  std::optional<Uncertainty> uncertainty{};  // none for 3 points
};

/// Algebraic least-squares circle (Kasa's): A, B, C minimise the sum of (x^2 + y^2 - 2 A x - 2 B y - 2 C)^2 over the
/// fit points; centre (A, B), radius sqrt(A^2 + B^2 + 2 C).
///
/// The form is the circle's height at every x, on that half of the circle on which the mean height of the fit points
/// lies; beyond the radius it is the height of the half's end, the centre's.
///
/// Vertical residuals: height - form, spacing unchanged. Perpendicular ones: r - R for points at or above the centre,
/// R - r below, r being the distance from the centre, so that material above the arc counts positive on convex and
/// concave parts alike; their spacing is the path length over all points, from point to point, by its number of steps.
///
/// Nothing for fewer than 3 fit points, for points that lie on a straight line to the accuracy of their own numbers, or
/// when a result is not finite.
///
/// Nothing here is a difference of large numbers: the circle is found and used in coordinates that follow the points'
/// least-squares line, and r - R is (r^2 - R^2) / (r + R). Error below 1e-9 um for radii from the length of the record
/// to 1e12 um, level or tilted; only where an arc gets as steep as its ends at the height of the centre do heights lose
/// digits.
std::optional<ArcFit> FitArc(const FormInput& input, FormOutput output);

}  // namespace texturon
