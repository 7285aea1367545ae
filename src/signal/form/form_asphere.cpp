// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_asphere.h"

#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "base/units.h"
#include "signal/all_finite.h"
#include "signal/form/shape_residual.h"

namespace texturon {

double AsphereFit::TiltDegrees() const {
  return Atan(slope) * 180.0 / std::numbers::pi;
}

double AsphereFit::RadiusMM() const {
  constexpr double kFlat = 1e-100;
  return std::abs(curvaturePerMM) < kFlat ? 0.0 : 1.0 / curvaturePerMM;
}

AsphereFitResult FitAsphere(const FormInput& input, const AsphereDescription& description,
                            const AsphereFitOptions& options, FormOutput output) {
  if (!output.Fits(input) || !AllFinite(input.heights)) return {};
  const FitPointsMM points(input);
  const std::size_t n = points.x.size();
  if (n < 3) return {};
  ShapeFitOptions how{.free = options.free, .curvature = description.curvature, .progress = options.progress};
  how.conicFactor = description.conicFactor;
  if (description.IsPlainSphere() && !options.free.conic) how.free.tilt = false;
  how.start.xMM = options.xMM.value_or(points.x[n / 2]);
  const double length = points.x.back() - points.x.front();
  how.originFirst = points.x.front() - 0.25 * length;
  how.originLast = points.x.back() + 0.25 * length;
  AsphereShape shape(description);
  const ShapeFit placed = FitShape({points.x, points.z}, shape, how);
  AsphereFitResult result{{}, placed.search};
  if (!placed.isValid) return result;

  shape.SetTerms(placed.curvature, placed.conicFactor);
  AsphereFit fit;
  fit.apexXMM = placed.placement.xMM;
  fit.apexZUM = placed.placement.zMM * kMicrometresPerMillimetre;
  fit.slope = placed.placement.slope;
  fit.curvaturePerMM = placed.curvature;
  fit.conic = placed.conicFactor - 1.0;
  fit.meritMM2 = placed.merit;
  fit.coarseEvaluations = placed.coarseEvaluations;
  fit.covariance = placed.covariance;
  fit.polishEvaluations = placed.polishEvaluations;
  fit.residualSpacingUM = WriteShapeResidual(input, shape, placed.placement, output);
  if (AllFinite(output.form) && AllFinite(output.residual) && std::isfinite(fit.residualSpacingUM)) result.fit = fit;
  return result;
}

}  // namespace texturon
