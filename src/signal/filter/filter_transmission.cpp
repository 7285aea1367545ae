// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/filter_transmission.h"

#include <numbers>

#include "base/elementary.h"
#include "base/units.h"
#include "signal/filter/regression_filter.h"

namespace texturon {

double GaussianTransmission(double cutoffMM, double wavelengthMM) {
  const double ratio = cutoffMM / wavelengthMM;
  return Exp2(-ratio * ratio);
}

double SplineTransmission(double cutoffMM, double tension, double spacingUM, double wavelengthMM) {
  const double angle = std::numbers::pi * spacingUM * kMillimetresPerMicrometre;
  const double ratio = Sin(angle / wavelengthMM) / Sin(angle / cutoffMM);
  const double square = ratio * ratio;  // alpha^2 s
  return 1.0 / (1.0 + tension * square + (1.0 - tension) * square * square);
}

double RegressionTransmission(double cutoffMM, double wavelengthMM) {
  const double ratio = kRegressionReach * cutoffMM / wavelengthMM;
  const double a = std::numbers::pi * ratio * ratio;
  return (1.0 + a) * Exp2(-a * std::numbers::log2e);
}

}  // namespace texturon
