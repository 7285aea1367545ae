// SPDX-License-Identifier: Apache-2.0

#include "signal/form/placed_shape.h"

#include <cmath>
#include <cstddef>

#include "base/multiversion.h"

namespace texturon {

void Shape::SetTerms(double /*curvature*/, double /*conicFactor*/) {}

Axes::Axes(const Placement& placement)
    : x0(placement.xMM),
      z0(placement.zMM),
      cosine(1.0 / std::sqrt(1.0 + placement.slope * placement.slope)),
      sine(placement.slope * cosine) {}

TEXTURON_MULTIVERSION
void ToShapeAxes(const PointsMM& points, const Axes& axes, std::span<double> u, std::span<double> w) {
  const Axes turn = axes;
  const double* const x = points.x.data();
  const double* const z = points.z.data();
  double* const toU = u.data();
  double* const toW = w.data();
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    toU[i] = turn.cosine * (x[i] - turn.x0) + turn.sine * (z[i] - turn.z0);
    toW[i] = turn.cosine * (z[i] - turn.z0) - turn.sine * (x[i] - turn.x0);
  }
}

}  // namespace texturon
