// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/prompts.h"
#include "signal/form/form_input.h"
#include "signal/form/minimise.h"
#include "signal/form/nominal_curve.h"
#include "signal/form/shape_fit.h"

namespace texturon {

struct FreeFormOptions {
  bool allowsTilt = true;
  ShapeMerit merit = ShapeMerit::kLeastSquares;
  std::optional<double> firstPointXMM;  // nominal X of the first measured point, where that is held
  Progress* progress = nullptr;
};

/// Where the nominal's point (0, 0) came to lie, X from the first point handed in, and how far it was turned.
struct FreeFormFit {
  double shiftXMM = 0.0;
  double shiftYMM = 0.0;
  double thetaDegrees = 0.0;  // counter-clockwise
  double merit = 0.0;         // of the points on the nominal: mm^2, or mm with least absolute deviations
  std::size_t pointsOnNominal = 0;
  bool hasFixedStart = false;
  bool allowsTilt = true;
  double residualSpacingUM = 0.0;
  std::optional<ShapeCovariance> covariance;  // of least squares: of shiftXMM, shiftYMM as kX, kZ, and of the angle
};

struct FreeFormResult {
  std::optional<FreeFormFit> fit;
  MinimiseResult search;
};

/// Moves and, where allowed, turns a nominal curve onto the profile (FitShape) and takes it out (WriteShapeResidual).
/// Fit points that lie beside the nominal take no part; at least 45 % of the shorter of profile and nominal must
/// overlap. Form and residual go straight on beyond its ends.
///
/// With a fixed start the nominal's point at firstPointXMM lies over the first measured point, and a tilt turns about
/// it.
///
/// Nothing for fewer than 3 fit points, for values that are not finite, without enough overlap, when the minimiser does
/// not end by itself or when the result is not finite.
FreeFormResult FitFreeForm(const FormInput& input, const NominalCurve& nominal, const FreeFormOptions& options,
                           FormOutput output);

}  // namespace texturon
