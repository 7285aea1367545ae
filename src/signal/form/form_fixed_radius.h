// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/prompts.h"
#include "signal/form/form_input.h"
#include "signal/form/minimise.h"
#include "signal/form/shape_fit.h"

namespace texturon {

/// What the data would have asked of whoever set the radius. None where |radius| < 1e-100 mm, which is no radius.
enum class RadiusDoubt : std::uint8_t {
  kNone,
  kDataIsConvex,   // a positive radius, and the middle point lies above the mean of the two ends
  kDataIsConcave,  // a negative radius, and it does not
};
RadiusDoubt DoubtRadius(std::span<const double> heights, double radiusMM);

struct FixedRadiusFit {
  double radiusUM = 0.0;   // as given: positive is concave, the centre above the profile
  double centreXUM = 0.0;  // from the first point
  double centreYUM = 0.0;  // fitted vertex height + radius
  double meritMM2 = 0.0;   // sum of squared vertical deviations of the fit points
  double residualSpacingUM = 0.0;
  std::optional<ShapeCovariance> covariance{};
};

struct FixedRadiusResult {
  std::optional<FixedRadiusFit> fit;
  MinimiseResult search;
};

/// Circle of a given radius whose centre makes the sum of squared vertical deviations least (FitShape with a sphere).
///
/// The form is the half circle on the vertex's side, beyond the radius the height of its end. Residuals are radial
/// whatever the residual setting says: distance from the centre less |R|, so that on a concave profile material above
/// the circle is negative. Their spacing is the mean step along the path.
///
/// Nothing for |radius| < 1e-100 mm or above 1e9 lengths of the profile, for fewer than 3 fit points, for values that
/// are not finite or when the minimiser does not end by itself.
FixedRadiusResult FitFixedRadius(const FormInput& input, double radiusMM, Progress* progress, FormOutput output);

}  // namespace texturon
