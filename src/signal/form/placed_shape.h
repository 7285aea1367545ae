// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

namespace texturon {

/// What a shape is asked for at each u, all as long as u. An empty span is not wanted.
struct ShapeValues {
  std::span<double> height{};
  std::span<double> slope{};        // dS/du
  std::span<double> byCurvature{};  // dS/dc
  std::span<double> byConic{};      // dS/d(1 + k)
};

/// A nominal curve w = S(u) in its own axes, millimetres, S(0) = 0 at the point by which it is placed.
class Shape {
public:
  virtual ~Shape() = default;
  /// Heights and derivatives. NaN in `height` where the curve does not exist; such points take no part in a fit.
  virtual void Evaluate(std::span<const double> u, const ShapeValues& values) const = 0;
  /// For shapes with a curvature and a conic factor of their own; others have no such terms to fit.
  virtual void SetTerms(double curvature, double conicFactor);
};

/// Where the shape's origin lies in the measured axes, in mm, and the slope of its u axis there.
struct Placement {
  double xMM = 0.0;
  double zMM = 0.0;
  double slope = 0.0;
};

/// Measured points, both in millimetres and of one length.
struct PointsMM {
  std::span<const double> x;
  std::span<const double> z;
};

/// A placement's rotation, worked out once.
struct Axes {
  explicit Axes(const Placement& placement);
  double AlongU(double x, double z) const { return cosine * (x - x0) + sine * (z - z0); }
  double MeasuredX(double u, double w) const { return x0 + (cosine * u - sine * w); }
  double MeasuredZ(double u, double w) const { return z0 + (sine * u + cosine * w); }

  double x0, z0, cosine, sine;
};

/// Turns points into the shape's axes: by -atan(slope) about its origin.
void ToShapeAxes(const PointsMM& points, const Axes& axes, std::span<double> u, std::span<double> w);

}  // namespace texturon
