// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <vector>

#include "signal/form/placed_shape.h"

namespace texturon {

enum class BeyondCurve { kNothing, kStraightOn };

/// A nominal curve through given points: a cubic spline, not-a-knot at both ends, which a smooth shape needs few points
/// for and which passes cubics unchanged. Millimetres.
class NominalCurve {
public:
  /// Points in any order; of several at one x the first counts. Nothing for fewer than four different x or a value
  /// that is not finite.
  static std::optional<NominalCurve> Through(std::span<const double> x, std::span<const double> z);

  double First() const { return x_.front(); }
  double Last() const { return x_.back(); }
  std::size_t PointCount() const { return x_.size(); }
  struct Value {
    double height, slope;
  };
  /// Beyond the ends straight on. `hint` is an interval to look in first, and becomes the one that was right.
  Value At(double x, std::size_t& hint) const;

private:
  std::vector<double> x_, z_, bend_;  // bend: second derivative at the points
};

/// The curve as a shape whose origin is the curve's point at `originMM`.
class NominalShape final : public Shape {
public:
  NominalShape(const NominalCurve& curve, double originMM, BeyondCurve beyond);
  void Evaluate(std::span<const double> u, const ShapeValues& values) const override;
  double OriginHeight() const { return originHeight_; }

private:
  const NominalCurve& curve_;
  double origin_;
  double originHeight_ = 0.0;
  BeyondCurve beyond_;
};

}  // namespace texturon
