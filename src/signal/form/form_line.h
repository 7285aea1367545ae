// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "signal/form/form_input.h"

namespace texturon {

struct LineFit {
  double slope = 0.0;        // um per um
  double interceptUM = 0.0;  // height at the first point
  double residualSpacingUM = 0.0;
  /// Standard uncertainties, were the deviations independent of each other; none for 2 points.
  std::optional<double> slopeUncertainty{};
  std::optional<double> interceptUncertaintyUM{};
};

/// Least-squares line z = slope x + intercept over the fit points. The form is the line's height at every point, also
/// for perpendicular residuals.
///
/// Vertical residuals: height - form, spacing unchanged. Perpendicular ones: the distance to the line, negative where
/// the line lies at or above the point, that is (z - form) / sqrt(1 + slope^2), without the cancellation of a foot
/// point found from two nearly parallel slopes; their spacing is spacing / cos(atan(slope)). With perpendicular
/// residuals and a step above 1 the mean of all residuals is taken off them, with step 1 it is not.
///
/// Nothing for fewer than 2 fit points or when the line is not finite. Error below 1e-12 of the heights' deviation from
/// the line plus the last digit of the height itself.
std::optional<LineFit> FitLine(const FormInput& input, FormOutput output);

}  // namespace texturon
