// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Spectral moments of the profile, from central differences with heights and spacing in um; definitions of this
// program.
namespace texturon {

RowResult ZerothMoment(const RowInput& row);  ///< m0, um^2: mean of z^2. Fails for no points.
/// m2: mean of ((z[i+1] - z[i-1]) / 2 dx)^2 over the inner points. Fails for fewer than three points, as m4.
RowResult SecondMoment(const RowInput& row);
/// m4, um^-2: mean of ((z[i+1] - 2 z[i] + z[i-1]) / dx^2)^2 over the inner points.
RowResult FourthMoment(const RowInput& row);

/// s, mm: mean distance of neighbouring strict local maxima, the ends not counted. Fails for fewer than two.
RowResult MeanPeakSpacing(const RowInput& row);

}  // namespace texturon
