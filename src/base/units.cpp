// SPDX-License-Identifier: Apache-2.0

#include "base/units.h"

#include <cmath>
#include <limits>

namespace texturon {

std::int32_t RoundToIndex(double value) {
  if (std::isnan(value)) return 0;
  const double rounded = std::trunc(value < 0.0 ? value - 0.5 : value + 0.5);
  if (rounded >= static_cast<double>(std::numeric_limits<std::int32_t>::max())) {
    return std::numeric_limits<std::int32_t>::max();
  }
  if (rounded <= static_cast<double>(std::numeric_limits<std::int32_t>::min())) {
    return std::numeric_limits<std::int32_t>::min();
  }
  return static_cast<std::int32_t>(rounded);
}

std::int32_t StepsInLength(double lengthMM, double spacingUM) {
  return RoundToIndex(lengthMM * kMicrometresPerMillimetre / spacingUM);
}

double WholePartsOfLength(double length, double part) {
  constexpr double kSlack = 1e-9;
  const double parts = length / part;
  return std::trunc(parts + kSlack * parts);
}

}  // namespace texturon
