// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "signal/form/form_input.h"
#include "signal/form/placed_shape.h"

namespace texturon {

/// Form and residual of a placed shape, in um, for every height of the input. The form is the shape's height over each
/// point's x, tilt and all.
///
/// Vertical residuals run along the shape's own axis: they are what the fit made small, and with no tilt height - form.
/// Perpendicular ones are the distance to the shape; positive is material above it. Where a steep, tilted shape has no
/// single height over x, form is height - residual; where a foot point is not found, the deviation along the axis times
/// the cosine of the slope stands for the distance.
///
/// Returns the spacing of the residual in um: the input's, or the mean step along the measured path for perpendicular
/// ones. The shape must exist everywhere (no NaN).
double WriteShapeResidual(const FormInput& input, const Shape& shape, const Placement& placement, FormOutput output);

}  // namespace texturon
