// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_free.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/elementary.h"
#include "signal/all_finite.h"
#include "signal/form/shape_residual.h"

namespace texturon {
namespace {

constexpr double kLeastOverlap = 0.45;  // of the shorter of profile and nominal; the search looks a little less far
constexpr double kSearchedOverlap = 0.5;

/// From the covariance of the point that the fit places to that of the nominal's (0, 0), which lies at (right, up) from
/// it when both are turned.
ShapeCovariance Moved(const ShapeCovariance& from, double right, double up) {
  using P = ShapeParameters;
  const auto& v = from.values;
  ShapeCovariance to = from;
  to.values[P::kX][P::kX] = v[P::kX][P::kX] - 2.0 * up * v[P::kX][P::kAngle] + up * up * v[P::kAngle][P::kAngle];
  to.values[P::kZ][P::kZ] =
      v[P::kZ][P::kZ] + 2.0 * right * v[P::kZ][P::kAngle] + right * right * v[P::kAngle][P::kAngle];
  return to;
}

}  // namespace

FreeFormResult FitFreeForm(const FormInput& input, const NominalCurve& nominal, const FreeFormOptions& options,
                           FormOutput output) {
  if (!output.Fits(input) || !AllFinite(input.heights)) return {};
  const FitPointsMM points(input);
  if (points.x.size() < 3) return {};
  const double length = points.x.back() - points.x.front();
  const double nominalLength = nominal.Last() - nominal.First();
  const double origin = options.firstPointXMM.value_or(0.5 * (nominal.First() + nominal.Last()));
  if (!std::isfinite(origin)) return {};

  ShapeFitOptions how{.merit = options.merit, .progress = options.progress};
  how.free = {.x = !options.firstPointXMM, .tilt = options.allowsTilt};
  how.leastOverlap = kLeastOverlap * std::min(1.0, nominalLength / length);
  const double overlap = kSearchedOverlap * std::min(length, nominalLength);
  how.originFirst = points.x.front() + overlap - (nominal.Last() - origin);
  how.originLast = points.x.back() - overlap + (origin - nominal.First());
  if (how.free.x) how.start.xMM = points.x.front() + (origin - nominal.First());  // first point over first point
  NominalShape shape(nominal, origin, BeyondCurve::kNothing);
  const ShapeFit placed = FitShape({points.x, points.z}, shape, how);
  FreeFormResult result{{}, placed.search};
  if (!placed.isValid) return result;

  const Axes axes(placed.placement);
  FreeFormFit fit;
  fit.shiftXMM = axes.MeasuredX(-origin, -shape.OriginHeight());
  fit.shiftYMM = axes.MeasuredZ(-origin, -shape.OriginHeight());
  if (placed.covariance) {
    fit.covariance =
        Moved(*placed.covariance, fit.shiftXMM - placed.placement.xMM, fit.shiftYMM - placed.placement.zMM);
  }
  fit.thetaDegrees = Atan(placed.placement.slope) * 180.0 / std::numbers::pi;
  fit.merit = placed.merit;
  fit.pointsOnNominal = placed.pointsOnShape;
  fit.hasFixedStart = options.firstPointXMM.has_value();
  fit.allowsTilt = options.allowsTilt;
  const NominalShape extended(nominal, origin, BeyondCurve::kStraightOn);
  fit.residualSpacingUM = WriteShapeResidual(input, extended, placed.placement, output);
  if (AllFinite(output.form) && AllFinite(output.residual) && std::isfinite(fit.residualSpacingUM)) result.fit = fit;
  return result;
}

}  // namespace texturon
