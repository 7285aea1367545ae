// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "signal/form/shape_fit.h"

namespace texturon {

/// One fit's points, shape and merit. Not to be shared between threads: it holds the scratch of an evaluation.
class ShapeProblem {
public:
  ShapeProblem(const PointsMM& points, Shape& shape, const ShapeFitOptions& options);

  struct Evaluation {
    /// Per point on the shape, times all points per point on it: of two placements that fit alike
    /// the one with more points wins. Infinite when fewer than asked for lie on it.
    double meanMerit = 0.0;
    double sum = 0.0;
    std::size_t onShape = 0;
  };
  Evaluation Evaluate(const ShapeParameters& parameters);

  /// Damped Gauss-Newton (Levenberg, Marquardt) from `parameters` until a step gains less than the last digits or the
  /// limit is reached. The mean merit reached.
  double Descend(ShapeParameters& parameters, int mostSteps);
  /// Of the parameters where the last Descend ended.
  const Evaluation& Reached() const { return lastEquations_.evaluation; }

  /// Mean merit that remains with the best height and, where `withSlope`, the best shear; sets both in `parameters`.
  double Level(ShapeParameters& parameters, bool withSlope);

  /// Covariance of the parameters where the last Descend ended, by its equations: deviations that are independent of
  /// each other and of one size. Nothing for least absolute deviations or without points to spare.
  std::optional<ShapeCovariance> Covariance() const;

  int Evaluations() const { return evaluations_; }
  const PointsMM& Points() const { return points_; }

private:
  static constexpr std::size_t kMost = ShapeParameters::kCount;
  using Square = std::array<std::array<double, kMost>, kMost>;
  struct Equations {
    Square matrix{};
    std::array<double, kMost> gradient{};
    Evaluation evaluation;
  };
  Equations SetUp(const ShapeParameters& parameters, const Square& combinations, double leastDeviation);
  void UseTerms(const ShapeParameters& parameters);
  /// Of the circle through the shape over the first, the middle and the last point; none where that is a straight line
  /// or there is no shape.
  struct Centre {
    double x, z;
  };
  std::optional<Centre> CentreOf(const ShapeParameters& parameters);
  /// A shape that turns about its centre of curvature changes little, and the merit is a narrow valley along the arcs
  /// on which x and height go with the angle. Bends the straight step from `from` to `to` onto such an arc.
  void FollowTurn(const ShapeParameters& from, ShapeParameters& to);
  Evaluation Rated(double sum, std::size_t onShape) const;

  PointsMM points_;
  Shape& shape_;
  ShapeMerit merit_;
  std::size_t leastOnShape_;
  std::vector<std::size_t> free_;  // indices of the parameters that may change
  bool xIsFree_ = true;
  int evaluations_ = 0;
  Square lastCombinations_{};
  Equations lastEquations_;
  std::vector<double> u_, w_, height_, slope_, byCurvature_, byConic_, deviation_, weight_;
  std::array<std::vector<double>, kMost> columns_, combined_;
};

}  // namespace texturon
