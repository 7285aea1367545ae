// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/prompts.h"
#include "signal/form/minimise.h"
#include "signal/form/placed_shape.h"

namespace texturon {

/// What a fit may change; the height is always free.
struct FreeTerms {
  bool x = true;
  bool tilt = true;
  bool curvature = false;
  bool conic = false;
};

enum class ShapeMerit : std::uint8_t {
  kLeastSquares,   // sum of squared deviations along the shape's own axis
  kLeastAbsolute,  // sum of their magnitudes, which a burr or a scratch pulls less
};

struct ShapeFitOptions {
  FreeTerms free;
  ShapeMerit merit = ShapeMerit::kLeastSquares;
  Placement start;            // x is kept where it is not free; otherwise one start among others
  double curvature = 0.0;     // of the shape as it comes
  double conicFactor = 1.0;   // of the shape as it comes
  double leastOverlap = 1.0;  // share of the points that must lie on the shape
  double originFirst = 0.0;   // between these X the shape's origin is looked for
  double originLast = 0.0;
  Progress* progress = nullptr;
};

/// Everything that a fit can change, in the order in which combinations are formed: what comes later is left alone when
/// it does the same to all points as what came before.
struct ShapeParameters {
  enum Index : std::size_t { kZ, kX, kCurvature, kConic, kAngle, kCount };
  std::array<double, kCount> values{};

  Placement Place() const;
};

/// How sure a fit is of its parameters: covariances in mm, 1/mm, rad; 0 for what is held, infinite for what the points
/// do not determine.
struct ShapeCovariance {
  std::array<std::array<double, ShapeParameters::kCount>, ShapeParameters::kCount> values{};

  /// Standard uncertainty of `scale` times a parameter; nothing where it is held.
  std::optional<double> Uncertainty(ShapeParameters::Index parameter, double scale) const;
};

struct ShapeFit {
  Placement placement;
  double curvature = 0.0;
  double conicFactor = 1.0;
  double merit = 0.0;  // of all points that lie on the shape: mm^2 or mm
  std::size_t pointsOnShape = 0;
  std::optional<ShapeCovariance> covariance;
  MinimiseResult search;      // why the minimiser stopped; a fit that was stopped or ran out is none
  int coarseEvaluations = 0;  // merits over at most 300 points, in all steps of freedom
  int polishEvaluations = 0;  // merits over all points
  bool isValid = false;
};

/// Puts a shape where it fits the points best. Each stage starts where the one before it ended, so that they differ in
/// the way and not in the goal, the minimum of the one merit:
///
/// 1. at most 100 of the points: origins from first to last with the best height and, where free, the best slope; the
///    promising ones are followed down by damped Gauss-Newton steps, then also from placements that are turned about
///    the data's centre of curvature, along which a nearly spherical shape can hardly tell one from another. The best
///    minima are followed on at most 300, then 2000 points: noise makes many of nearly the same depth;
/// 2. at most 2000 of the points: Minimise from the best, first steps 0.1 (mm, slope), tolerance 1e-6;
/// 3. all points: damped Gauss-Newton steps until nothing is gained, from each minimum that may yet be the deepest.
///    Their equations are set up in combinations of the parameters that the step before made orthogonal; a combination
///    that the points do not determine is left alone.
///
/// Where curvature or conic factor are free, 1 is first done with them held, and the freer fit also starts from what
/// the tighter ones found: more freedom does not end in a worse minimum.
///
/// The second stage alone ends as soon as a pass gains little, which on tilted aspheres is micrometres off.
ShapeFit FitShape(const PointsMM& points, Shape& shape, const ShapeFitOptions& options);

}  // namespace texturon
