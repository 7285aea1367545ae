// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_fixed_radius.h"

#include <algorithm>
#include <cmath>

#include "base/units.h"
#include "signal/all_finite.h"
#include "signal/form/asphere.h"
#include "signal/form/shape_fit.h"

namespace texturon {

namespace {

constexpr double kFlattest = 1e9;  // lengths of the profile: flatter than the digits of its heights

bool IsRadius(double radiusMM) {
  constexpr double kNoRadius = 1e-100;
  return std::abs(radiusMM) >= kNoRadius;
}

}  // namespace

RadiusDoubt DoubtRadius(std::span<const double> heights, double radiusMM) {
  if (heights.empty() || !IsRadius(radiusMM)) return RadiusDoubt::kNone;
  const double ends = (heights.front() + heights.back()) / 2.0;
  const bool isConvex = heights[heights.size() / 2] > ends;
  if (isConvex && radiusMM > 0.0) return RadiusDoubt::kDataIsConvex;
  if (!isConvex && radiusMM < 0.0) return RadiusDoubt::kDataIsConcave;
  return RadiusDoubt::kNone;
}

FixedRadiusResult FitFixedRadius(const FormInput& input, double radiusMM, Progress* progress, FormOutput output) {
  if (!output.Fits(input) || !AllFinite(input.heights) || !IsRadius(radiusMM)) return {};
  const FitPointsMM points(input);
  const std::size_t n = points.x.size();
  if (n < 3) return {};
  const double length = points.x.back() - points.x.front();
  if (std::abs(radiusMM) > kFlattest * length) return {};
  ShapeFitOptions how{.curvature = 1.0 / radiusMM, .progress = progress};
  how.free.tilt = false;
  how.start.xMM = points.x[n / 2];
  how.originFirst = points.x.front() - 0.25 * length;
  how.originLast = points.x.back() + 0.25 * length;
  AsphereShape shape({.curvature = how.curvature});
  const ShapeFit placed = FitShape({points.x, points.z}, shape, how);
  FixedRadiusResult result{{}, placed.search};
  if (!placed.isValid) return result;

  const double radius = radiusMM * kMicrometresPerMillimetre;
  const double size = std::abs(radius);
  const double vertexX = placed.placement.xMM * kMicrometresPerMillimetre;
  const double vertexZ = placed.placement.zMM * kMicrometresPerMillimetre;
  for (std::size_t i = 0; i < input.heights.size(); ++i) {
    const double u = ExactDouble(i) * input.spacingUM - vertexX;
    const double w = input.heights[i] - vertexZ;
    const double within = std::min(std::abs(u), size);
    output.form[i] =
        vertexZ + std::copysign(within * within / (size + std::sqrt((size - within) * (size + within))), radius);
    const double excess = u * u + w * w - 2.0 * radius * w;  // r^2 - R^2, without the large numbers
    output.residual[i] = excess / (std::sqrt(std::max(size * size + excess, 0.0)) + size);
  }
  const FixedRadiusFit fit{
      radius, vertexX, vertexZ + radius, placed.merit, MeanPathStep(input.heights, input.spacingUM), placed.covariance};
  if (AllFinite(output.residual) && std::isfinite(fit.centreXUM + fit.centreYUM + fit.residualSpacingUM)) {
    result.fit = fit;
  }
  return result;
}

}  // namespace texturon
