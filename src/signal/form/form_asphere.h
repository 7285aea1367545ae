// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "platform/prompts.h"
#include "signal/form/asphere.h"
#include "signal/form/form_input.h"
#include "signal/form/shape_fit.h"

namespace texturon {

struct AsphereFitOptions {
  /// A tilt is held at 0 for a plain sphere, which looks the same from everywhere, unless its conic factor is fitted.
  FreeTerms free;
  std::optional<double> xMM;  // of the vertex, from the first point: where it is held, or one start more
  Progress* progress = nullptr;
};

/// The fitted asphere; X from the first point handed in.
struct AsphereFit {
  double apexXMM = 0.0;
  double apexZUM = 0.0;
  double slope = 0.0;  // of the asphere's u axis
  double curvaturePerMM = 0.0;
  double conic = 0.0;  // k
  double meritMM2 = 0.0;
  int coarseEvaluations = 0;
  int polishEvaluations = 0;
  double residualSpacingUM = 0.0;
  std::optional<ShapeCovariance> covariance;

  double TiltDegrees() const;
  /// 1 / curvature, or 0 where |curvature| < 1e-100.
  double RadiusMM() const;
};

struct AsphereFitResult {
  std::optional<AsphereFit> fit;
  MinimiseResult search;  // how the minimiser ended
};

/// Positions an asphere and takes it out: FitShape with the sum of squares along its axis, then WriteShapeResidual.
/// Nothing for fewer than 3 fit points, for values that are not finite, when the minimiser does not end by itself, or
/// when the result is not finite.
///
/// Found again by construction, noise-free: apex to 1e-9 mm, residual below 1e-9 um.
AsphereFitResult FitAsphere(const FormInput& input, const AsphereDescription& description,
                            const AsphereFitOptions& options, FormOutput output);

}  // namespace texturon
