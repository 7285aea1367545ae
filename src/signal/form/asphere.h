// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <vector>

#include "signal/form/placed_shape.h"

namespace texturon {

/// The nominal surface of an asphere about its vertex, as optical drawings state it (ISO 10110-12), in millimetres:
///
///     S(u) = c u^2 / (1 + sqrt(1 - (1 + k) c^2 u^2)) + sum A_i u^i
///
/// A positive curvature is concave (a valley), a negative one convex.
struct AsphereDescription {
  double curvature = 0.0;            // c = 1 / R, 1/mm
  double conicFactor = 1.0;          // 1 + k: 1 sphere, 0 paraboloid, negative hyperboloid
  std::vector<double> coefficients;  // A1, A2 ... of u, u^2 ... in mm; none: a pure conic

  bool IsPlainSphere() const { return coefficients.empty() && conicFactor == 1.0; }
};

/// Vertex X, vertex height and tilt. For AsphereSag the tilt is a shear: slope x u is added to the sag.
using AspherePlacement = Placement;

/// Nominal height at x. Beyond the vertical tangent of the conic (u^2 (1 + k) c^2 > 1) the straight line through the
/// surface at 0.9999 and 0.999 x 0.9999 of that limit, so that it is finite everywhere; at the limit itself the height
/// jumps by about 1 % of the radius.
double AsphereSag(double xMM, const AspherePlacement& placement, const AsphereDescription& description);

/// Sum of squared deviations in mm^2 along the asphere's axis: every point is turned by -atan(slope) about the vertex,
/// then compared with the sag at zero placement. With slope 0 these are the vertical deviations.
double AsphereMerit(const PointsMM& points, const AspherePlacement& placement, const AsphereDescription& description);

/// The sag over many u at once.
class AsphereShape final : public Shape {
public:
  explicit AsphereShape(AsphereDescription description);
  void Evaluate(std::span<const double> u, const ShapeValues& values) const override;
  void SetTerms(double curvature, double conicFactor) override;
  double Height(double u) const;

private:
  // Straight continuation: height and slope at the end `at`.
  struct Ray {
    double at = 0.0, height = 0.0, slope = 0.0;
  };
  Ray Continuation(double side) const;

  AsphereDescription description_;
  double limit_ = 0.0;
  Ray left_, right_;
};

}  // namespace texturon
